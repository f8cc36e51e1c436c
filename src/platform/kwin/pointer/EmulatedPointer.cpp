#include "platform/kwin/pointer/EmulatedPointer.h"

#include <fcntl.h>
#include <libei.h>
#include <unistd.h>

namespace platform::kwin {

namespace {

constexpr const char* service = "org.kde.KWin";
constexpr int pointerOnly = 2; // of the portal's types of devices

} // namespace

void EmulatedPointer::Release::operator()(ei* context) const {
    ei_unref(context);
}

void EmulatedPointer::Release::operator()(ei_device* device) const {
    ei_device_unref(device);
}

EmulatedPointer::EmulatedPointer(bus::Link& x, Descriptors& watcher, Log& writer)
    : link(x), descriptors(watcher), log(writer) {
    link.add(*this);
    if (link.bus()) connect();
}

EmulatedPointer::~EmulatedPointer() {
    link.remove(*this);
    disconnect();
}

void EmulatedPointer::attach(sd_bus& bus) {
    call.reset();
    sd_bus_slot* made = nullptr;
    const std::string rule = "type='signal',sender='org.freedesktop.DBus',"
                             "member='NameOwnerChanged',arg0='" +
                             std::string(service) + "'";
    (void)sd_bus_add_match_async(&bus, &made, rule.c_str(), ownerChanged, nullptr, this);
    watch.reset(made);
}

int EmulatedPointer::ownerChanged(sd_bus_message* message, void* own, sd_bus_error*) {
    auto& self = *static_cast<EmulatedPointer*>(own);
    const char *name = nullptr, *before = nullptr, *now = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &now) < 0) return 0;
    self.disconnect();
    if (*now) self.connect();
    return 0;
}

void EmulatedPointer::connect() {
    if (!link.bus()) return;
    sd_bus_slot* made = nullptr;
    (void)sd_bus_call_method_async(link.bus(), &made, service, "/org/kde/KWin/EIS/RemoteDesktop",
                                   "org.kde.KWin.EIS.RemoteDesktop", "connectToEIS", connected,
                                   this, "i", pointerOnly);
    call.reset(made);
    link.settle();
}

int EmulatedPointer::connected(sd_bus_message* reply, void* own, sd_bus_error*) {
    auto& self = *static_cast<EmulatedPointer*>(own);
    int socket = -1, cookie = 0;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read(reply, "hi", &socket, &cookie) >= 0)
        self.begin(::fcntl(socket, F_DUPFD_CLOEXEC, 0));
    else
        self.log.write("the compositor does not let the cursor be moved");
    return 0;
}

void EmulatedPointer::begin(int socket) {
    if (socket < 0) return;
    disconnect();
    context.reset(ei_new_sender(nullptr));
    ei_configure_name(context.get(), "pointer");
    if (ei_setup_backend_fd(context.get(), socket) != 0) return context.reset();
    descriptors.watchReadable(ei_get_fd(context.get()), [this] { read(); });
}

void EmulatedPointer::disconnect() {
    if (context) descriptors.unwatch(ei_get_fd(context.get()));
    relative.reset();
    absolute.reset();
    context.reset();
}

void EmulatedPointer::read() {
    ei_dispatch(context.get());
    while (context) {
        ei_event* const event = ei_get_event(context.get());
        if (!event) return;
        const bool isEnd = ei_event_get_type(event) == EI_EVENT_DISCONNECT;
        if (!isEnd) handle(*event);
        ei_event_unref(event);
        if (isEnd) disconnect();
    }
}

// The absolute one is made anew whenever the outputs change.
void EmulatedPointer::handle(ei_event& event) {
    ei_device* const device = ei_event_get_device(&event);
    switch (ei_event_get_type(&event)) {
    case EI_EVENT_SEAT_ADDED:
        ei_seat_bind_capabilities(ei_event_get_seat(&event), EI_DEVICE_CAP_POINTER,
                                  EI_DEVICE_CAP_POINTER_ABSOLUTE, nullptr);
        break;
    case EI_EVENT_DEVICE_RESUMED:
        for (const auto& [capability, owner] :
             {std::pair(EI_DEVICE_CAP_POINTER, &relative),
              std::pair(EI_DEVICE_CAP_POINTER_ABSOLUTE, &absolute)})
            if (ei_device_has_capability(device, capability)) owner->reset(ei_device_ref(device));
        ei_device_start_emulating(device, ++sequence);
        break;
    case EI_EVENT_DEVICE_PAUSED:
    case EI_EVENT_DEVICE_REMOVED:
        if (relative.get() == device) relative.reset();
        if (absolute.get() == device) absolute.reset();
        break;
    default:
        break;
    }
}

void EmulatedPointer::rest() {
    if (!relative) return;
    ei_device_pointer_motion(relative.get(), 0, 0);
    ei_device_frame(relative.get(), ei_now(context.get()));
}

void EmulatedPointer::moveTo(Point layout) {
    if (!absolute) return;
    ei_device_pointer_motion_absolute(absolute.get(), layout.x, layout.y);
    ei_device_frame(absolute.get(), ei_now(context.get()));
}

} // namespace platform::kwin
