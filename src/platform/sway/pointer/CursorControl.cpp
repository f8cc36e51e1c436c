#include "platform/sway/pointer/CursorControl.h"

#include <algorithm>
#include <cmath>

namespace platform::sway {

namespace {

const std::string kinds[] = {"type:pointer", "type:touchpad"};

// Before that release a device that is mapped to all outputs ("*") is switched off, as one whose
// output is missing.
constexpr int releaseThatMapsToAll = 9;

std::string regionOf(const Rect& r) {
    const auto text = [](double number) { return " " + std::to_string(std::lround(number)); };
    return "map_to_region" + text(r.x) + text(r.y) + text(r.width) + text(r.height);
}

} // namespace

CursorControl::CursorControl(Compositor& target, Changes& all, wayland::Outputs& screens)
    : compositor(target), changes(all), outputs(screens) {}

CursorControl::~CursorControl() {
    confine(nullptr);
}

std::string CursorControl::mapped(const std::string& kind,
                                  const wayland::Outputs::Place& place) const {
    if (compositor.isAtLeast(releaseThatMapsToAll))
        return "input " + kind + " map_to_output \"" + place.name + "\"";
    return "input " + kind + " " + regionOf(place.area);
}

std::string CursorControl::unmapped(const std::string& kind) const {
    const UserConfiguration& users = compositor.configuration();
    const auto places = outputs.places();
    if (compositor.isAtLeast(releaseThatMapsToAll) || places.empty())
        return users.mappingOf(kind, "map_to_output *");
    Rect all = places[0].area;
    for (const auto& place : places) {
        const Rect& r = place.area;
        const double right = std::max(all.x + all.width, r.x + r.width);
        const double bottom = std::max(all.y + all.height, r.y + r.height);
        all.x = std::min(all.x, r.x);
        all.y = std::min(all.y, r.y);
        all.width = right - all.x;
        all.height = bottom - all.y;
    }
    return users.mappingOf(kind, regionOf(all));
}

void CursorControl::confine(const wayland::Outputs::Place* place) {
    for (const std::string& kind : kinds) {
        if (place)
            changes.make(kind, [this, kind, there = *place] {
                return Changes::Change{mapped(kind, there), unmapped(kind)};
            });
        else
            changes.takeBack(kind);
    }
}

void CursorControl::warp(Point layout) {
    compositor.run("seat - cursor set " + std::to_string(std::lround(std::floor(layout.x))) + " " +
                   std::to_string(std::lround(std::floor(layout.y))));
}

} // namespace platform::sway
