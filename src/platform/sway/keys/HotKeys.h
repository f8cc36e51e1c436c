#pragma once

#include "platform/sway/undo/Changes.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::sway {

/// Hot keys as bindings that do nothing, and of which the compositor tells. While one is bound the
/// user's own binding of it is not heard.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    HotKeys(Compositor& compositor, Changes& changes, wayland::KeyboardSeat& keyboard,
            wayland::KeyTaking& recording, Settings& settings, Later later);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

  private:
    void claim(const std::vector<Claim>& wanted) override;

    Compositor& compositor;
    Changes& changes;
    std::set<std::string> bound; ///< what the compositor has, in its own words
};

} // namespace platform::sway
