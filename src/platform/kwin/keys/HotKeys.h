#pragma once

#include "platform/kwin/script/Script.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::kwin {

/// Hot keys as the global shortcuts of a script, which has no other task and is there while there
/// are any: it cannot give one back, and is loaded anew instead. KWin's settings keep a line of
/// each. Of each it is asked who else has the combination.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    HotKeys(Script& script, bus::Link& link, Log& log, wayland::KeyboardSeat& keyboard,
            wayland::KeyTaking& recording, Settings& settings, Later later, std::string owner);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

    void onTaken(std::function<void(const Shortcut&)> taken) override {
        tellTaken = std::move(taken);
    }
    bool isTaken(const Shortcut& shortcut) const override;

  private:
    struct Bound {
        HotKeys& owner;
        Claim claim;
        bool isTaken = false;
        bus::Slot question{}; ///< whether it has a key
    };

    void claim(const std::vector<Claim>& wanted) override;
    void claimOne(const std::string& sequence);
    void ask(const std::string& sequence);
    void askHolders(Bound& bound, std::int32_t key);
    void answered(Bound& bound, bool isTaken);
    static int keysTold(sd_bus_message* reply, void* bound, sd_bus_error* error);
    static int holdersTold(sd_bus_message* reply, void* bound, sd_bus_error* error);
    std::string sequenceOf(const Shortcut& shortcut) const;

    Script& script;
    bus::Link& link;
    Log& log;
    std::string owner; ///< for the settings
    std::function<void(const Shortcut&)> tellTaken;
    std::map<std::string, Bound> claims; ///< by what Qt calls the combination
};

} // namespace platform::kwin
