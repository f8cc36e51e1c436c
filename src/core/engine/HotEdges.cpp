#include "engine/HotEdges.h"
#include "app/AppDelegate.h"
#include "app/Variants.h"

// Hot edges: which edge of the current screen an event is at, whether that edge and its corners
// are armed, and when the latch of an edge that has fired opens again.

namespace palisor {

namespace {

constexpr float releaseInset = 2.0F;
constexpr int noEdge = -1;

// Points and frames are double; the bounds they are compared with have single precision.
double single(double value) {
    return static_cast<float>(value);
}

bool isArmed(const CheckBox& button) {
    return button.state != 0;
}

/// One stretch of an edge: disarmed where it runs into a corner whose switch is off.
bool cornersAllow(double along, double nearEnd, const CheckBox& nearCorner, double farEnd,
                  const CheckBox& farCorner) {
    if (along < nearEnd && !isArmed(nearCorner)) return false;
    return !(along > farEnd && !isArmed(farCorner));
}

} // namespace

void AppDelegate::followHotEdges(Point P, int variant) {
    detectCurrentScreen();
    if (!inHotArea) {
        const int edge = armedEdgeAt(P, variant);
        if (edge != noEdge) fireEdge(edge, variant);
    }
    if (!restrictRect_aboutPixel(switchedScreenRect, releaseInset).contains(P)) return;
    if (variant == variants::cursorHider) {
        invalidate(timerRetardHide);
        showcursor();
    } else {
        inHotArea = false;
    }
}

/// The left and top strips exclude their inner boundary, the right and bottom ones include it. A
/// disarmed side passes on to the next edge; a disarmed corner ends the search.
int AppDelegate::armedEdgeAt(Point P, int variant) const {
    const bool ownEdges = variant == variants::cursorHider;
    const Rect& screen = switchedScreenRect;
    const double left = ownEdges ? single(screen.x) : MIN_X;
    const double right = ownEdges ? single(screen.x + screen.width) : MAX_W;
    const double top = single(screen.y);
    const double bottom = single(screen.y + screen.height);
    const double margin = ownEdges ? 2.0 : 1.0;
    const double cornerHeight = screen.height / cornerDivisor;
    const double cornerWidth = screen.width / cornerDivisor;

    const double upper = screen.y + cornerHeight;
    const double lower = bottom - cornerHeight;
    if (P.x < left + margin && isArmed(butlato1))
        return cornersAllow(P.y, upper, butangolo1, lower, butangolo4) ? 0 : noEdge;
    if (P.x >= right - margin && isArmed(butlato3))
        return cornersAllow(P.y, upper, butangolo2, lower, butangolo3) ? 1 : noEdge;

    const double leftCorner = screen.x + cornerWidth;
    const double rightCorner = right - cornerWidth;
    if (P.y < top + margin && isArmed(butlato2))
        return cornersAllow(P.x, leftCorner, butangolo1, rightCorner, butangolo2) ? 2 : noEdge;
    if (P.y >= bottom - margin && isArmed(butlato4))
        return cornersAllow(P.x, leftCorner, butangolo4, rightCorner, butangolo3) ? 3 : noEdge;
    return noEdge;
}

void AppDelegate::fireEdge(int direction, int variant) {
    if (variant == variants::cursorHider) {
        hidecursorwithRetard();
        return;
    }
    inHotArea = true;
    runForDirection(direction);
}

} // namespace palisor
