#include "power/ScreenSaverWatch.h"

#include <stdexcept>

namespace powertests {

namespace {

constexpr std::int16_t timeoutSeconds = 1;
constexpr std::uint32_t twoTimeouts = 2000; // milliseconds

} // namespace

ScreenSaverWatch::ScreenSaverWatch(const std::string& display) : x(display) {
    xcb_set_screen_saver(x.get(), timeoutSeconds, 0, XCB_BLANKING_PREFERRED, XCB_EXPOSURES_ALLOWED);
    xcb_screensaver_select_input(x.get(), x.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    x.sync();
}

support::Reply<xcb_screensaver_query_info_reply_t> ScreenSaverWatch::info() const {
    auto reply = support::own(xcb_screensaver_query_info_reply(
        x.get(), xcb_screensaver_query_info(x.get(), x.root()), nullptr));
    if (!reply) throw std::runtime_error("the server has no screen saver");
    return reply;
}

bool ScreenSaverWatch::starts() {
    return x.waitUntil([this] { return info()->state == XCB_SCREENSAVER_STATE_ON; });
}

bool ScreenSaverWatch::staysOff() {
    bool isOn = false;
    const bool isLate = support::waitUntil([&] {
        const auto now = info();
        isOn = now->state == XCB_SCREENSAVER_STATE_ON;
        return isOn || now->ms_since_user_input >= twoTimeouts;
    });
    return isLate && !isOn;
}

} // namespace powertests
