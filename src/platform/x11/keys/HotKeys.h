#pragma once

#include "platform/Settings.h"
#include "platform/x11/keys/KeyRecording.h"
#include "platform/x11/keys/KeyboardMap.h"

#include <map>
#include <set>
#include <vector>
#include <xcb/xinput.h>

namespace platform::x11 {

/// Hot keys as passive grabs on the root window, in every state of the lock keys. A combination
/// belongs to a key by its place, so that it stays there when the layout changes.
class HotKeys final : public RecordableHotKeys, private Listener {
  public:
    /// Calls an operation from the run loop, also while a modal alert runs.
    using Later = std::function<void(std::function<void()>)>;

    HotKeys(Connection& connection, Settings& settings, Log& log, Later later);
    ~HotKeys();
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

    void registerShortcut(const Shortcut& shortcut, std::function<void()> action) override;
    void unregisterShortcut(const Shortcut& shortcut) override;
    void bindShortcut(std::string_view settingsKey, std::function<void()> action) override;
    void breakBinding(std::string_view settingsKey) override;
    std::string modifierFlagsString(const Shortcut& shortcut) const override;
    std::string keyCodeString(const Shortcut& shortcut) const override;
    std::optional<std::uint16_t> keyCodeNamed(std::string_view name) const override;
    void onLabelsChange(std::function<void()> changed) override {
        labelsChanged = std::move(changed);
    }
    void onTaken(std::function<void(const Shortcut&)> handler) override {
        boundTaken = std::move(handler);
    }
    bool isTaken(const Shortcut& shortcut) const override;
    Obstacle obstacleTo(const Shortcut& shortcut) override;
    bool startRecording(KeyRecording::Handler pressed, std::function<void()> left) override;
    void stopRecording() override;

  private:
    struct Claim {
        Shortcut shortcut;
        std::function<void()> action;
    };
    struct Grab {
        xcb_keycode_t keycode;
        std::uint16_t mask; ///< without the lock keys
    };
    struct Asked {
        Shortcut shortcut;
        Grab grab;
        std::vector<xcb_void_cookie_t> core; ///< one for each state of the lock keys
        xcb_input_xi_passive_grab_device_cookie_t probe;
    };

    void handle(const xcb_generic_event_t& event) override;

    bool isRepetition(const xcb_key_press_event_t& event) const;
    void pressed(const xcb_key_press_event_t& event);
    std::optional<Shortcut> stored(std::string_view settingsKey) const;
    std::vector<Shortcut> wanted() const;
    bool isRegistered(const Shortcut& shortcut) const;
    void claim();
    std::optional<Asked> ask(const Shortcut& shortcut);
    bool isRefused(const Asked& asked);
    void release();
    void ungrab(const Grab& grab);
    void tell(const Shortcut& shortcut);

    Connection& connection;
    Settings& settings;
    Log& log;
    Later later;
    std::function<void()> labelsChanged;
    std::function<void(const Shortcut&)> boundTaken;
    KeyboardMap map;
    KeyRecording recording;
    std::vector<Claim> registered;
    std::map<std::string, std::function<void()>, std::less<>> bindings; ///< by settings key
    std::set<std::string, std::less<>> observed;                        ///< settings keys
    std::vector<Grab> held;
    std::vector<std::uint16_t> heldStates; ///< of the lock keys, as they were grabbed
    std::vector<Shortcut> taken;
    std::set<std::pair<std::uint16_t, std::uint32_t>> told;
    xcb_keycode_t lastReleased = 0;
    xcb_timestamp_t releaseTime = 0;                        ///< of that key
    xcb_timestamp_t pressTime = 0;                          ///< of the last press
    bool repeating = false;                                 ///< the last press was a repetition
    std::shared_ptr<void> alive = std::make_shared<char>(); ///< settings outlive their observers
};

} // namespace platform::x11
