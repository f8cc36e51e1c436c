#pragma once

#include "testing/desktop/Layout.h"
#include "testing/desktop/XConnection.h"

namespace pictures {

/// What is behind the program in a picture: a desk with a panel along the top of the first monitor
/// and a few windows, all of them painted onto the root window. It stays until the object goes.
class Backdrop {
  public:
    Backdrop(const std::string& display, const support::Layout& layout, bool dark);

    static constexpr int panelHeight = 28; ///< pixels
    /// As "0xrrggbb".
    static std::string panelColour(bool dark);

  private:
    void fill(const support::Area& area, std::uint32_t colour) const;
    void paintWindow(const support::Area& window) const;

    support::XConnection x;
    bool dark;
    xcb_pixmap_t picture;
    xcb_gcontext_t brush;
};

} // namespace pictures
