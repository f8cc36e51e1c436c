#include "platform/sway/pointer/CursorControl.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

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
    for (const std::string& kind : kinds)
        confine(kind, place);
}

void CursorControl::confine(const std::string& kind, const wayland::Outputs::Place* place) {
    if (place)
        changes.make(kind, [this, kind, there = *place] {
            return Changes::Change{mapped(kind, there), unmapped(kind)};
        });
    else
        changes.takeBack(kind);
}

// Sway counts from the corner of all outputs, which may lie before the origin of its own layout. In
// one piece of memory, since a warp answers to the hand.
void CursorControl::warp(Point layout) {
    Point corner = layout;
    for (const auto& place : outputs.places()) {
        corner.x = std::min(corner.x, place.area.x);
        corner.y = std::min(corner.y, place.area.y);
    }
    // A place was told in 256ths, and later releases are one short of a whole pixel.
    constexpr double rounding = 1.0 / 128;
    const auto pixel = [](double at) { return std::lround(std::floor(at + rounding)); };
    char command[64];
    std::snprintf(command, sizeof command, "seat - cursor set %ld %ld", pixel(layout.x - corner.x),
                  pixel(layout.y - corner.y));
    compositor.run(command);
}

// The compositor compiles a keymap for each rule about a device, which takes it some milliseconds:
// the cursor is there before the first one. A hand that moved it in between has taken it back, and
// so it is put there again.
void CursorControl::cross(const wayland::Outputs::Place& place, Point layout) {
    static_assert(std::size(kinds) == 2);
    warp(layout);
    confine(kinds[0], &place);
    warp(layout);
    confine(kinds[1], &place);
}

// Later releases look under the cursor when it moves, and not when a layer comes there.
void CursorControl::stir() {
    compositor.run("seat - cursor move 0 0");
}

} // namespace platform::sway
