#pragma once

#include "testing/desktop/XConnection.h"

#include <xcb/screensaver.h>

namespace powertests {

/// Watches the X server's screen saver, which it sets to start after a second without input. One
/// thread.
class ScreenSaverWatch {
  public:
    explicit ScreenSaverWatch(const std::string& display);

    /// Waits for the saver to start.
    bool starts();
    /// Whether it does not, though by the server's own clock two seconds go by without input.
    bool staysOff();

  private:
    support::Reply<xcb_screensaver_query_info_reply_t> info() const;

    support::XConnection x;
};

} // namespace powertests
