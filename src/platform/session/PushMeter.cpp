#include "platform/session/PushMeter.h"

#include <algorithm>

namespace platform::session {

namespace {

// A hand that reports less often than this has rested in between.
constexpr double longestSpan = 2 * PushMeter::frame;

// A device that takes longer than this between two reports. Faster ones send two in most frames.
constexpr double slowSpan = 0.75 * PushMeter::frame;

// What fewer single steps take is no device's rate.
constexpr int enoughReports = 8;

// The X server's clock counts whole milliseconds, of which a frame holds 16. One more would count
// the third report of a mouse at 125 Hz for an eighth, and push where two make just the distance.
constexpr double frameOfWholeMilliseconds = 0.016;

// No two reports come quite as evenly as their device sends them, where the clock tells that.
constexpr double leastShare = 1.0 / 16;

// Far less than a millisecond, and more than what differences of large numbers are wrong by.
constexpr double roundingError = 1e-6;

} // namespace

PushMeter::PushMeter() {
    constexpr std::size_t fastMouse = 512; // so that pushing allocates nothing
    pieces.reserve(fastMouse);
}

void PushMeter::reported(double span) {
    if (span > longestSpan) return;
    reports = std::min(reports + 1, enoughReports);
    usualSpan += (span - usualSpan) / reports;
}

bool PushMeter::isSlow() const {
    return reports == enoughReports && usualSpan > slowSpan;
}

// What comes after a pause that is none of the device's own began at no known time.
void PushMeter::add(const Piece& piece) {
    pieces.push_back(piece);
    if (piece.span > frame) pieces.back().span = 0;
}

void PushMeter::clear() {
    pieces.clear();
    earlier.reset();
}

std::optional<PushMeter::Sum> PushMeter::take() {
    if (pieces.empty()) return std::nullopt;
    const auto sum = isSlow() ? ofLastTwo() : ofLastFrame();
    earlier = pieces.back();
    pieces.clear();
    return sum;
}

std::optional<PushMeter::Sum> PushMeter::soFar() const {
    if (pieces.empty() || isSlow()) return std::nullopt;
    return ofLastFrame();
}

std::optional<PushMeter::Sum> PushMeter::ofLastFrame() const {
    const double begin = pieces.back().time - frameOfWholeMilliseconds;
    std::optional<Sum> sum;
    Point lead;
    for (const Piece& piece : pieces) {
        const double inside = piece.time - begin;
        if (inside < std::max(roundingError, leastShare * piece.span)) continue;
        const double share = piece.span < inside + roundingError ? 1 : inside / piece.span;
        lead = {lead.x + share * piece.lead.x, lead.y + share * piece.lead.y};
        if (piece.cutOff == Point{}) continue;
        if (!sum) sum = Sum{piece.from, {}, {}};
        sum->cutOff.x += share * piece.cutOff.x;
        sum->cutOff.y += share * piece.cutOff.y;
    }
    if (sum) sum->lead = lead;
    return sum;
}

std::optional<PushMeter::Sum> PushMeter::ofLastTwo() const {
    const Piece& last = pieces.back();
    Piece before = pieces.size() > 1 ? pieces[pieces.size() - 2] : earlier.value_or(Piece{});
    const bool areTwo = last.time - before.time <= longestSpan;
    if (!areTwo) before = {};
    if (last.cutOff == Point{} && before.cutOff == Point{}) return std::nullopt;
    const double share = std::min(1.0, frameOfWholeMilliseconds / usualSpan) / (areTwo ? 2 : 1);
    const auto sum = [share](Point a, Point b) {
        return Point{share * (a.x + b.x), share * (a.y + b.y)};
    };
    return Sum{last.cutOff == Point{} ? before.from : last.from, sum(before.cutOff, last.cutOff),
               sum(before.lead, last.lead)};
}

} // namespace platform::session
