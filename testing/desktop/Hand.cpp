#include "testing/desktop/Hand.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>
#include <xcb/xtest.h>

namespace support {

namespace {

constexpr long nanosecondsInSecond = 1'000'000'000;

} // namespace

Hand::Hand(const std::string& display) : server(display) {
    const auto version = own(xcb_test_get_version_reply(
        server.get(), xcb_test_get_version(server.get(), 2, 2), nullptr));
    if (!version) throw std::runtime_error("the X server has no XTEST");
}

Hand::~Hand() {
    for (const int button : heldButtons)
        send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
    for (const xcb_keycode_t code : heldKeys)
        send(XCB_KEY_RELEASE, code);
    // The reply makes sure that they arrived; a server that is gone held nothing.
    own(xcb_get_input_focus_reply(server.get(), xcb_get_input_focus(server.get()), nullptr));
}

void Hand::send(std::uint8_t type, std::uint8_t detail, int eventX, int eventY) const {
    xcb_test_fake_input(server.get(), type, detail, XCB_CURRENT_TIME, XCB_NONE,
                        static_cast<std::int16_t>(eventX), static_cast<std::int16_t>(eventY), 0);
}

void Hand::moveTo(int x, int y) {
    send(XCB_MOTION_NOTIFY, 0, x, y);
    server.sync();
}

void Hand::relative(int dx, int dy) {
    send(XCB_MOTION_NOTIFY, 1, dx, dy);
    server.sync();
}

double Hand::push(int dx, int dy, int steps, int hz) {
    const auto pace = repeat(steps, hz, [&](int) {
        send(XCB_MOTION_NOTIFY, 1, dx, dy);
        xcb_flush(server.get());
    });
    server.sync();
    return pace.took;
}

double Hand::pushAt(double speed, double seconds, int hz) {
    const auto pace = repeat(static_cast<int>(seconds * hz), hz, [&](int step) {
        const auto pixels = [&](int steps) { return static_cast<int>(speed * steps / hz); };
        const int dx = pixels(step + 1) - pixels(step);
        if (dx != 0) send(XCB_MOTION_NOTIFY, 1, dx, 0);
        xcb_flush(server.get());
    });
    server.sync();
    return pace.latest;
}

Pace repeat(int times, int hz, const std::function<void(int)>& act) {
    timespec next{}, now{};
    clock_gettime(CLOCK_MONOTONIC, &next);
    const auto start = Clock::now();
    Pace pace;
    for (int step = 0; step < times; ++step) {
        act(step);
        next.tv_nsec += nanosecondsInSecond / hz;
        if (next.tv_nsec >= nanosecondsInSecond) {
            next.tv_nsec -= nanosecondsInSecond;
            ++next.tv_sec;
        }
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr);
        clock_gettime(CLOCK_MONOTONIC, &now);
        pace.latest = std::max(pace.latest, static_cast<double>(now.tv_sec - next.tv_sec) +
                                                static_cast<double>(now.tv_nsec - next.tv_nsec) /
                                                    nanosecondsInSecond);
    }
    pace.took = std::chrono::duration<double>(Clock::now() - start).count();
    return pace;
}

xcb_keycode_t Hand::codeFor(xcb_keysym_t keysym) const {
    const xcb_setup_t* setup = xcb_get_setup(server.get());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto mapping = own(xcb_get_keyboard_mapping_reply(
        server.get(), xcb_get_keyboard_mapping(server.get(), setup->min_keycode, count), nullptr));
    if (mapping) {
        const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
        const int each = mapping->keysyms_per_keycode;
        // Unshifted meanings first: a key that has the keysym only with Shift would type another.
        for (int column = 0; column < each; ++column)
            for (int key = 0; key < count; ++key)
                if (keysyms[key * each + column] == keysym)
                    return static_cast<xcb_keycode_t>(setup->min_keycode + key);
    }
    throw std::invalid_argument("no key has the keysym " + std::to_string(keysym));
}

void Hand::press(xcb_keysym_t keysym) {
    const xcb_keycode_t code = codeFor(keysym);
    send(XCB_KEY_PRESS, code);
    heldKeys.push_back(code);
    server.sync();
}

void Hand::release(xcb_keysym_t keysym) {
    const xcb_keycode_t code = codeFor(keysym);
    send(XCB_KEY_RELEASE, code);
    std::erase(heldKeys, code);
    server.sync();
}

void Hand::type(xcb_keysym_t keysym) {
    press(keysym);
    release(keysym);
}

void Hand::chord(std::initializer_list<xcb_keysym_t> keysyms) {
    for (const xcb_keysym_t keysym : keysyms)
        press(keysym);
    for (auto keysym = std::rbegin(keysyms); keysym != std::rend(keysyms); ++keysym)
        release(*keysym);
}

void Hand::pressButton(int button) {
    send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
    heldButtons.push_back(button);
    server.sync();
}

void Hand::releaseButton(int button) {
    send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
    std::erase(heldButtons, button);
    server.sync();
}

void Hand::click(int button) {
    pressButton(button);
    releaseButton(button);
}

void Hand::clickAt(int x, int y, int button) {
    xcb_grab_server(server.get());
    send(XCB_MOTION_NOTIFY, 0, x, y);
    send(XCB_BUTTON_PRESS, static_cast<std::uint8_t>(button));
    send(XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(button));
    xcb_ungrab_server(server.get());
    server.sync();
}

} // namespace support
