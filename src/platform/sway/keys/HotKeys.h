#pragma once

#include "platform/RecordableHotKeys.h"
#include "platform/Settings.h"
#include "platform/sway/undo/Changes.h"
#include "platform/wayland/keys/KeyRecording.h"

#include <set>

namespace platform::sway {

/// Hot keys as bindings that do nothing, and of which the compositor tells. A combination belongs
/// to a key by its place. While one is bound the user's own binding of it is not heard.
class HotKeys final : public RecordableHotKeys {
  public:
    using Later = std::function<void(std::function<void()>)>;

    HotKeys(Compositor& compositor, Changes& changes, wayland::KeyboardSeat& keyboard,
            wayland::KeyRecording& recording, Settings& settings, Later later);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

    void registerShortcut(const Shortcut& shortcut, std::function<void()> action) override;
    void unregisterShortcut(const Shortcut& shortcut) override;
    void bindShortcut(std::string_view settingsKey, std::function<void()> action) override;
    void breakBinding(std::string_view settingsKey) override;
    std::string modifierFlagsString(const Shortcut& shortcut) const override;
    std::string keyCodeString(const Shortcut& shortcut) const override;
    std::optional<std::uint16_t> keyCodeNamed(std::string_view name) const override;

    void onLabelsChange(std::function<void()> changed) override;
    /// Nobody can tell here.
    void onTaken(std::function<void(const Shortcut&)>) override {}
    bool isTaken(const Shortcut&) const override { return false; }
    Obstacle obstacleTo(const Shortcut& shortcut) override;
    /// `left` is never called: nobody else gets the keyboard meanwhile.
    bool startRecording(std::function<void(const Stroke&)> pressed,
                        std::function<void()> left) override;
    void stopRecording() override;

  private:
    struct Claim {
        Shortcut shortcut;
        std::function<void()> action;
    };

    void claim();
    void bind(const Claim& claim, std::set<std::string>& keys);

    Compositor& compositor;
    Changes& changes;
    wayland::KeyboardSeat& keyboard;
    wayland::KeyRecording& recording;
    Settings& settings;
    Later later;
    std::vector<Claim> registered;
    std::map<std::string, std::function<void()>, std::less<>> bindings; ///< by settings key
    std::set<std::string, std::less<>> observed;                        ///< settings keys
    std::set<std::string> bound; ///< what the compositor has, in its own words
    std::shared_ptr<void> alive = std::make_shared<char>(); ///< settings outlive their observers
};

} // namespace platform::sway
