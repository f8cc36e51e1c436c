#include "platform/memory/Cursor.h"

namespace platform::memory {

void Cursor::hide() {
    effects.emit("hideCursor");
    ++hidden;
}

void Cursor::show() {
    effects.emit("showCursor");
    if (hidden > 0) --hidden;
}

void Cursor::setConnectionProperty(std::string_view name, bool value) {
    effects.emit("connectionProperty", Member{"name", name}, Member{"value", value});
}

} // namespace platform::memory
