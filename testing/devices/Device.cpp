#include "testing/devices/Device.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xinput.h>

namespace support {

namespace {

// The protocol of Xorg's driver "inputtest" (its manual page inputtest(4)), version 1.0, which has
// all that is used here. Numbers and their order are the driver's.
enum : std::uint32_t {
    clientVersion,
    waitForSync,
    motionEvent,
    proximity,
    buttonEvent,
    key,
    touchEvent
};
constexpr double axisValues = 65536; // of a place, from the left or the top of the desktop

struct Header {
    std::uint32_t length, type;
};
struct Version {
    Header header;
    std::uint16_t major, minor;
};
struct Values {
    std::uint32_t hasUnaccelerated = 0;
    std::array<std::uint8_t, 8> mask{};
    std::array<double, 64> values{}, unaccelerated{};

    void set(unsigned axis, double value) {
        mask[axis / 8] = static_cast<std::uint8_t>(mask[axis / 8] | 1u << axis % 8);
        values[axis] = value;
    }
};
struct Motion {
    Header header{sizeof(Motion), motionEvent};
    std::uint32_t isAbsolute = 0;
    Values values{};
};
struct Button {
    Header header{sizeof(Button), buttonEvent};
    std::int32_t isAbsolute = 0, button = 0;
    std::uint32_t isPress = 0;
    Values values{};
};
struct Touch {
    Header header{sizeof(Touch), touchEvent};
    std::uint32_t id = 0, type = 0;
    Values values{};
};

} // namespace

Device::Device(const std::filesystem::path& path, const Area& area)
    : desktop(area), connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(connection);
        throw std::runtime_error("the X server has no device at " + path.string());
    }
    const Version version{{sizeof(Version), clientVersion}, 1, 0};
    send(&version, sizeof version);
    Version reply{};
    if (recv(connection, &reply, sizeof reply, MSG_WAITALL) != sizeof reply)
        throw std::runtime_error("the X server's device does not answer");
}

Device::~Device() {
    close(connection);
}

void Device::send(const void* event, std::size_t size) {
    if (::send(connection, event, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size))
        throw std::runtime_error("the X server's device has gone");
}

void Device::sync() {
    const Header question{sizeof(Header), waitForSync};
    send(&question, sizeof question);
    Header answer{};
    if (recv(connection, &answer, sizeof answer, MSG_WAITALL) != sizeof answer)
        throw std::runtime_error("the X server's device has gone");
}

// To the middle of a pixel.
double Device::across(int x) const {
    return (x + 0.5) * axisValues / desktop.width;
}

double Device::down(int y) const {
    return (y + 0.5) * axisValues / desktop.height;
}

void Device::motion(bool absolute, unsigned firstAxis, double first, unsigned secondAxis,
                    double second) {
    Motion event;
    event.isAbsolute = absolute ? 1 : 0;
    event.values.set(firstAxis, first);
    event.values.set(secondAxis, second);
    send(&event, sizeof event);
    sync();
}

void Device::move(int dx, int dy) {
    motion(false, 0, dx, 1, dy);
}

void Device::place(int x, int y) {
    motion(true, 0, across(x), 1, down(y));
}

void Device::scroll(int notchParts) {
    Motion event;
    event.values.set(3, notchParts);
    send(&event, sizeof event);
    sync();
}

void Device::scrollAcross(int notchParts) {
    Motion event;
    event.values.set(2, notchParts);
    send(&event, sizeof event);
    sync();
}

void Device::button(int number, bool down) {
    Button event;
    event.button = number;
    event.isPress = down ? 1 : 0;
    send(&event, sizeof event);
    sync();
}

void Device::press(int number) {
    button(number, true);
}

void Device::release(int number) {
    button(number, false);
}

void Device::touches(unsigned type, unsigned finger, int x, int y) {
    Touch event;
    event.id = finger;
    event.type = type;
    event.values.set(0, across(x));
    event.values.set(1, down(y));
    send(&event, sizeof event);
    sync();
}

void Device::touch(unsigned finger, int x, int y) {
    touches(XCB_INPUT_TOUCH_BEGIN, finger, x, y);
}

void Device::drag(unsigned finger, int x, int y) {
    touches(XCB_INPUT_TOUCH_UPDATE, finger, x, y);
}

void Device::lift(unsigned finger, int x, int y) {
    touches(XCB_INPUT_TOUCH_END, finger, x, y);
}

} // namespace support
