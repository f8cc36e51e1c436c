#include "platform/x11/pointer/Cursor.h"

#include <xcb/xfixes.h>

namespace platform::x11 {

Cursor::~Cursor() {
    hidden = 0;
    update();
}

void Cursor::hide() {
    ++hidden;
    update();
}

void Cursor::show() {
    if (hidden == 0) return;
    --hidden;
    update();
}

void Cursor::reveal(bool on) {
    revealed = on;
    update();
}

void Cursor::update() {
    const bool wanted = hidden > 0 && !revealed;
    if (wanted == isHidden) return;
    isHidden = wanted;
    if (wanted)
        xcb_xfixes_hide_cursor(connection.xcb(), connection.root());
    else
        xcb_xfixes_show_cursor(connection.xcb(), connection.root());
    connection.flush();
}

} // namespace platform::x11
