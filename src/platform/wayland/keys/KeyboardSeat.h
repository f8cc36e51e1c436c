#pragma once

#include "platform/wayland/connection/Connection.h"

#include <functional>
#include <map>
#include <span>
#include <string>
#include <xkbcommon/xkbcommon.h>

namespace platform::wayland {

/// The seat's keyboard, as far as a client is told of it: its keys while a layer of the program has
/// it, and what the user's layout prints on them.
class KeyboardSeat {
  public:
    /// The pointer's seat tells when there is a keyboard.
    explicit KeyboardSeat(Connection& x) : connection(x) {}
    ~KeyboardSeat() = default;
    KeyboardSeat(const KeyboardSeat&) = delete;
    KeyboardSeat& operator=(const KeyboardSeat&) = delete;

    void find(bool there);

    /// While a layer has the keyboard: the flags of a Shortcut that are held, told at once and at
    /// each change. One handler an owner; an empty one ends it.
    void onModifiers(const void* owner, std::function<void(std::uint32_t flags)> changed);

    /// A layer gets the keyboard: the keys that are down, the kernel's codes. Told while the
    /// connection is read. One handler.
    void onEnter(std::function<void(std::span<const std::uint32_t> keys)> handler) {
        entered = std::move(handler);
    }

    /// A key went down while a layer has the keyboard; XKB's number. It does not repeat. One
    /// handler.
    void onKey(std::function<void(std::uint32_t keycode)> handler) { pressed = std::move(handler); }

    /// What the layout that is in force prints on a key of XKB's number; empty where it is not
    /// known, or nothing that is seen.
    std::string label(std::uint32_t keycode) const;
    /// Whether the user's layouts are known.
    bool knowsLayouts() const { return keymap != nullptr; }
    /// Whether the key gives a symbol, of XKB's names, in any of the user's layouts while modifiers
    /// are held of which the symbol uses up all but `left`, or none at all. Masks of XKB's eight.
    bool gives(const std::string& symbol, std::uint32_t keycode, std::uint32_t held,
               std::uint32_t left) const;
    /// Called when the answers of `gives` are others than before. One handler an owner; an empty
    /// one ends it.
    void onKeymap(const void* owner, std::function<void()> changed);
    /// Called when the answers of `label` are others than before. One handler.
    void onLabelsChange(std::function<void()> changed) { labelsChanged = std::move(changed); }

  private:
    void readKeymap(int file, std::uint32_t size);
    void tell(std::uint32_t depressed, std::uint32_t group);

    struct Free {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };

    Connection& connection;
    Handle<wl_keyboard> keyboard;
    std::unique_ptr<xkb_context, Free> context;
    std::unique_ptr<xkb_keymap, Free> keymap;
    std::uint32_t layout = 0;
    bool hasFocus = false;
    std::map<const void*, std::function<void(std::uint32_t)>> modifierHandlers;
    std::function<void(std::span<const std::uint32_t>)> entered;
    std::function<void(std::uint32_t)> pressed;
    std::function<void()> labelsChanged;
    std::map<const void*, std::function<void()>> keymapHandlers;
};

} // namespace platform::wayland
