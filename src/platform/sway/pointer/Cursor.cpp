#include "platform/sway/pointer/Cursor.h"

#include "platform/sway/connection/UserConfiguration.h"

namespace platform::sway {

Cursor::~Cursor() {
    if (isHidden()) setHidden(false);
}

void Cursor::setHidden(bool on) {
    if (on)
        changes.make("cursor", {"seat * hide_cursor 100",
                                "seat * hide_cursor " + cursorTimeout(compositor.configuration())});
    else
        changes.takeBack("cursor");
}

} // namespace platform::sway
