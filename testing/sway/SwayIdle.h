#pragma once

#include "testing/sway/PrivateSway.h"

struct wl_proxy;

namespace support {

/// Tells whether the private compositor finds that nobody has used it for some time.
class SwayIdle {
  public:
    /// Throws std::runtime_error where the compositor does not tell.
    SwayIdle(const std::string& socketPath, std::chrono::milliseconds span);
    SwayIdle(const PrivateSway& sway, std::chrono::milliseconds span)
        : SwayIdle(sway.socket(), span) {}
    ~SwayIdle();
    SwayIdle(const SwayIdle&) = delete;
    SwayIdle& operator=(const SwayIdle&) = delete;

    bool isIdle() const;

  private:
    WaylandClient client;
    wl_proxy* manager = nullptr;
    wl_proxy* timeout = nullptr;
    bool isOfKde = false;
    bool idle = false;
};

} // namespace support
