#include "platform/sway/undo/UndoFile.h"

#include <cstdint>
#include <cstdlib>

// What somebody left to be undone is the input: of what is read nothing is lost or changed when it
// is written and read again, and nothing runs but what takes back.

namespace {

void mustHold(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace platform::sway;
    const Undoing undoing = undoingFrom({reinterpret_cast<const char*>(data), size});
    for (const std::string& command : undoing.commands)
        mustHold(command.starts_with("input ") || command.starts_with("seat ") ||
                 command.starts_with("unbindcode "));
    mustHold(undoingFrom(toText(undoing)) == undoing);
    return 0;
}
