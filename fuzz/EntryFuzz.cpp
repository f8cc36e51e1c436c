#include "platform/linux/login/DesktopEntry.h"

#include <cstdint>
#include <cstdlib>

// A desktop entry that is the input: it reads the same when it is written and read again, a value
// that is set is there, and the command that it has is one that can be written.

using platform::linux::DesktopEntry;

namespace {

void mustHold(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const DesktopEntry entry({reinterpret_cast<const char*>(data), size});
    const DesktopEntry again(entry.text());
    mustHold(again.text() == entry.text() && again.lines() == entry.lines());

    DesktopEntry changed = entry;
    changed.setString("Hidden", "true");
    mustHold(changed.isTrue("Hidden") && changed.hasGroup());
    changed.erase("Hidden");
    mustHold(!changed.raw("Hidden"));

    const auto command = platform::linux::execArguments(entry.string("Exec"));
    if (!command) return 0;
    changed.setRaw("Exec", platform::linux::execValue(*command));
    mustHold(platform::linux::execArguments(DesktopEntry(changed.text()).string("Exec")) ==
             command);
    return 0;
}
