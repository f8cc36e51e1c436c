#include "platform/x11/keys/KeyboardMap.h"

#include "platform/HotKeys.h"

#include <algorithm>

namespace platform::x11 {

namespace {

// From X11/keysymdef.h, which belongs to Xlib's headers.
constexpr xcb_keysym_t numLockKey = 0xff7f, scrollLockKey = 0xff14, altLeft = 0xffe9,
                       altRight = 0xffea, superLeft = 0xffeb, superRight = 0xffec;

constexpr std::size_t columnsPerLayout = 2; // as the core protocol shows the first two layouts

} // namespace

bool KeyboardMap::read(Connection& connection) {
    xcb_connection_t* c = connection.xcb();
    const xcb_setup_t* setup = xcb_get_setup(c);
    const auto keysAsked = xcb_get_keyboard_mapping(
        c, setup->min_keycode,
        static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
    const auto modifiersAsked = xcb_get_modifier_mapping(c);
    const auto mapping = connection.wait(keysAsked, xcb_get_keyboard_mapping_reply);
    const auto modifiers = connection.wait(modifiersAsked, xcb_get_modifier_mapping_reply);
    if (!mapping || !modifiers) return false;

    firstKeycode = setup->min_keycode;
    perKey = mapping->keysyms_per_keycode;
    const xcb_keysym_t* all = xcb_get_keyboard_mapping_keysyms(mapping.get());
    keysyms.assign(all, all + xcb_get_keyboard_mapping_keysyms_length(mapping.get()));

    keyBits.fill(0);
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const int each = modifiers->keycodes_per_modifier;
    for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(modifiers.get()); ++i)
        keyBits[keycodes[i]] |= static_cast<std::uint8_t>(1 << (i / each));
    keyBits[0] = 0; // fills up the list

    const Bits before = bits;
    bits = findBits();
    return bits != before;
}

KeyboardMap::Bits KeyboardMap::findBits() const {
    Bits found;
    const auto find = [&](std::uint16_t& bit, std::initializer_list<xcb_keysym_t> wanted) {
        for (unsigned mask = XCB_MOD_MASK_1; mask <= XCB_MOD_MASK_5; mask <<= 1)
            if (sets(static_cast<std::uint8_t>(mask), wanted)) {
                bit = static_cast<std::uint16_t>(mask);
                return;
            }
    };
    find(found.option, {altLeft, altRight});
    find(found.command, {superLeft, superRight});
    find(found.numLock, {numLockKey});
    find(found.scrollLock, {scrollLockKey});
    return found;
}

bool KeyboardMap::sets(std::uint8_t bit, std::initializer_list<xcb_keysym_t> wanted) const {
    for (std::size_t keycode = firstKeycode; keycode < keyBits.size(); ++keycode) {
        if ((keyBits[keycode] & bit) == 0) continue;
        for (std::size_t column = 0; column < perKey; ++column) {
            const std::size_t index = (keycode - firstKeycode) * perKey + column;
            if (index < keysyms.size() && std::ranges::find(wanted, keysyms[index]) != wanted.end())
                return true;
        }
    }
    return false;
}

xcb_keysym_t KeyboardMap::keysym(xcb_keycode_t keycode, unsigned layout) const {
    if (keycode < firstKeycode) return 0;
    const auto at = [&](std::size_t column) {
        const std::size_t index = (keycode - firstKeycode) * perKey + column;
        return column < perKey && index < keysyms.size() ? keysyms[index] : 0;
    };
    // Layouts from the third on have no place of their own in the core protocol's table.
    const xcb_keysym_t own = layout == 1 ? at(columnsPerLayout) : 0;
    return own != 0 ? own : at(0);
}

std::uint16_t KeyboardMap::maskOf(std::uint32_t flags) const {
    unsigned mask = 0;
    if (flags & Shortcut::shift) mask |= XCB_MOD_MASK_SHIFT;
    if (flags & Shortcut::control) mask |= XCB_MOD_MASK_CONTROL;
    if (flags & Shortcut::option) mask |= bits.option;
    if (flags & Shortcut::command) mask |= bits.command;
    return static_cast<std::uint16_t>(mask);
}

std::uint32_t KeyboardMap::flagsOf(std::uint16_t mask) const {
    std::uint32_t flags = 0;
    if (mask & XCB_MOD_MASK_SHIFT) flags |= Shortcut::shift;
    if (mask & XCB_MOD_MASK_CONTROL) flags |= Shortcut::control;
    if (mask & bits.option) flags |= Shortcut::option;
    if (mask & bits.command) flags |= Shortcut::command;
    return flags;
}

std::vector<std::uint16_t> KeyboardMap::lockStates() const {
    std::vector<std::uint16_t> states{0};
    for (const std::uint16_t bit :
         {static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK), bits.numLock, bits.scrollLock}) {
        // A bit that is that of a held modifier as well cannot be told from it.
        if (bit == 0 || bit == bits.option || bit == bits.command) continue;
        for (std::size_t i = 0, count = states.size(); i < count; ++i)
            if ((states[i] & bit) == 0)
                states.push_back(static_cast<std::uint16_t>(states[i] | bit));
    }
    return states;
}

} // namespace platform::x11
