#pragma once

#include "platform/layershell/keys/Bindings.h"
#include "platform/wayland/LayerServices.h"
#include "platform/wayland/keys/ClaimedHotKeys.h"

namespace platform::layershell {

/// Hot keys by whoever hears keys for the program. Where nobody does they are remembered.
class HotKeys final : public wayland::ClaimedHotKeys {
  public:
    /// `bindings` are lent, and null where nobody hears keys.
    HotKeys(Bindings* bindings, wayland::LayerServices& shared,
            const wayland::Desktop::Surroundings& given);
    ~HotKeys() override;
    HotKeys(const HotKeys&) = delete;
    HotKeys& operator=(const HotKeys&) = delete;

  private:
    void claim(const std::vector<Claim>& wanted) override;

    Bindings* const bindings;
};

} // namespace platform::layershell
