#pragma once

#include "platform/Log.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace platform::x11 {

/// The process that puts the gamma ramps back when this one is killed. It is started at the first
/// ramp it has to keep; when it cannot be, that is logged once and nothing is guarded.
class GammaGuard {
  public:
    GammaGuard(std::string executable, std::string displayName, Log& log);
    /// Lets the helper go and waits for its end; it puts back what it still keeps.
    ~GammaGuard();
    GammaGuard(const GammaGuard&) = delete;
    GammaGuard& operator=(const GammaGuard&) = delete;

    /// To be called before the CRTC is first changed. `ramp` is red, green, blue, one after
    /// another.
    void keep(std::uint32_t crtc, const std::vector<std::uint16_t>& ramp);
    void forget(std::uint32_t crtc);

  private:
    void start();
    bool send(const void* data, std::size_t bytes);

    std::string executable;
    std::string displayName;
    Log& log;
    pid_t child = 0;
    int socket = -1;
    bool failed = false;
};

} // namespace platform::x11
