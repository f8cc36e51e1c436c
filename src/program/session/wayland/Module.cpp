#include "platform/gnome/GnomeDesktop.h"
#include "platform/kwin/KWinDesktop.h"
#include "platform/layershell/LayerShellDesktop.h"
#include "platform/sway/SwayDesktop.h"

#include <utility>

using namespace platform;

namespace {

using Open = wayland::OpenedDesktop (*)(Descriptors&, Log&, std::function<void()> lost);

// The first that knows the compositor has it; what needs layers alone comes last.
constexpr Open families[] = {&sway::openDesktop, &kwin::openDesktop, &gnome::openDesktop,
                             &layershell::openDesktop};

} // namespace

extern "C" __attribute__((visibility("default"))) void
openWaylandDesktop(wayland::OpenedDesktop& opened, Descriptors& descriptors, Log& log,
                   std::function<void()> lost) {
    for (const Open open : families) {
        opened = open(descriptors, log, lost);
        if (opened.desktop || !opened.error.empty()) return;
    }
}
