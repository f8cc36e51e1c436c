#include "platform/x11/pointer/HeldCursor.h"

#include <cmath>
#include <utility>

// For each motion that a barrier stops the server tells the whole of the motion, but not where the
// cursor was before it. That is followed here: from the last place that the server told, along the
// raw motion since, which also has the fractions of pixels that the server drops at a barrier. Of
// a fast mouse the raw motion is not read, and the first motion that is stopped counts as if the
// cursor had been at the barrier already: one event of a hundred in a frame.

namespace platform::x11 {

void HeldCursor::hold(const Box& screen) {
    // Without barriers nothing is followed, and a place that the cursor was put to since is right.
    isKnown &= !held;
    release();
    held = true;
    box = screen;
}

void HeldCursor::release() {
    isKnown &= !held;
    held = false;
    stop.reset();
    delta.reset();
    meter.clear();
}

/// The last motion is over: the cursor is where it led to.
void HeldCursor::settle() {
    if (stop) {
        before = *stop;
        isKnown = true;
    } else if (isKnown && delta) {
        before = nearestPlace({before.x + delta->x, before.y + delta->y}, box);
    }
    stop.reset();
    delta.reset();
}

bool HeldCursor::isWherePut() const {
    return isKnown && putAt && std::abs(before.x - putAt->x) < 1 &&
           std::abs(before.y - putAt->y) < 1;
}

/// What leads from where the cursor was put back to the edge is a part of the push: of a slow one,
/// which is put back in each frame, it is a quarter. What is farther than the last pixel is cut off
/// of the next motion.
void HeldCursor::noteLead() {
    if (!isWherePut() || !delta || stop) return;
    const Point end = nearestPixel({before.x + delta->x, before.y + delta->y}, box);
    meter.add({lastTime, span, {}, {}, {end.x - before.x, end.y - before.y}});
}

void HeldCursor::moved(Point step, double time, bool afterQuestion) {
    noteLead();
    settle();
    span = time - lastTime;
    lastTime = time;
    meter.reported(span);
    isKnown &= held;
    delta = step;
    anyRead = true;
    if (!afterQuestion) return;
    sinceQuestion.x += step.x;
    sinceQuestion.y += step.y;
}

void HeldCursor::jumped(bool afterQuestion) {
    noteLead();
    stop.reset();
    delta.reset();
    isKnown = anyRead = false;
    jumpedSinceQuestion |= afterQuestion;
}

void HeldCursor::asked() {
    sinceQuestion = {};
    stoppedSinceQuestion = jumpedSinceQuestion = false;
}

bool HeldCursor::placed(Point root) {
    isKnown &= held;
    // A stop was told later than this, or another place that is not known.
    if (!held || stoppedSinceQuestion || jumpedSinceQuestion) return true;
    const Point last = delta.value_or(Point{});
    const Point now = stop.value_or(Point{before.x + last.x, before.y + last.y});
    const auto agrees = [](double followed, double told) { return std::floor(followed) == told; };
    // Where they agree the followed place is the better one: it has fractions.
    const bool isRight = isKnown && agrees(now.x - sinceQuestion.x, root.x) &&
                         agrees(now.y - sinceQuestion.y, root.y);
    if (isRight && sinceQuestion == Point{}) settle();
    anyRead &= !isRight;
    if (isRight) return true;
    const bool wasKnown = isKnown;
    const bool wasRead = std::exchange(anyRead, false);
    stop.reset();
    before = root;
    if (sinceQuestion == Point{})
        delta.reset();
    else
        before = nearestPlace(
            {root.x + sinceQuestion.x - last.x, root.y + sinceQuestion.y - last.y}, box);
    isKnown = true;
    return !wasKnown || !wasRead;
}

void HeldCursor::put(Point root) {
    stop.reset();
    delta.reset();
    before = root;
    isKnown = true;
    putAt = root;
}

// Barriers are endless, and stop a cursor outside the screen too.
std::optional<Point> HeldCursor::stoppedAt() const {
    return stop && held && box.contains(*stop) ? stop : std::nullopt;
}

void HeldCursor::stopped(const Stop& now) {
    stoppedSinceQuestion |= now.afterQuestion;
    // Two barriers stop a motion into a corner. Otherwise it is another motion, even if its own raw
    // event is not read.
    const bool isSecondBarrier =
        now.time == lastStop.time && now.told == lastStop.told && now.side != lastStop.side;
    if (stop && !isSecondBarrier) settle();
    lastStop = {now.time, now.told, now.side};
    stop = now.at;

    const bool vertical = isVertical(now.side);
    const auto across = [vertical](Point p) { return vertical ? p.x : p.y; };
    const auto along = [vertical](Point p) { return vertical ? p.y : p.x; };
    // A motion that is not the one told, or a place that does not lead to where it was stopped, is
    // of an absolute device or of another program's warp.
    const bool sameMotion = delta && std::abs(across(*delta) - across(now.told)) < 1.5;
    const double step = sameMotion ? across(*delta) : across(now.told);
    const double start = along(now.at) - along(now.told);
    const bool followed = isKnown && sameMotion && std::abs(along(before) - start) < 2.5;

    const int edge = lastPixel(now.side, box);
    const double cutOff = (followed ? across(before) - edge : 0) + step;
    const bool leads = followed && isWherePut();
    // Where the cursor just reaches the edge nothing is cut off.
    if (!isOutwards(now.side, cutOff) && !(leads && cutOff == 0)) return;
    const double at = edge;
    PushMeter::Piece piece{now.time, sameMotion ? span : 0, {}, {}};
    piece.from = nearestPixel(vertical ? Point{at, start} : Point{start, at}, box);
    piece.cutOff = vertical ? Point{cutOff, 0} : Point{0, cutOff};
    if (leads) piece.lead = vertical ? Point{at - before.x, 0} : Point{0, at - before.y};
    meter.add(piece);
}

std::optional<HeldCursor::Push> HeldCursor::takePush(Point place, std::span<const Box> monitors) {
    const auto sum = meter.take();
    if (!sum || !held) return std::nullopt;
    const Point beyond =
        onDesktop({place.x + sum->cutOff.x, place.y + sum->cutOff.y}, box, monitors);
    if (box.contains(beyond)) return std::nullopt;
    const auto heldAt = [](double from, double cutOff, double lead) {
        return cutOff * lead > 0 ? from - lead : from;
    };
    return Push{{heldAt(sum->from.x, sum->cutOff.x, sum->lead.x),
                 heldAt(sum->from.y, sum->cutOff.y, sum->lead.y)},
                beyond};
}

} // namespace platform::x11
