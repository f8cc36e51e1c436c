#include "platform/linux/settings/PropertyList.h"

#include <cstdint>
#include <cstdlib>

// A settings file that is the input: what reads as whole is written and read again without loss.

using platform::linux::Wholeness;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto first =
        platform::linux::readPropertyList({reinterpret_cast<const char*>(data), size});
    if (first.wholeness == Wholeness::damaged) {
        if (!first.list.empty()) std::abort();
        return 0;
    }
    const auto text = platform::linux::writePropertyList(first.list);
    const auto second = platform::linux::readPropertyList(text);
    if (second.wholeness != Wholeness::whole || second.list != first.list) std::abort();
    return 0;
}
