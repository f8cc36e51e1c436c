#pragma once

#include "platform/Keyboard.h"
#include "platform/x11/connection/Connection.h"

#include <optional>
#include <vector>

namespace platform::x11 {

/// Carries out what a keystroke asks for: by the window manager, where one tells of desktops, and
/// by typing it (XTEST) where none does.
class Keyboard final : public platform::Keyboard {
  public:
    Keyboard(Connection& x, Log& writer) : connection(x), log(writer) {}
    /// Lets go what it holds.
    ~Keyboard() override { release(); }
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    void postKey(std::uint16_t virtualKeyCode, bool down, std::uint32_t flags) override;

  private:
    bool askWindowManager(int step);
    void press(xcb_keysym_t arrow);
    void release();
    bool canType();
    void send(std::uint8_t type, xcb_keycode_t keycode);

    Connection& connection;
    Log& log;
    std::optional<bool> able;        ///< to type; not known before the first use
    std::vector<xcb_keycode_t> held; ///< in the order of pressing
    bool toldNoDesktops = false;
    bool toldOtherKey = false;
};

} // namespace platform::x11
