#pragma once

#include "platform/RecordableHotKeys.h"
#include "platform/x11/keys/KeyboardMap.h"

#include <memory>
#include <optional>

namespace platform::x11 {

/// The keyboard for one taker alone, the window manager's own shortcuts included.
class KeyRecording {
  public:
    using Stroke = RecordableHotKeys::Stroke;
    using Handler = std::function<void(const Stroke&)>;
    using Later = std::function<void(std::function<void()>)>;

    KeyRecording(Connection& x, const KeyboardMap& keyboard, Log& writer, Later scheduler)
        : connection(x), map(keyboard), log(writer), later(std::move(scheduler)) {}
    ~KeyRecording();
    KeyRecording(const KeyRecording&) = delete;
    KeyRecording& operator=(const KeyRecording&) = delete;

    /// `left` is called when the keyboard's focus goes to another window than it is in now.
    bool start(Handler pressed, std::function<void()> left);

    /// The keyboard is given back when the key that was last pressed is up: still held it would
    /// press the combination that was just recorded again and again.
    void stop();

    bool isOn() const { return taker != nullptr; }
    /// Key events are for this object. True until the keyboard is given back.
    bool hasKeyboard() const { return grabbed; }
    void handle(const xcb_key_press_event_t& event, bool down);
    void focusLeft(const xcb_focus_out_event_t& event);

  private:
    struct Taker {
        Handler pressed;
        std::function<void()> left;
    };

    void tell(const Stroke& stroke);
    void watchFocus(bool on);
    bool isDown(xcb_keycode_t keycode);
    void giveBack();

    Connection& connection;
    const KeyboardMap& map;
    Log& log;
    Later later;
    std::shared_ptr<Taker> taker; ///< null outside a recording
    xcb_window_t focused = XCB_NONE;
    bool grabbed = false;
    bool toldTaken = false;
    xcb_keycode_t lastPressed = 0; ///< 0 when it is up
};

} // namespace platform::x11
