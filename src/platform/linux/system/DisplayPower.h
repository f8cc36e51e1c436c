#pragma once

#include "platform/Log.h"
#include "platform/WakeLock.h"

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace platform::linux {

/// Keeps the displays awake in every way that the desktop offers, since no one of them covers all
/// desktops. An assertion stands as long as one of them works. Main thread.
class DisplayPower final : public Power {
  public:
    /// What is lent must outlive the object. A way that does not work is logged once.
    DisplayPower(std::vector<WakeLock*> ways, Log& log);

    /// Called for each assertion that fails since nothing on the desktop can keep the displays on.
    void onNothingInhibited(std::function<void()> handler) { nothingWorks = std::move(handler); }

    // Result codes besides `success`.
    static constexpr int nothingInhibited = 1;
    static constexpr int noSuchAssertion = 2;
    static constexpr int notSupported = 3; ///< another type of assertion, or one of level 0

    int createAssertion(std::string_view type, std::uint32_t level, std::string_view name,
                        AssertionId& id) override;
    int releaseAssertion(AssertionId id) override;

  private:
    void end(AssertionId id);

    std::vector<WakeLock*> ways;
    std::set<const WakeLock*> told; ///< of those that do not work
    Log& log;
    std::function<void()> nothingWorks;
    std::set<AssertionId> held;
    AssertionId made = 0;
};

} // namespace platform::linux
