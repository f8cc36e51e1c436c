#pragma once

#include "platform/gnome/connection/Hand.h"
#include "platform/wayland/keys/KeyTaking.h"

#include <memory>

namespace platform::gnome {

/// Takes the keyboard for as long as a shortcut is recorded: the shell gives all keys to the
/// extension. Main thread.
class KeyRecording final : public wayland::KeyTaking {
  public:
    /// `changed` is told when it begins and when it ends.
    KeyRecording(Hand& hand, Later later, std::function<void(bool on)> changed);
    ~KeyRecording() override { stop(); }
    KeyRecording(const KeyRecording&) = delete;
    KeyRecording& operator=(const KeyRecording&) = delete;

    bool isOn() const override { return taker != nullptr; }
    bool start(Handler pressed) override;
    void stop() override;

  private:
    void typed(std::uint32_t keycode, Hand::State state);

    Hand& hand;
    Later later;
    std::function<void(bool)> changed;
    std::shared_ptr<Handler> taker; ///< whose end is that of the recording
};

} // namespace platform::gnome
