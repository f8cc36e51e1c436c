#pragma once

#include "platform/WakeLock.h"
#include "platform/wayland/connection/Layer.h"

#include <map>

namespace platform::wayland {

/// An invisible pixel that the compositor does not go idle over.
class IdleInhibitor final : public WakeLock {
  public:
    IdleInhibitor(Connection& x, const Outputs& screens) : connection(x), outputs(screens) {}

    bool keep(AssertionId id, const std::string& reason) override;
    void release(AssertionId id) override { kept.erase(id); }
    std::string_view missing() const override {
        return "the compositor cannot be kept from going idle";
    }

  private:
    struct Kept {
        std::unique_ptr<Layer> layer;
        Handle<zwp_idle_inhibitor_v1> inhibitor;
    };

    Connection& connection;
    const Outputs& outputs;
    std::map<AssertionId, Kept> kept;
};

} // namespace platform::wayland
