#include "platform/sway/connection/Ipc.h"

#include <cstdint>
#include <cstdlib>

// What comes over the compositor's socket is the input, but for its first byte: the size of the
// parts in which it comes. It reads the same in every size, and ends with a refusal or with what is
// not yet whole.

namespace {

using platform::sway::Message;
using platform::sway::Messages;

void mustHold(bool condition) {
    if (!condition) std::abort();
}

struct Read {
    std::vector<Message> messages;
    bool isRefused = false;
};

Read readInParts(std::string_view text, std::size_t size) {
    Messages all;
    Read read;
    while (!text.empty() && !all.isRefused()) {
        all.add(text.substr(0, size));
        text.remove_prefix(std::min(size, text.size()));
        while (auto message = all.next())
            read.messages.push_back(std::move(*message));
    }
    read.isRefused = all.isRefused();
    return read;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const Read whole = readInParts(text, size), parts = readInParts(text, 1U + data[0]);
    mustHold(whole.isRefused == parts.isRefused);
    mustHold(whole.messages.size() == parts.messages.size());
    for (std::size_t i = 0; i < whole.messages.size(); ++i) {
        mustHold(whole.messages[i].type == parts.messages[i].type);
        mustHold(whole.messages[i].value == parts.messages[i].value);
        (void)platform::sway::failureIn(whole.messages[i].value);
    }
    return 0;
}
