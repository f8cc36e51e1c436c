#pragma once

#include "platform/x11/session/Displays.h"

#include <optional>

namespace platform::x11 {

/// Tells which CRTCs light one screen alone. A gamma ramp belongs to a CRTC, so where one output is
/// divided into several monitors it would darken the others too.
class GammaOutputs {
  public:
    GammaOutputs(Connection& connection, const Displays& displays);

    /// The CRTCs that light the screen with this frame, bottom-left coordinates; empty where one of
    /// them lights more than that, or none does. A round trip after `layoutChanged`, and at first.
    std::vector<xcb_randr_crtc_t> litAlone(Rect screen);

    void layoutChanged() { known.reset(); }

  private:
    struct Lit {
        xcb_rectangle_t area; ///< root coordinates
        std::vector<xcb_randr_crtc_t> crtcs;
    };
    struct Wiring {
        std::vector<Lit> monitors;
        std::vector<Lit> crtcs; ///< one each
    };

    Wiring fetch();

    Connection& connection;
    const Displays& displays;
    std::optional<Wiring> known;
};

} // namespace platform::x11
