#pragma once

#include "testing/desktop/Product.h"

namespace hotkeytests {

/// The barrier program on a private desktop with a window manager, and its popup, which is driven
/// with the keyboard.
class Popup : public desktop::Product {
  public:
    /// Without a shortcut unless `settings` has one.
    explicit Popup(const desktop::Entries& settings = {});

    /// Returns when the popup can be typed into, and none is left over from before.
    bool isUp();
    bool isGone();
    /// Of the popup that is up, the window manager's frame included.
    support::Area area() const;

    /// Goes to the field and starts it; true when it has the keyboard.
    bool startRecording();
    bool isRecording() const { return x.keyboardIsGrabbed(); }
    bool beginsRecording();
    bool endsRecording();
    /// The keyboard's focus is in it once more.
    bool canBeTypedInto();
    bool isShown() const;
    /// As a window manager does it by a key.
    void minimise();

    /// Enter is the one button as long as the field has not been used; Escape is always.
    void done() { hand.type(support::key::enter); }
    void leave() { hand.type(support::key::escape); }

    /// A second start of the program, whose menu then leads to the popup.
    void openFromMenu() { choose(2); }

    bool isSwitchedOn() const;
    /// Whether the file says so before long.
    bool turns(bool on) const;

    xcb_window_t current = XCB_NONE; ///< the frame of the popup that is up

  private:
    xcb_window_t frameWithFocus();

    support::XConnection x{desktop.display()};
};

} // namespace hotkeytests
