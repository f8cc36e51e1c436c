#pragma once

#include "platform/x11/overlay/GammaGuard.h"
#include "platform/x11/session/Displays.h"

#include <map>

namespace platform::x11 {

/// Darkens monitors through the gamma ramps of their CRTCs, for as long as somebody asks for it.
/// Each CRTC is darkened once, by the darkest of those who ask, from the ramp found at first; that
/// ramp is put back exactly when the last of them has let go, or with this object.
class Gamma {
  public:
    Gamma(Connection& connection, std::string guardExecutable, Log& log);
    ~Gamma();
    Gamma(const Gamma&) = delete;
    Gamma& operator=(const Gamma&) = delete;

    /// Replaces what `who` asked for before. `darkness` 0 leaves the ramps as they are, 1 is black.
    void darken(const void* who, std::vector<xcb_randr_crtc_t> crtcs, double darkness);
    void release(const void* who);

  private:
    struct Wish {
        std::vector<xcb_randr_crtc_t> crtcs;
        double darkness;
    };
    using Ramp = std::vector<std::uint16_t>; ///< red, green, blue, one after another

    void apply();
    bool remember(xcb_randr_crtc_t crtc);
    void set(xcb_randr_crtc_t crtc, const Ramp& ramp);

    Connection& connection;
    GammaGuard guard;
    std::map<const void*, Wish> wishes;
    std::map<xcb_randr_crtc_t, Ramp> originals; ///< of the CRTCs that are darkened now
};

} // namespace platform::x11
