#include "engine/Decisions.h"

#include <cmath>
#include <limits>

namespace palisor {

namespace {

constexpr int mostLinesASecond = 4;

std::string whole(double pixels) {
    return std::to_string(std::lround(pixels));
}

std::string reasonOf(const Decision& decision) {
    std::string step =
        "step " + whole(decision.sideways) + " px, " + whole(decision.needed) + " needed";
    switch (decision.outcome) {
    case Decision::Outcome::crossed:
        return step;
    case Decision::Outcome::tooShort:
        // What goes up or down can be as long as it likes, which one must be told.
        if (decision.upOrDown <= decision.sideways) return step;
        return step + ", and " + whole(decision.upOrDown) + " px up or down do not count";
    case Decision::Outcome::slanted:
        return step + ", but " + whole(decision.upOrDown) + " px up or down, a tenth at most";
    case Decision::Outcome::noPush:
        return "no push crosses now";
    }
    return {};
}

} // namespace

std::string explained(const Decision& decision) {
    const bool crossed = decision.outcome == Decision::Outcome::crossed;
    return (crossed ? "crossed to " : "held at ") + whole(decision.at.x) + "," +
           whole(decision.at.y) + ": " + reasonOf(decision);
}

void DecisionLog::decided(const Decision& decision) {
    const double now = clock();
    if (now - secondBegan >= 1 || written == 0) {
        secondBegan = now;
        written = 0;
    }
    // Nobody crosses often, and whoever pushes has been held a dozen times just before.
    const bool crossed = decision.outcome == Decision::Outcome::crossed;
    if (written == mostLinesASecond && !crossed) {
        if (leftOut < std::numeric_limits<int>::max()) ++leftOut;
        return;
    }
    if (!crossed) ++written;
    std::string line = explained(decision);
    if (leftOut > 0) line += " (" + std::to_string(leftOut) + " before it left out)";
    leftOut = 0;
    write(line);
}

} // namespace palisor
