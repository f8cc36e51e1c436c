#pragma once

#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <memory>
#include <optional>
#include <string>

namespace hotkeytests {

/// The barrier program on a private desktop with a window manager, and its popup, which is driven
/// with the keyboard.
class Popup {
  public:
    /// `settings` are items of a property list.
    explicit Popup(const std::string& settings = {});

    /// Returns when the popup can be typed into, and none is left over from before.
    bool isUp();
    bool isGone();
    /// Of the popup that is up, the window manager's frame included.
    support::Area area() const;

    /// Goes to the field and starts it; true when it has the keyboard.
    bool startRecording();
    bool isRecording();
    bool endsRecording();

    /// Enter is the one button as long as the field has not been used; Escape is always.
    void done() { hand.type(support::key::enter); }
    void leave() { hand.type(support::key::escape); }

    /// A second start of the program, whose menu then leads to the popup.
    void openFromMenu();

    std::string stored() const;
    /// Whether the file says so before long.
    bool stores(const std::string& item);
    bool isSwitchedOn() const;
    bool turns(bool on);

    /// Asks again and again, without sleeping; false when a generous time is up.
    static bool soon(const std::function<bool()>& reached);

    support::PrivateDesktop desktop{"1280x800+0+0,1024x768+1280+16"};
    support::Eye eye{desktop.display()};
    support::Hand hand{desktop.display()};
    support::XConnection x{desktop.display()};
    std::unique_ptr<support::ChildProcess> program;
    xcb_window_t current = XCB_NONE; ///< the frame of the popup that is up

  private:
    xcb_window_t frameWithFocus();
    std::filesystem::path file() const;
};

} // namespace hotkeytests
