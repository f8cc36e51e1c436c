#include "platform/x11/session/ScreenSaver.h"

#include <xcb/screensaver.h>

namespace platform::x11 {

ScreenSaver::~ScreenSaver() {
    while (count > 0)
        resume();
}

// A request of an extension that is not there would close the connection.
bool ScreenSaver::canSuspend() {
    if (able) return *able;
    const auto* extension = xcb_get_extension_data(connection.xcb(), &xcb_screensaver_id);
    able = false;
    if (extension && extension->present) {
        const auto version = connection.wait(
            xcb_screensaver_query_version(connection.xcb(), XCB_SCREENSAVER_MAJOR_VERSION,
                                          XCB_SCREENSAVER_MINOR_VERSION),
            xcb_screensaver_query_version_reply);
        able = version && (version->server_major_version > 1 || version->server_minor_version >= 1);
    } else {
        connection.sync(); // waiting may have brought events along
    }
    return *able;
}

bool ScreenSaver::keep(AssertionId, const std::string&) {
    if (!canSuspend()) return false;
    ++count;
    xcb_screensaver_suspend(connection.xcb(), 1);
    connection.flush();
    return true;
}

void ScreenSaver::resume() {
    if (count == 0) return;
    --count;
    xcb_screensaver_suspend(connection.xcb(), 0);
    connection.flush();
}

std::string_view ScreenSaver::missing() const {
    return "the X server's screen saver cannot be held off: it lacks the extension "
           "MIT-SCREEN-SAVER";
}

} // namespace platform::x11
