#include "platform/x11/pointer/PushMeter.h"

#include <algorithm>

namespace platform::x11 {

namespace {

// A hand that reports less often than this has rested in between.
constexpr double longestSpan = 2 * PushMeter::frame;

// The server's clock counts whole milliseconds, of which a frame holds 16. One more would count the
// third report of a mouse at 125 Hz for an eighth, and push where two make just the distance.
constexpr double frameOfWholeMilliseconds = 0.016;

// Far less than a millisecond, and more than what differences of large numbers are wrong by.
constexpr double roundingError = 1e-6;

} // namespace

PushMeter::PushMeter() {
    constexpr std::size_t fastMouse = 512; // so that pushing allocates nothing
    pieces.reserve(fastMouse);
}

void PushMeter::add(const Piece& piece) {
    pieces.push_back(piece);
    if (piece.span > longestSpan) pieces.back().span = 0;
}

std::optional<PushMeter::Sum> PushMeter::take() {
    if (pieces.empty()) return std::nullopt;
    const double begin = pieces.back().time - frameOfWholeMilliseconds;
    std::optional<Sum> sum;
    Point lead;
    for (const Piece& piece : pieces) {
        const double inside = piece.time - begin;
        if (inside < roundingError) continue;
        const double share = piece.span < inside + roundingError ? 1 : inside / piece.span;
        lead = {lead.x + share * piece.lead.x, lead.y + share * piece.lead.y};
        if (piece.cutOff == Point{}) continue;
        if (!sum) sum = Sum{piece.from, {}, {}};
        sum->cutOff.x += share * piece.cutOff.x;
        sum->cutOff.y += share * piece.cutOff.y;
    }
    pieces.clear();
    if (sum) sum->lead = lead;
    return sum;
}

} // namespace platform::x11
