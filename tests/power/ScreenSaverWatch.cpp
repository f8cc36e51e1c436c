#include "power/ScreenSaverWatch.h"

#include <xcb/screensaver.h>

namespace powertests {

namespace {

constexpr std::int16_t timeoutSeconds = 1;
constexpr support::milliseconds severalTimeouts{3500};

} // namespace

ScreenSaverWatch::ScreenSaverWatch(const std::string& display) : x(display) {
    xcb_set_screen_saver(x.get(), timeoutSeconds, 0, XCB_BLANKING_PREFERRED, XCB_EXPOSURES_ALLOWED);
    xcb_screensaver_select_input(x.get(), x.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    x.sync();
}

bool ScreenSaverWatch::isOn() const {
    const auto info = support::own(xcb_screensaver_query_info_reply(
        x.get(), xcb_screensaver_query_info(x.get(), x.root()), nullptr));
    return info && info->state == XCB_SCREENSAVER_STATE_ON;
}

bool ScreenSaverWatch::startsWithin(support::milliseconds limit) {
    return x.waitUntil([this] { return isOn(); }, limit);
}

bool ScreenSaverWatch::staysOff() {
    return !startsWithin(severalTimeouts);
}

} // namespace powertests
