#include "platform/kwin/KWinDesktop.h"
#include "platform/kwin/Release.h"

namespace platform::kwin {

wayland::OpenedDesktop openDesktop(Descriptors& descriptors, Log& log, std::function<void()>) {
    if (!isKWin(descriptors, log)) return {};
    bus::Link link(descriptors, log);
    if (link.wait() != bus::Link::State::up || releaseOnBus(link) == Release::none) return {};
    return {nullptr, refusal};
}

} // namespace platform::kwin
