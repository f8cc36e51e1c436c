#pragma once

#include "platform/RecordableHotKeys.h"
#include "platform/Settings.h"
#include "platform/wayland/keys/KeyTaking.h"
#include "platform/wayland/keys/KeyboardSeat.h"

#include <map>
#include <set>

namespace platform::wayland {

/// The hot keys that are wanted, how people call them, and their recording. A combination belongs
/// to a key by its place. Each family of compositors claims them its own way.
class ClaimedHotKeys : public RecordableHotKeys {
  public:
    using Later = KeyTaking::Later;

    ~ClaimedHotKeys() override;
    ClaimedHotKeys(const ClaimedHotKeys&) = delete;
    ClaimedHotKeys& operator=(const ClaimedHotKeys&) = delete;

    void registerShortcut(const Shortcut& shortcut, std::function<void()> action) final;
    void unregisterShortcut(const Shortcut& shortcut) final;
    void bindShortcut(std::string_view settingsKey, std::function<void()> action) final;
    void breakBinding(std::string_view settingsKey) final;
    std::string modifierFlagsString(const Shortcut& shortcut) const final;
    std::string keyCodeString(const Shortcut& shortcut) const final;
    std::optional<std::uint16_t> keyCodeNamed(std::string_view name) const final;
    void onLabelsChange(std::function<void()> changed) final;

    // Of a family that can tell before it claims; another one answers these itself.
    void onTaken(std::function<void(const Shortcut&)> handler) override {
        boundTaken = std::move(handler);
    }
    bool isTaken(const Shortcut& shortcut) const override { return isElsewhere(shortcut); }
    Obstacle obstacleTo(const Shortcut& shortcut) override;

    /// `left` is never called: nobody else gets the keyboard meanwhile.
    bool startRecording(std::function<void(const Stroke&)> pressed,
                        std::function<void()> left) override;
    void stopRecording() override;

  protected:
    struct Claim {
        Shortcut shortcut;
        std::function<void()> action; ///< to be called by `later`
        bool isChosen = false;        ///< by the user, and not one that is always the same
    };

    ClaimedHotKeys(KeyboardSeat& keyboard, KeyTaking& recording, Settings& settings, Later later);

    /// From now on these combinations are claimed, each of them once, and no other. The same one
    /// may have another action than before. A derived class gives all back in its destructor.
    virtual void claim(const std::vector<Claim>& wanted) = 0;

    /// Whether somebody else has the combination: then it is not claimed. Unless the family can
    /// tell, nobody has.
    virtual bool isElsewhere(const Shortcut&) const { return false; }
    /// Called whenever one that is stored could not be claimed for that.
    virtual void refused(const Shortcut&) {}

    /// Claims what is wanted by now: for when somebody else's are others than before.
    void update();

    const Later later;

  private:
    KeyboardSeat& keyboard;
    KeyTaking& recording;
    Settings& settings;
    std::function<void(const Shortcut&)> boundTaken;
    std::vector<Claim> registered;
    std::map<std::string, std::function<void()>, std::less<>> bindings; ///< by settings key
    std::set<std::string, std::less<>> observed;                        ///< settings keys
    std::shared_ptr<void> alive = std::make_shared<char>(); ///< settings outlive their observers
};

} // namespace platform::wayland
