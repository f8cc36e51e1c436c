#pragma once

#include "platform/Power.h"
#include "platform/memory/Effects.h"

#include <set>

namespace platform::memory {

class Power final : public platform::Power {
  public:
    explicit Power(Effects& stream) : effects(stream) {}

    int createAssertion(std::string_view type, std::uint32_t level, std::string_view name,
                        AssertionId& id) override {
        if (failure != success) return failure;
        id = ++made;
        held.insert(id);
        effects.emit("assertionCreate", Member{"type", type}, Member{"level", level},
                     Member{"name", name}, Member{"id", id});
        return success;
    }

    int releaseAssertion(AssertionId id) override {
        effects.emit("assertionRelease", Member{"id", id});
        return held.erase(id) != 0 ? success : unknown;
    }

    /// What the next assertions answer; `success` makes them again.
    void fail(int code) { failure = code; }
    const std::set<AssertionId>& assertions() const { return held; }

  private:
    static constexpr int unknown = 1;

    Effects& effects;
    std::set<AssertionId> held;
    AssertionId made = 0;
    int failure = success;
};

} // namespace platform::memory
