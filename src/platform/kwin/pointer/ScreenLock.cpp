#include "platform/kwin/pointer/ScreenLock.h"

#include <utility>

namespace platform::kwin {

namespace {

constexpr const char *service = "org.freedesktop.ScreenSaver", *path = "/ScreenSaver";

} // namespace

ScreenLock::ScreenLock(bus::Link& x, std::function<void(bool)> handler)
    : link(x), changed(std::move(handler)) {
    link.add(*this);
    if (link.bus()) up();
}

ScreenLock::~ScreenLock() {
    link.remove(*this);
}

void ScreenLock::attach(sd_bus& bus) {
    sd_bus_slot* made = nullptr;
    (void)sd_bus_match_signal_async(&bus, &made, service, path, service, "ActiveChanged", told,
                                    nullptr, this);
    watch = bus::Slot(made);
}

// It may have been locked before.
void ScreenLock::up() {
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(link.bus(), &made, service, path, service, "GetActive", told,
                                   this, "");
    question = bus::Slot(made);
    link.settle();
}

int ScreenLock::told(sd_bus_message* message, void* own, sd_bus_error*) {
    auto& self = *static_cast<ScreenLock*>(own);
    int now = 0;
    if (sd_bus_message_is_method_error(message, nullptr) != 0 ||
        sd_bus_message_read(message, "b", &now) < 0)
        return 0;
    if (std::exchange(self.isLocked, now != 0) != (now != 0)) self.changed(self.isLocked);
    return 0;
}

} // namespace platform::kwin
