#pragma once

#include "platform/Log.h"

#include <string>

namespace platform::qt {

/// Hands addresses to the desktop's own opener, which knows the user's browser and mail program. No
/// shell is involved. Main thread.
class UrlOpener {
  public:
    /// The log must outlive the object.
    explicit UrlOpener(Log& writer) : log(writer) {}

    /// Returns at once. Only http and https with a host, and mailto, are opened; anything else is
    /// logged. A desktop that has no opener is logged once.
    void open(const std::string& url);

  private:
    Log& log;
    bool toldMissing = false;
};

} // namespace platform::qt
