#include "testing/desktop/Hand.h"
#include "testing/kwin/PrivateKWin.h"

#include <cmath>
#include <libei.h>
#include <linux/input-event-codes.h>
#include <stdexcept>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace support {

KWinHand::KWinHand(const PrivateKWin& kwin) {
    constexpr int keyboardAndPointer = 3;
    const std::string& address = kwin.environment().at("DBUS_SESSION_BUS_ADDRESS");
    sd_bus_message* reply = nullptr;
    int socket = -1, cookie = 0;
    if (sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, address.c_str()) < 0 ||
        sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0 ||
        sd_bus_call_method(bus, "org.kde.KWin", "/org/kde/KWin/EIS/RemoteDesktop",
                           "org.kde.KWin.EIS.RemoteDesktop", "connectToEIS", nullptr, &reply, "i",
                           keyboardAndPointer) < 0 ||
        sd_bus_message_read(reply, "hi", &socket, &cookie) < 0)
        throw std::runtime_error("the compositor takes no emulated input");
    context = ei_new_sender(nullptr);
    ei_configure_name(context, "hand");
    ei_setup_backend_fd(context, dup(socket));
    sd_bus_message_unref(reply);
    const auto deadline = Clock::now() + generous;
    while (!isReady() && waitReadable(ei_get_fd(context), deadline))
        read();
    if (!isReady()) throw std::runtime_error("no emulated devices");
}

KWinHand::~KWinHand() {
    for (ei_device* const one : {mouse, absolute, keyboard})
        if (one) ei_device_unref(one);
    ei_unref(context);
    sd_bus_flush_close_unref(bus);
}

void KWinHand::read() {
    ei_dispatch(context);
    while (ei_event* const event = ei_get_event(context)) {
        ei_device* const device = ei_event_get_device(event);
        const auto hold = [&](ei_device_capability capability, ei_device*& place) {
            if (!ei_device_has_capability(device, capability)) return;
            if (place) ei_device_unref(place);
            place = ei_device_ref(device);
        };
        switch (ei_event_get_type(event)) {
        case EI_EVENT_SEAT_ADDED:
            ei_seat_bind_capabilities(ei_event_get_seat(event), EI_DEVICE_CAP_POINTER,
                                      EI_DEVICE_CAP_POINTER_ABSOLUTE, EI_DEVICE_CAP_BUTTON,
                                      EI_DEVICE_CAP_KEYBOARD, nullptr);
            break;
        case EI_EVENT_DEVICE_RESUMED:
            hold(EI_DEVICE_CAP_POINTER, mouse);
            hold(EI_DEVICE_CAP_POINTER_ABSOLUTE, absolute);
            hold(EI_DEVICE_CAP_KEYBOARD, keyboard);
            ei_device_start_emulating(device, ++sequence);
            break;
        default:
            break;
        }
        ei_event_unref(event);
    }
}

// Calls of the bus that only the compositor's own loop answers, behind what it has read before: it
// may be asked once before it looks at its sockets.
void KWinHand::synchronize() {
    read();
    for (int i = 0; i < 3; ++i)
        if (sd_bus_call_method(bus, "org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting",
                               "isScriptLoaded", nullptr, nullptr, "s", "") < 0)
            throw std::runtime_error("the compositor does not answer");
}

void KWinHand::send(double dx, double dy) {
    ei_device_pointer_motion(mouse, dx, dy);
    ei_device_frame(mouse, ei_now(context));
}

void KWinHand::moveTo(double x, double y) {
    read(); // the device is another one when the outputs have changed
    ei_device_pointer_motion_absolute(absolute, x, y);
    ei_device_frame(absolute, ei_now(context));
    synchronize();
}

void KWinHand::relative(double dx, double dy) {
    send(dx, dy);
    synchronize();
}

double KWinHand::push(double dx, double dy, int steps, int hz) {
    const Pace pace = repeat(steps, hz, [&](int) { send(dx, dy); });
    synchronize();
    return pace.took;
}

double KWinHand::pushAt(double speed, double seconds, int hz) {
    const Pace pace = repeat(static_cast<int>(seconds * hz), hz, [&](int step) {
        const auto pixels = [&](int steps) { return std::trunc(speed * steps / hz); };
        const double dx = pixels(step + 1) - pixels(step);
        if (dx != 0) send(dx, 0);
    });
    synchronize();
    return pace.latest;
}

void KWinHand::button(bool down) {
    ei_device_button_button(mouse, BTN_LEFT, down);
    ei_device_frame(mouse, ei_now(context));
    synchronize();
}

void KWinHand::key(std::uint32_t code, bool down) {
    ei_device_keyboard_key(keyboard, code, down);
    ei_device_frame(keyboard, ei_now(context));
    synchronize();
}

} // namespace support
