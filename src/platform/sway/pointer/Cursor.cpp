#include "platform/sway/pointer/Cursor.h"

#include "platform/sway/connection/UserConfiguration.h"

#include <utility>

namespace platform::sway {

Cursor::~Cursor() {
    hidden = 0;
    update();
}

void Cursor::hide() {
    ++hidden;
    update();
}

void Cursor::show() {
    if (hidden > 0) --hidden;
    update();
}

void Cursor::setHidingInForce(bool on) {
    inForce = on;
    update();
}

void Cursor::reveal(bool on) {
    revealed = on;
    update();
}

void Cursor::update() {
    const bool wanted = hidden > 0 && inForce && !revealed;
    if (std::exchange(isHidden, wanted) == wanted) return;
    if (wanted)
        changes.make("cursor", {"seat * hide_cursor 100",
                                "seat * hide_cursor " + cursorTimeout(compositor.configuration())});
    else
        changes.takeBack("cursor");
}

} // namespace platform::sway
