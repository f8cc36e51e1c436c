#include "platform/x11/keys/KeyTable.h"

#include "platform/InputEvents.h"

#include <algorithm>
#include <string_view>

namespace platform::x11 {

namespace {

struct Row {
    xcb_keysym_t keysym;
    std::uint16_t code;
};

// Keysyms from X11/keysymdef.h, which belongs to Xlib's headers.
constexpr Row modifiers[] = {
    {0xffe1, keyCodes::shift},        {0xffe2, keyCodes::rightShift},
    {0xffe3, keyCodes::control},      {0xffe4, keyCodes::rightControl},
    {0xffe5, keyCodes::capsLock},     {0xffe7, keyCodes::command}, // Meta_L
    {0xffe8, keyCodes::rightCommand},                              // Meta_R
    {0xffe9, keyCodes::option},       {0xffea, keyCodes::rightOption},
    {0xffeb, keyCodes::command},      // Super_L
    {0xffec, keyCodes::rightCommand}, // Super_R
    {0xfe03, keyCodes::rightOption},  // ISO_Level3_Shift
};

constexpr Row others[] = {
    {0xff0d, 36},  {0xff09, 48},  {0x0020, 49},  {0xff08, 51},  {0xff1b, 53},  {0xffff, 117},
    {0xff51, 123}, {0xff53, 124}, {0xff54, 125}, {0xff52, 126}, {0xffbe, 122}, {0xffbf, 120},
    {0xffc0, 99},  {0xffc1, 118}, {0xffc2, 96},  {0xffc3, 97},  {0xffc4, 98},  {0xffc5, 100},
    {0xffc6, 101}, {0xffc7, 109}, {0xffc8, 103}, {0xffc9, 111},
};

constexpr std::uint16_t letters[] = {0,  11, 8,  2,  14, 3, 5,  4,  34, 38, 40, 37, 46,
                                     45, 31, 35, 12, 15, 1, 17, 32, 9,  13, 7,  16, 6};
constexpr std::uint16_t digits[] = {29, 18, 19, 20, 21, 23, 22, 26, 28, 25};

} // namespace

Key keyOfKeysym(xcb_keysym_t keysym) {
    for (const Row& row : modifiers)
        if (row.keysym == keysym) return {row.code, true};
    for (const Row& row : others)
        if (row.keysym == keysym) return {row.code, false};
    if (keysym >= 'a' && keysym <= 'z') return {letters[keysym - 'a'], false};
    if (keysym >= '0' && keysym <= '9') return {digits[keysym - '0'], false};
    return {};
}

void KeyTable::read(Connection& connection) {
    xcb_connection_t* c = connection.xcb();
    const xcb_setup_t* setup = xcb_get_setup(c);
    const auto keysAsked = xcb_get_keyboard_mapping(
        c, setup->min_keycode,
        static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
    const auto buttonsAsked = xcb_get_pointer_mapping(c);
    const auto mapping = connection.wait(keysAsked, xcb_get_keyboard_mapping_reply);
    const auto order = connection.wait(buttonsAsked, xcb_get_pointer_mapping_reply);

    keys.fill(Key{});
    if (mapping && mapping->keysyms_per_keycode > 0) {
        const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
        const int count =
            xcb_get_keyboard_mapping_keysyms_length(mapping.get()) / mapping->keysyms_per_keycode;
        for (int i = 0; i < count; ++i)
            keys[static_cast<std::size_t>(setup->min_keycode + i)] =
                keyOfKeysym(keysyms[i * mapping->keysyms_per_keycode]);
    }
    buttons.fill(0);
    if (order) {
        const std::uint8_t* logical = xcb_get_pointer_mapping_map(order.get());
        const int count = xcb_get_pointer_mapping_map_length(order.get());
        std::copy_n(logical, std::min(count, 255), buttons.begin() + 1);
    }
}

} // namespace platform::x11
