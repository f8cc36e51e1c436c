#include "platform/wayland/overlay/Line.h"

namespace platform::wayland {

Line::Line(Connection& x, const Outputs::Place& place, const Rect& area, Pixel pixel)
    : origin{place.area.x, place.area.y},
      base(x, Layer::Look{place, {origin.x, origin.y, 1, 1}}),
      pane(x),
      part(wl_subcompositor_get_subsurface(x.subcompositor(), pane.surface(), base.surface())) {
    wl_subsurface_set_desync(part.get());
    pane.setCatches(false);
    pane.stretch(area.width, area.height);
    setPixel(pixel);
    base.setCatches(false);
    moveTo({area.x, area.y});
}

void Line::setPixel(Pixel pixel) {
    pane.paint(pixel);
    pane.commit();
    base.commit();
}

void Line::moveTo(Point corner) {
    wl_subsurface_set_position(part.get(), static_cast<int>(corner.x - origin.x),
                               static_cast<int>(corner.y - origin.y));
    base.commit(); // by which the position is in force
}

} // namespace platform::wayland
