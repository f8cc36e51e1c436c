#pragma once

#include "platform/wayland/connection/Layer.h"

namespace platform::wayland {

/// What is moved often, keeps its size and catches nothing, above all windows of an output. It is
/// drawn beside a layer of one pixel that stays where it is: at each move of a layer KWin arranges
/// all there are, and the user's windows. Main thread.
class Line {
  public:
    /// The area in layout coordinates, on that output.
    Line(Connection& connection, const Outputs::Place& place, const Rect& area, Pixel pixel);
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    void setPixel(Pixel pixel);
    /// Layout coordinates.
    void moveTo(Point corner);
    /// Whether it was taken off the screen since it was made, as when its output goes.
    bool isClosed() const { return base.isClosed(); }

  private:
    Point origin; ///< of the output
    Layer base;
    Pane pane;
    Handle<wl_subsurface> part;
};

} // namespace platform::wayland
