#include "platform/session/CountedCursor.h"

namespace platform::session {

void CountedCursor::hide() {
    ++hidden;
    update();
}

void CountedCursor::show() {
    if (hidden == 0) return;
    --hidden;
    update();
}

void CountedCursor::setHidingInForce(bool on) {
    inForce = on;
    update();
}

void CountedCursor::reveal(bool on) {
    revealed = on;
    update();
}

void CountedCursor::update() {
    const bool wanted = hidden > 0 && inForce && !revealed;
    if (wanted == nowHidden) return;
    nowHidden = wanted;
    setHidden(wanted);
}

} // namespace platform::session
