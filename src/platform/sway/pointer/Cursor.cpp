#include "platform/sway/pointer/Cursor.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::sway {

namespace {

constexpr long shortest = 100; // milliseconds; the compositor takes nothing less

} // namespace

Cursor::~Cursor() {
    apply({});
}

void Cursor::hideAfterRest(std::optional<double> seconds) {
    rest = seconds;
    setHidden(isHidden());
}

void Cursor::setHidden(bool on) {
    if (on)
        apply(shortest);
    else if (rest)
        apply(std::max(shortest, std::lround(*rest * 1000)));
    else
        apply({});
}

// Each of these commands shows the cursor and has it rest anew, so none is sent twice. Any rule
// about seats takes the devices from all seats that none says to have the rest; one says so by
// itself where a mouse is plugged in, and not where all devices are those of a remote desktop.
void Cursor::apply(std::optional<long> milliseconds) {
    if (std::exchange(applied, milliseconds) == milliseconds) return;
    const std::string command =
        (compositor.configuration().choosesFallbackSeat() ? "" : "seat seat0 fallback true; ") +
        std::string("seat * hide_cursor ");
    if (milliseconds)
        changes.make("cursor", [this, wanted = command + std::to_string(*milliseconds)] {
            return Changes::Change{wanted, compositor.configuration().cursorHiding()};
        });
    else
        changes.takeBack("cursor");
}

} // namespace platform::sway
