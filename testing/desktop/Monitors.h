#pragma once

#include "testing/desktop/Layout.h"
#include "testing/desktop/XConnection.h"

#include <xcb/randr.h>

namespace support {

/// Sets up the monitors of a private server through RandR.
class Monitors {
  public:
    enum class Way {
        outputs, ///< each monitor is an output with a CRTC of its own (Xorg)
        regions  ///< one output; the monitors are regions of it, RandR 1.5 (Xvfb, Xephyr)
    };

    /// `connection` must outlive the object.
    Monitors(const XConnection& connection, Way way);

    /// Makes `layout` the layout; what it does not name goes dark. Returns when the server has
    /// done it. Throws std::runtime_error where the server refuses.
    void apply(const Layout& layout);

    const Layout& layout() const { return current; }

    /// What the server tells, primary first.
    Layout seen() const;

  private:
    struct Output {
        xcb_randr_output_t id;
        std::vector<xcb_randr_crtc_t> crtcs;
    };
    struct Resources {
        Reply<xcb_randr_get_screen_resources_current_reply_t> reply;
        std::map<std::string, Output> outputs;
        std::map<std::string, xcb_randr_mode_t> modes; ///< by name
    };

    Resources resources() const;
    xcb_randr_mode_t modeFor(const Resources& known, const Area& area, xcb_randr_output_t output);
    void light(const Layout& lit);
    void setScreenSize(const Area& bounds);
    void probe() const;
    void divide(const Layout& wanted);

    const XConnection& x;
    Way way;
    Layout current;
    std::vector<std::string> regionNames;
};

} // namespace support
