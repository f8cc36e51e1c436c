#pragma once

#include <array>
#include <xcb/xproto.h>

namespace platform::x11 {

enum class AtomName : unsigned char {
    utf8String,
    netActiveWindow,
    netCurrentDesktop,
    netDesktopLayout,
    netNumberOfDesktops,
    netSupported,
    netSupportingWmCheck,
    netWmPid,
    netWmName,
    netWmState,
    netWmStateAbove,
    netWmStateFullscreen,
    netWmStateSkipPager,
    netWmStateSkipTaskbar,
    netWmStateSticky,
    netWmWindowType,
    netWmWindowTypeNotification,
    netWmBypassCompositor,
    netWmDesktop,
    netWmWindowOpacity,
    comptonShadow,
    count
};

constexpr std::array<const char*, static_cast<std::size_t>(AtomName::count)> atomTexts = {
    "UTF8_STRING",
    "_NET_ACTIVE_WINDOW",
    "_NET_CURRENT_DESKTOP",
    "_NET_DESKTOP_LAYOUT",
    "_NET_NUMBER_OF_DESKTOPS",
    "_NET_SUPPORTED",
    "_NET_SUPPORTING_WM_CHECK",
    "_NET_WM_PID",
    "_NET_WM_NAME",
    "_NET_WM_STATE",
    "_NET_WM_STATE_ABOVE",
    "_NET_WM_STATE_FULLSCREEN",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_NOTIFICATION",
    "_NET_WM_BYPASS_COMPOSITOR",
    "_NET_WM_DESKTOP",
    "_NET_WM_WINDOW_OPACITY",
    "_COMPTON_SHADOW",
};

} // namespace platform::x11
