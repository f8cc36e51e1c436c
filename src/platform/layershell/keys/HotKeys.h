#pragma once

#include "platform/Log.h"
#include "platform/layershell/keys/Bindings.h"
#include "platform/wayland/LayerServices.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::layershell {

/// Hot keys by whoever hears keys for the program. Where nobody does they are remembered, and the
/// log says once what the user can do.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    struct Means {
        Bindings* bindings; ///< null where nobody hears keys; lent
        std::string advice; ///< what to do then, one sentence
    };
    HotKeys(Means means, Log& log, wayland::LayerServices& shared,
            const wayland::Desktop::Surroundings& given);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

  private:
    void claim(const std::vector<Claim>& wanted) override;

    const Means means;
    Log& log;
    bool told = false;
};

} // namespace platform::layershell
