#pragma once

#include "platform/RecordableHotKeys.h"
#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/keys/KeyboardSeat.h"

namespace platform::wayland {

/// Takes the keyboard for as long as a shortcut is recorded, by an invisible layer. What the
/// compositor itself has bound does not come. Main thread.
class KeyRecording {
  public:
    using Handler = std::function<void(const RecordableHotKeys::Stroke&)>;
    /// Calls an operation from the run loop, also while a modal alert runs.
    using Later = std::function<void(std::function<void()>)>;

    KeyRecording(Connection& connection, const Outputs& outputs, KeyboardSeat& keyboard,
                 Later later);
    ~KeyRecording() { stop(); }
    KeyRecording(const KeyRecording&) = delete;
    KeyRecording& operator=(const KeyRecording&) = delete;

    bool isOn() const { return layer != nullptr; }
    /// False where there is no output to have a layer on.
    bool start(Handler pressed);
    void stop();

  private:
    void key(std::uint32_t keycode);
    void tell(const RecordableHotKeys::Stroke& stroke);

    Connection& connection;
    const Outputs& outputs;
    KeyboardSeat& keyboard;
    Later later;
    std::unique_ptr<Layer> layer;
    std::shared_ptr<Handler> taker; ///< whose end is that of the recording
    std::uint32_t flags = 0;
};

} // namespace platform::wayland
