#include "platform/kwin/hiding/Cursor.h"

#include <algorithm>
#include <cmath>

namespace platform::kwin {

namespace {

constexpr int shortest = 1; // seconds; the effect counts whole ones

} // namespace

Cursor::Cursor(wayland::PointerSeat& pointer, HidingEffect& compositors, Descriptors& descriptors)
    : seat(pointer),
      effect(compositors),
      settle(
          descriptors, [this] { update(); }, std::chrono::seconds(1)) {}

Cursor::~Cursor() {
    seat.hideCursor(false);
}

void Cursor::hideAfterRest(std::optional<double> seconds) {
    rest.reset();
    if (seconds) rest = std::max(shortest, static_cast<int>(std::lround(*seconds)));
    update();
}

// The compositor is not asked while the pointer is followed.
void Cursor::setHidden(bool on) {
    seat.hideCursor(on);
    settle.stop();
    settle.start();
}

void Cursor::update() {
    settle.stop();
    effect.set(isHidden() ? std::optional(shortest) : rest);
}

} // namespace platform::kwin
