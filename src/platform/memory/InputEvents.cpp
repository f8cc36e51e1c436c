#include "platform/memory/InputEvents.h"

namespace platform::memory {

void InputEvents::addGlobalMonitor(EventMask mask, Handler handler) {
    effects.emit("monitor", Member{"mask", mask});
    listeners.push_back({mask, std::move(handler)});
}

void InputEvents::addTap(const TapParameters& parameters, Handler handler) {
    effects.emit("tap", Member{"location", static_cast<int>(parameters.location)},
                 Member{"placement", static_cast<int>(parameters.placement)},
                 Member{"options", static_cast<int>(parameters.options)},
                 Member{"mask", parameters.mask});
    listeners.push_back({parameters.mask, std::move(handler)});
}

void InputEvents::deliver(InputEvent event) {
    event.time = static_cast<double>(clock.nanoseconds) / 1e9;
    for (std::size_t i = 0; i < listeners.size(); ++i)
        if ((listeners[i].mask & maskOf(event.type)) != 0) listeners[i].handler(event);
}

} // namespace platform::memory
