#include "platform/x11/pointer/Cursor.h"

#include <xcb/xfixes.h>

namespace platform::x11 {

Cursor::~Cursor() {
    if (hidden == 0) return;
    xcb_xfixes_show_cursor(connection.xcb(), connection.root());
    connection.flush();
}

void Cursor::hide() {
    if (hidden++ > 0) return;
    xcb_xfixes_hide_cursor(connection.xcb(), connection.root());
    connection.flush();
}

void Cursor::show() {
    if (hidden == 0 || --hidden > 0) return;
    xcb_xfixes_show_cursor(connection.xcb(), connection.root());
    connection.flush();
}

} // namespace platform::x11
