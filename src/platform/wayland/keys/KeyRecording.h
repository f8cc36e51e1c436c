#pragma once

#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/keys/KeyTaking.h"
#include "platform/wayland/keys/KeyboardSeat.h"

namespace platform::wayland {

/// By an invisible layer. What the compositor itself has bound does not come.
class KeyRecording final : public KeyTaking {
  public:
    KeyRecording(Connection& connection, const Outputs& outputs, KeyboardSeat& keyboard,
                 Later later);
    ~KeyRecording() override { stop(); }
    KeyRecording(const KeyRecording&) = delete;
    KeyRecording& operator=(const KeyRecording&) = delete;

    bool isOn() const override { return layer != nullptr; }
    /// False where there is no output to have a layer on.
    bool start(Handler pressed) override;
    void stop() override;

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
