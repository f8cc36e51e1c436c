#pragma once

#include "testing/desktop/XConnection.h"

namespace powertests {

/// Watches the X server's screen saver, which it sets to start after a second without input. One
/// thread.
class ScreenSaverWatch {
  public:
    explicit ScreenSaverWatch(const std::string& display);

    /// Waits for the saver to start.
    bool starts() { return startsWithin(support::generous); }
    /// Whether it does not, though far more than its second goes by without input.
    bool staysOff();

  private:
    bool startsWithin(support::milliseconds limit);
    bool isOn() const;

    support::XConnection x;
};

} // namespace powertests
