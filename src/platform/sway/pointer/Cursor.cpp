#include "platform/sway/pointer/Cursor.h"

namespace platform::sway {

Cursor::~Cursor() {
    if (isHidden()) setHidden(false);
}

void Cursor::setHidden(bool on) {
    if (on)
        changes.make("cursor", [this] {
            return Changes::Change{"seat * hide_cursor 100",
                                   compositor.configuration().cursorHiding()};
        });
    else
        changes.takeBack("cursor");
}

} // namespace platform::sway
