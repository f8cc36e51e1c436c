#pragma once

#include "platform/sway/undo/Changes.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::sway {

/// Hot keys as bindings that do nothing, and of which the compositor tells. One that the user's
/// configuration binds is taken, and stays the user's.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    HotKeys(Compositor& compositor, Changes& changes, wayland::KeyboardSeat& keyboard,
            wayland::KeyTaking& recording, Settings& settings, Log& log, Later later);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

  private:
    void claim(const std::vector<Claim>& wanted) override;
    bool isElsewhere(const Shortcut& shortcut) const override;
    void refused(const Shortcut& shortcut) override;

    Compositor& compositor;
    Changes& changes;
    wayland::KeyboardSeat& keyboard;
    Log& log;
    std::set<std::string> bound; ///< what the compositor has, in its own words
    std::set<std::string> told;
};

} // namespace platform::sway
