#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

#include <algorithm>
#include <cmath>

// When a step is a push, and what an edge does.

namespace palisor {

namespace {

constexpr double pushRatio = 10; // how much longer along than across

} // namespace

float AppDelegate::calculatedSettedDistance() const {
    const double v = static_cast<float>(services.settings.integerForKey(keys::VELOCITY));
    const double factor = IDApp() == variants::barrier ? 0.03 : 0.02;
    return static_cast<float>(std::max(1.0, factor * v * v));
}

bool AppDelegate::distanceBewteenCGPoint_andCGPoint_distanceMax(Point A, Point B, double D) const {
    const double dx = std::abs(B.x - A.x);
    const double dy = std::abs(B.y - A.y);
    if (dx > D && dx / pushRatio > dy) return true;
    // Monitors stacked one above the other are not crossed by a push.
    return dy > D && dy / pushRatio > dx && IDApp() != variants::barrier;
}

void AppDelegate::runForDirection(int direction) {
    if (services.settings.boolForKey(keys::VELOCITY_OPTION) && !combo &&
        !distanceBewteenCGPoint_andCGPoint_distanceMax(cordmouse, oldcordmouse,
                                                       calculatedSettedDistance()))
        return;
    if (direction == 0 || direction == 1)
        runForRightLeft(direction);
    else
        runForUpDown(direction);
}

void AppDelegate::runForRightLeft(int direction) {
    const bool right = direction == 1;
    switch (IDApp()) {
    case variants::desktopSwitcher:
        services.log.write("qwe");
        postArrowKeystroke(right ? platform::keyCodes::rightArrow : platform::keyCodes::leftArrow);
        return;
    case variants::wrapAround:
        forceMouseToPoint({right ? MIN_X : static_cast<double>(MAX_W) - 1, cordmouse.y});
        return;
    default:
        return;
    }
}

void AppDelegate::postArrowKeystroke(std::uint16_t keyCode) {
    services.keyboard.postKey(keyCode, true, platform::Shortcut::control);
    services.keyboard.postKey(keyCode, false, platform::Shortcut::control);
}

void AppDelegate::runForUpDown(int direction) {
    services.log.write("runForUpDown: " + std::to_string(direction));
    const bool top = direction == 2;
    forceMouseToPoint({cordmouse.x, top ? static_cast<double>(MAX_H) - 1 : MIN_Y});
}

} // namespace palisor
