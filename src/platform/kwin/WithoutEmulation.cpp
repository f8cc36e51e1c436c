#include "platform/kwin/KWinDesktop.h"
#include "platform/kwin/Release.h"

namespace platform::kwin {

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()>) {
    if (!isKWin(descriptors, log)) return {};
    bus::Link link(descriptors, log);
    if (link.wait() != bus::Link::State::up) return {};
    const Release release = releaseOnBus(link);
    if (release == Release::none) return {};
    return {nullptr, release == Release::older ? tooOld : withoutEmulation};
}

} // namespace platform::kwin
