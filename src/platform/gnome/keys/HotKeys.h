#pragma once

#include "platform/gnome/connection/Hand.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::gnome {

/// Hot keys as accelerators of the shell, which refuses one that it has itself.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    HotKeys(Hand& hand, Log& log, wayland::KeyboardSeat& keyboard, wayland::KeyTaking& recording,
            Settings& settings, Later later);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

    void onTaken(std::function<void(const Shortcut&)> taken) override {
        tellTaken = std::move(taken);
    }
    bool isTaken(const Shortcut& shortcut) const override;

  private:
    struct Bound {
        Claim claim;
        std::uint32_t number = 0;
        bool isTaken = false;
    };

    void claim(const std::vector<Claim>& wanted) override;
    void ask(const Bound& one);
    void answered(std::uint32_t number, bool granted);

    Hand& hand;
    Log& log;
    std::function<void(const Shortcut&)> tellTaken;
    std::vector<Bound> bound;
    std::uint32_t lastNumber = 0;
};

} // namespace platform::gnome
