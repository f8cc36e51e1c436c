#include "app/AppDelegate.h"
#include "ui/Overlay.h"

// How the hot borders are shown: briefly as overlays, and as a window that fades in and out.

namespace palisor {

namespace {

constexpr double highlightTime = 0.5;
constexpr double fadeStep = 0.05;
constexpr double fadeSteps = 5;

} // namespace

void AppDelegate::highLightBoders(int shown) {
    if (shown == 0) return;
    otherMonitorsDark();
    schedule<&AppDelegate::otherMonitorsLight>(highlightTime, false, "otherMonitorsLight");
}

void AppDelegate::initWindowBorders() {
    windowHotBorders = services.windows.create({.kind = platform::WindowKind::border,
                                                .frame = {0, 0, MAX_W, MAX_H},
                                                .alpha = 0,
                                                .level = overlay::level,
                                                .background = platform::WindowColour::clear,
                                                .image = "hotborders_yellow2"});
}

/// One step of the fade in. Whoever starts it drives it with a timer in timerAnimBorders.
void AppDelegate::appari() {
    ++countanimation;
    if (windowHotBorders)
        windowHotBorders->setAlpha(static_cast<float>(countanimation / fadeSteps));
    if (countanimation != fadeSteps) return;
    invalidate(timerAnimBorders);
    timerAnimBorders = schedule<&AppDelegate::scompari>(fadeStep, true, "scompari");
}

void AppDelegate::scompari() {
    --countanimation;
    if (windowHotBorders)
        windowHotBorders->setAlpha(static_cast<float>(countanimation / fadeSteps));
    if (countanimation != 0) return;
    if (windowHotBorders) windowHotBorders->orderOut();
    invalidate(timerAnimBorders);
}

} // namespace palisor
