#include "platform/memory/MemoryPlatform.h"

namespace platform::memory {

Platform MemoryPlatform::servicesWith(platform::Web& engine) {
    return {log,           runLoop,  application, bundle,    settings,   files,
            system,        displays, pointer,     cursor,    input,      keyboard,
            hotKeys,       windows,  focus,       workspace, statusItem, alerts,
            notifications, sounds,   loginItems,  power,     textCodec,  infoWindows,
            http,          json,     images,      engine,    calendar};
}

void MemoryPlatform::move(Point to, EventType type) {
    pointer.place(to);
    input.deliver({.type = type, .location = to, .keyCode = 0, .time = 0});
}

void MemoryPlatform::changeModifier(std::uint16_t keyCode) {
    input.deliver({.type = EventType::flagsChanged,
                   .location = pointer.location(),
                   .keyCode = keyCode,
                   .time = 0});
}

} // namespace platform::memory
