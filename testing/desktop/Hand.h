#pragma once

#include "testing/desktop/XConnection.h"

#include <functional>
#include <initializer_list>

namespace support {

/// X keysyms of the keys that tests press.
namespace key {
inline constexpr xcb_keysym_t leftControl = 0xffe3, leftAlt = 0xffe9, leftSuper = 0xffeb,
                              leftShift = 0xffe1, capsLock = 0xffe5, numLock = 0xff7f,
                              escape = 0xff1b, enter = 0xff0d, tab = 0xff09, space = 0x20,
                              f2 = 0xffbf, left = 0xff51, up = 0xff52, right = 0xff53,
                              down = 0xff54;
} // namespace key

struct Pace {
    double took = 0, latest = 0; ///< seconds; by how much an act came late at most
};
/// Does something at `hz` times a second, on a clock of absolute times: an act that came late does
/// not delay those after it. It is told how many came before it.
Pace repeat(int times, int hz, const std::function<void(int)>& act);

/// Moves the cursor and presses keys through XTEST. Every call returns when the server has taken
/// the input in (push: all of it). One thread at a time.
class Hand {
  public:
    explicit Hand(const std::string& display);
    /// Releases what it still holds.
    ~Hand();

    void moveTo(int x, int y);     ///< X root coordinates
    void relative(int dx, int dy); ///< one event, as a mouse sends it
    /// `steps` events of (dx, dy) at `hz` events a second. Returns the seconds that it took.
    double push(int dx, int dy, int steps, int hz);
    /// The same at `speed` pixels a second to the right, or to the left where it is negative: like
    /// a mouse it sends whole pixels, and nothing where there is none yet. Returns by how many
    /// seconds a step came late at most, after which the hand has made a leap.
    double pushAt(double speed, double seconds, int hz);

    void press(xcb_keysym_t keysym); ///< throws std::invalid_argument where no key has it
    void release(xcb_keysym_t keysym);
    void type(xcb_keysym_t keysym);
    void chord(std::initializer_list<xcb_keysym_t> keysyms); ///< pressed in order, released back
    void pressButton(int button = 1);
    void releaseButton(int button = 1);
    void click(int button = 1);
    /// Moves there and clicks while no other client can act: a program that would put the cursor
    /// back comes too late.
    void clickAt(int x, int y, int button = 1);

  private:
    void send(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0) const;
    xcb_keycode_t codeFor(xcb_keysym_t keysym) const;

    XConnection server;
    std::vector<xcb_keycode_t> heldKeys;
    std::vector<int> heldButtons;
};

} // namespace support
