#include "platform/x11/input/Devices.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::x11 {

namespace {

double fromFixed(const xcb_input_fp3232_t& value) {
    return value.integral + value.frac / 4294967296.0;
}

} // namespace

std::optional<Point> valuesOf(const xcb_input_raw_motion_event_t& event) {
    if (event.valuators_len == 0) return std::nullopt;
    const std::uint32_t mask = xcb_input_raw_button_press_valuator_mask(&event)[0];
    if ((mask & 0x3) == 0) return std::nullopt;
    const xcb_input_fp3232_t* next = xcb_input_raw_button_press_axisvalues(&event);
    const auto value = [&](std::uint32_t bit) {
        if (!(mask & bit)) return 0.0;
        const xcb_input_fp3232_t& fixed = *next++;
        return fixed.integral + fixed.frac / 4294967296.0;
    };
    const double x = value(1);
    return Point{x, value(2)};
}

void Devices::read() {
    xcb_connection_t* c = connection.xcb();
    const auto devicesAsked = xcb_input_xi_query_device(c, XCB_INPUT_DEVICE_ALL);
    const auto rootAsked = xcb_get_geometry(c, connection.root());
    const auto devices = connection.wait(devicesAsked, xcb_input_xi_query_device_reply);
    const auto root = connection.wait(rootAsked, xcb_get_geometry_reply);
    if (!devices || !root) return; // the server has gone
    setRoot(root->width, root->height);
    list.clear();
    for (auto info = xcb_input_xi_query_device_infos_iterator(devices.get()); info.rem;
         xcb_input_xi_device_info_next(&info))
        list.push_back(describe(*info.data));
}

void Devices::setRoot(std::uint16_t width, std::uint16_t height) {
    rootWidth = width;
    rootHeight = height;
}

Devices::Device Devices::describe(xcb_input_xi_device_info_t& info) {
    Device device;
    device.id = info.deviceid;
    const bool isMaster = info.type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER ||
                          info.type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD;
    if (isMaster) device.attachment = info.attachment;
    for (auto part = xcb_input_xi_device_info_classes_iterator(&info); part.rem;
         xcb_input_device_class_next(&part)) {
        if (part.data->type == XCB_INPUT_DEVICE_CLASS_TYPE_TOUCH) {
            const auto& touch = reinterpret_cast<const xcb_input_touch_class_t&>(*part.data);
            device.touchScreen = info.enabled != 0 && touch.mode == XCB_INPUT_TOUCH_MODE_DIRECT;
        }
        if (part.data->type != XCB_INPUT_DEVICE_CLASS_TYPE_VALUATOR) continue;
        const auto& valuator = reinterpret_cast<const xcb_input_valuator_class_t&>(*part.data);
        if (valuator.number > 1) continue;
        // The last value is the last pixel, as the first one is the first.
        const double first = fromFixed(valuator.min);
        (valuator.number == 0 ? device.x : device.y) =
            Axis{first, fromFixed(valuator.max) - first + 1};
        device.places = valuator.mode == XCB_INPUT_VALUATOR_MODE_ABSOLUTE;
    }
    return device;
}

const Devices::Device* Devices::find(std::uint16_t device) const {
    const auto found = std::ranges::find(list, device, &Device::id);
    return found == list.end() ? nullptr : &*found;
}

bool Devices::tellsPlaces(std::uint16_t device) const {
    const Device* known = find(device);
    return known && known->places;
}

bool Devices::isTouchScreen(std::uint16_t device) const {
    const Device* known = find(device);
    return known && known->touchScreen;
}

xcb_point_t Devices::toRoot(std::uint16_t device, Point values) const {
    const Device* known = find(device);
    if (!known) return {};
    const auto scaled = [](double value, const Axis& axis, double size) {
        const double pixel = axis.count > 1 ? (value - axis.first) * size / axis.count : value;
        return static_cast<std::int16_t>(std::clamp(std::floor(pixel), 0.0, size - 1));
    };
    return {scaled(values.x, known->x, rootWidth), scaled(values.y, known->y, rootHeight)};
}

void Devices::moved(const Motion& motion, bool isAfterQuestion) {
    (isAfterQuestion ? afterQuestion : last) = motion;
}

std::optional<bool> Devices::placed(xcb_point_t root, std::uint32_t lastPutSequence) {
    const Motion asked = std::exchange(last, std::exchange(afterQuestion, {}));
    const bool isOlder = static_cast<std::int32_t>(asked.sequence - lastPutSequence) < 0;
    if (asked.device == 0 || isOlder) return std::nullopt;
    const bool isPlace =
        std::floor(asked.values.x) == root.x && std::floor(asked.values.y) == root.y;
    if (isPlace)
        placing = asked.device;
    else if (placing == asked.device)
        placing = 0;
    return isPlace;
}

std::uint16_t Devices::keyboardOf(std::uint16_t pointer) const {
    const Device* known = find(pointer);
    return known ? known->attachment : std::uint16_t{0};
}

} // namespace platform::x11
