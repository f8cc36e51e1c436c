#pragma once

#include "platform/Geometry.h"

#include <functional>
#include <string>
#include <string_view>

namespace palisor {

/// What the barrier made of an event outside the held screen.
struct Decision {
    enum class Outcome {
        crossed,  ///< a push that was strong enough
        tooShort, ///< the step was not longer than needed
        slanted,  ///< it was, but went too far up or down
        noPush,   ///< pushing is switched off, or the key combination is held
    };

    Outcome outcome = Outcome::noPush;
    platform::Point at;  ///< where the cursor is now, top-left coordinates
    double sideways = 0; ///< length of the step from the event before, pixels
    double upOrDown = 0; ///< the same
    double needed = 0;   ///< what a push must be longer than sideways, pixels
};

/// One line in English, such as "held at 1919,500: step 38 px, 79 needed".
std::string explained(const Decision& decision);

/// Is told of each decision in the path of a pointer event, so that it must not wait.
class DecisionObserver {
  public:
    virtual ~DecisionObserver() = default;
    virtual void decided(const Decision& decision) = 0;
};

/// Writes decisions out: each crossing, and of the others four a second at most. The next line
/// tells how many were left out.
class DecisionLog final : public DecisionObserver {
  public:
    using Write = std::function<void(std::string_view line)>;
    using Clock = std::function<double()>; ///< seconds, never set back

    DecisionLog(Write lines, Clock seconds) : write(std::move(lines)), clock(std::move(seconds)) {}

    void decided(const Decision& decision) override;

  private:
    Write write;
    Clock clock;
    double secondBegan = 0;
    int written = 0; ///< in that second
    int leftOut = 0; ///< since the last line
};

} // namespace palisor
