#include "platform/x11/keys/KeyboardMap.h"

#include "platform/HotKeys.h"
#include "platform/InputEvents.h"

#include <algorithm>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#define explicit explicitParts // a name of the header's, which is written for C
#include <xcb/xkb.h>
#undef explicit

namespace platform::x11 {

namespace {

constexpr std::pair<xkb_keysym_t, std::uint16_t> modifierKeys[] = {
    {XKB_KEY_Shift_L, keyCodes::shift},        {XKB_KEY_Shift_R, keyCodes::rightShift},
    {XKB_KEY_Control_L, keyCodes::control},    {XKB_KEY_Control_R, keyCodes::rightControl},
    {XKB_KEY_Caps_Lock, keyCodes::capsLock},   {XKB_KEY_Meta_L, keyCodes::command},
    {XKB_KEY_Meta_R, keyCodes::rightCommand},  {XKB_KEY_Alt_L, keyCodes::option},
    {XKB_KEY_Alt_R, keyCodes::rightOption},    {XKB_KEY_Super_L, keyCodes::command},
    {XKB_KEY_Super_R, keyCodes::rightCommand}, {XKB_KEY_ISO_Level3_Shift, keyCodes::rightOption},
};

std::string utf8(xkb_keysym_t keysym) {
    std::array<char, 8> text{};
    xkb_keysym_to_utf8(keysym, text.data(), text.size());
    return text.data();
}

/// Empty for what prints nothing.
std::string printed(xkb_keysym_t keysym) {
    // A dead key prints the accent, which it has no character for.
    constexpr std::u32string_view accents = U"`´^~¯˘˙¨°˝ˇ¸˛"; // in the order of the keysyms
    const xkb_keysym_t accent = keysym - XKB_KEY_dead_grave;
    const char32_t character =
        accent < accents.size() ? accents[accent] : xkb_keysym_to_utf32(keysym);
    constexpr char32_t noBreakSpace = 0xa0;
    if (character <= U' ' || (character > U'~' && character <= noBreakSpace)) return {};
    // Keysyms that are older than Unicode have not all of them an upper case.
    constexpr xkb_keysym_t unicode = 0x01000000, lastLatin1 = 0xff;
    const xkb_keysym_t plain = character > lastLatin1 ? unicode + character : character;
    // Its capital is in newer libraries only, and on no keyboard.
    if (plain == XKB_KEY_ssharp) return utf8(plain);
    const std::string upper = utf8(xkb_keysym_to_upper(plain));
    return upper.empty() ? utf8(plain) : upper;
}

} // namespace

KeyboardMap::KeyboardMap(Connection& x, Changed onChange)
    : connection(x), changed(std::move(onChange)) {
    xkb_x11_setup_xkb_extension(connection.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                nullptr, nullptr, &firstEvent, nullptr);
    if (isServers()) selectEvents();
    read();
}

KeyboardMap::~KeyboardMap() {
    connection.forget(*this);
}

/// Whoever speaks XKB is told of another map by its events alone.
void KeyboardMap::selectEvents() {
    connection.listen(*this, {firstEvent});
    constexpr std::uint16_t map = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                  XCB_XKB_EVENT_TYPE_MAP_NOTIFY,
                            everyPart = 0xff;
    xcb_xkb_select_events_details_t details{};
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(connection.xcb(), XCB_XKB_ID_USE_CORE_KBD,
                              map | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, map, everyPart, everyPart,
                              &details);
}

KeyboardMap::Keymap KeyboardMap::compile() const {
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(isServers() ? XKB_CONTEXT_NO_DEFAULT_INCLUDES : XKB_CONTEXT_NO_FLAGS),
        xkb_context_unref);
    if (!context) return nullptr;
    if (isServers())
        return Keymap(xkb_x11_keymap_new_from_device(
            context.get(), connection.xcb(), xkb_x11_get_core_keyboard_device_id(connection.xcb()),
            XKB_KEYMAP_COMPILE_NO_FLAGS));
    const xkb_rule_names plain{"evdev", "pc105", "us", "", ""};
    return Keymap(xkb_keymap_new_from_names(context.get(), &plain, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

void KeyboardMap::read() {
    xcb_connection_t* c = connection.xcb();
    if (auto compiled = compile()) keymap = std::move(compiled);
    const auto modifiersAsked = xcb_get_modifier_mapping(c);
    if (isServers())
        if (const auto state = connection.wait(xcb_xkb_get_state(c, XCB_XKB_ID_USE_CORE_KBD),
                                               xcb_xkb_get_state_reply))
            layout = state->group;
    const auto modifiers = connection.wait(modifiersAsked, xcb_get_modifier_mapping_reply);
    if (!modifiers) return; // the server has gone

    keyBits.fill(0);
    const xcb_keycode_t* keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
    const int each = modifiers->keycodes_per_modifier;
    for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(modifiers.get()); ++i)
        keyBits[keycodes[i]] |= static_cast<std::uint8_t>(1 << (i / each));
    keyBits[0] = 0; // fills up the list
    held = {{{Shortcut::shift, XCB_MOD_MASK_SHIFT},
             {Shortcut::control, XCB_MOD_MASK_CONTROL},
             {Shortcut::option, bitOf({XKB_KEY_Alt_L, XKB_KEY_Alt_R}, XCB_MOD_MASK_1)},
             {Shortcut::command, bitOf({XKB_KEY_Super_L, XKB_KEY_Super_R}, XCB_MOD_MASK_4)}}};
    locks = {XCB_MOD_MASK_LOCK, bitOf({XKB_KEY_Num_Lock}, 0), bitOf({XKB_KEY_Scroll_Lock}, 0)};
}

xkb_keysym_t KeyboardMap::keysym(xcb_keycode_t keycode, unsigned group, unsigned level) const {
    const xkb_keysym_t* keysyms = nullptr;
    const int count =
        keymap ? xkb_keymap_key_get_syms_by_level(keymap.get(), keycode, group, level, &keysyms)
               : 0;
    return count == 1 ? *keysyms : xkb_keysym_t{XKB_KEY_NoSymbol};
}

/// The lowest bit from Mod1 on that one of these keys sets.
std::uint16_t KeyboardMap::bitOf(std::initializer_list<xkb_keysym_t> keys,
                                 unsigned otherwise) const {
    constexpr unsigned levels = 4; // a key that is Alt only behind Shift counts too
    unsigned found = 0;
    for (unsigned code = 0; code < keyBits.size(); ++code)
        for (unsigned level = 0; keyBits[code] != 0 && level < levels; ++level)
            if (std::ranges::count(keys, keysym(static_cast<xcb_keycode_t>(code), 0, level)) != 0)
                found |= keyBits[code];
    for (unsigned bit = XCB_MOD_MASK_1; bit <= XCB_MOD_MASK_5; bit <<= 1)
        if ((found & bit) != 0) return static_cast<std::uint16_t>(bit);
    return static_cast<std::uint16_t>(otherwise);
}

/// All events of the extension have one number, and their kind where others have a detail.
void KeyboardMap::handle(const xcb_generic_event_t& event) {
    const bool isOtherLayout = event.pad0 == XCB_XKB_STATE_NOTIFY;
    mapStale |= !isOtherLayout;
    if (!isOtherLayout) return;
    layout = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event).group;
    changed(false);
}

void KeyboardMap::batchEnded() {
    if (!std::exchange(mapStale, false)) return;
    const auto before = std::pair(held, locks);
    read();
    changed(before != std::pair(held, locks));
}

std::string KeyboardMap::label(const PhysicalKey& key) const {
    if (key.isCharacter())
        for (const unsigned from : {layout, 0u})
            if (std::string text = printed(keysym(key.keycode(), from)); !text.empty()) return text;
    return std::string(key.name);
}

const PhysicalKey* KeyboardMap::keyNamed(std::string_view name) const {
    const auto find = [](const auto& isMeant) -> const PhysicalKey* {
        constexpr std::uint16_t virtualCodes = 128;
        for (std::uint16_t code = 0; code < virtualCodes; ++code)
            if (const PhysicalKey* key = physicalKey(code); key != nullptr && isMeant(*key))
                return key;
        return nullptr;
    };
    if (const PhysicalKey* labelled =
            find([&](const PhysicalKey& key) { return session::isSameName(label(key), name); }))
        return labelled;
    const xkb_keysym_t wanted =
        xkb_keysym_from_name(std::string(name).c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    for (const unsigned from : {layout, 0u, 1u, 2u, 3u}) {
        if (wanted == XKB_KEY_NoSymbol) break;
        if (const PhysicalKey* having =
                find([&](const PhysicalKey& key) { return keysym(key.keycode(), from) == wanted; }))
            return having;
    }
    return find([&](const PhysicalKey& key) { return session::isSameName(key.name, name); });
}

Key KeyboardMap::key(xcb_keycode_t keycode) const {
    const xkb_keysym_t first = keysym(keycode, 0);
    for (const auto& [modifier, code] : modifierKeys)
        if (modifier == first) return {code, true};
    const PhysicalKey* other = physicalKeyAt(keycode);
    return other == nullptr ? Key{} : Key{other->virtualCode};
}

std::uint16_t KeyboardMap::maskOf(std::uint32_t flags) const {
    unsigned mask = 0;
    for (const Held& modifier : held)
        if ((flags & modifier.flag) != 0) mask |= modifier.mask;
    return static_cast<std::uint16_t>(mask);
}

std::uint32_t KeyboardMap::flagsOf(std::uint16_t mask) const {
    std::uint32_t flags = 0;
    for (const Held& modifier : held)
        if ((mask & modifier.mask) != 0) flags |= modifier.flag;
    return flags;
}

std::vector<std::uint16_t> KeyboardMap::lockStates() const {
    std::vector<std::uint16_t> states{0};
    for (const std::uint16_t bit : locks) {
        // A bit that is that of a held modifier as well cannot be told from it.
        if (bit == 0 || flagsOf(bit) != 0) continue;
        for (std::size_t i = 0, count = states.size(); i < count; ++i)
            if ((states[i] & bit) == 0)
                states.push_back(static_cast<std::uint16_t>(states[i] | bit));
    }
    return states;
}

} // namespace platform::x11
