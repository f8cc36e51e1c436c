#include "platform/x11/pointer/Cursor.h"

#include <xcb/xfixes.h>

namespace platform::x11 {

Cursor::~Cursor() {
    if (isHidden()) setHidden(false);
}

void Cursor::setHidden(bool on) {
    if (on)
        xcb_xfixes_hide_cursor(connection.xcb(), connection.root());
    else
        xcb_xfixes_show_cursor(connection.xcb(), connection.root());
    connection.flush();
}

} // namespace platform::x11
