#pragma once

#include "platform/kwin/script/Script.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::kwin {

/// Hot keys as the global shortcuts of a script, which has no other task: it cannot give one back,
/// and is loaded anew instead. KWin's settings keep a line of each.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    HotKeys(Script& script, wayland::KeyboardSeat& keyboard, wayland::KeyTaking& recording,
            Settings& settings, Later later, std::string owner);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

  private:
    void claim(const std::vector<Claim>& wanted) override;
    std::string sequenceOf(const Shortcut& shortcut) const;

    Script& script;
    std::string owner;                                   ///< for the settings
    std::map<std::string, std::function<void()>> claims; ///< by what Qt calls the combination
};

} // namespace platform::kwin
