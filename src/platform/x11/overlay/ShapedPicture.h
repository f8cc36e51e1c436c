#pragma once

#include "platform/x11/overlay/PictureUpload.h"

namespace platform::x11 {

/// A window that is a picture without translucency: it is there where the picture is at least half
/// opaque, and nowhere else. Clicks go through it. Not shown at first.
class ShapedPicture {
  public:
    /// `area` in root coordinates.
    ShapedPicture(Connection& connection, Picture& picture, const xcb_rectangle_t& area);
    ~ShapedPicture();
    ShapedPicture(const ShapedPicture&) = delete;
    ShapedPicture& operator=(const ShapedPicture&) = delete;

    xcb_window_t handle() const { return window; }
    /// Coming on screen puts it on top.
    void show(bool wanted);
    void moveTo(int x, int y);

  private:
    Connection& connection;
    xcb_window_t window;
    bool shown = false;
};

} // namespace platform::x11
