#include "platform/kwin/pointer/CursorControl.h"

#include <cmath>

// What was pushed against a closed barrier is remembered, and would throw the cursor across when
// the barrier opens: a motion of no length before it has it forgotten. Up to KWin 6.3 a barrier
// stops absolute motions as well, so that it is opened for each of them.

namespace platform::kwin {

CursorControl::CursorControl(Script& inside, EmulatedPointer& hand)
    : script(inside), pointer(hand) {}

CursorControl::~CursorControl() {
    confine(nullptr);
}

void CursorControl::confine(const wayland::Outputs::Place* place) {
    held = place ? std::optional(place->area) : std::nullopt;
    pointer.rest();
    again();
}

void CursorControl::again() {
    if (held && !isLocked)
        script.run("hold", {std::vector{held->x, held->y, held->width, held->height}});
    else
        script.run("hold");
}

// The lock screen is on all outputs, and a push would reach no layer of the program's.
void CursorControl::setLocked(bool now) {
    isLocked = now;
    pointer.rest();
    again();
}

void CursorControl::warp(Point layout) {
    const Point to{std::floor(layout.x), std::floor(layout.y)};
    pointer.rest();
    script.run("pass", {to.x, to.y}, [this, to, number = ++warps] {
        if (number != warps) return; // another one followed
        pointer.rest();
        pointer.moveTo(to);
    });
}

// Layers come and go with a crossing, and KWin draws when they do: it is to hear of this before.
void CursorControl::cross(const wayland::Outputs::Place& place, Point layout) {
    wayland::CursorControl::cross(place, layout);
    script.hurry();
}

} // namespace platform::kwin
