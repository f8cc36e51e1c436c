#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// Moves of the cursor that the program makes itself; all go through forceMouseToPoint.

namespace palisor {

namespace {

constexpr double noSuppression = 0.0;
constexpr double pauseAfterWrap = 0.15;
constexpr double lastingSuppression = 0.25;

} // namespace

void AppDelegate::forceMouseToPoint(Point P) {
    const bool pause =
        IDApp() == variants::wrapAround && services.settings.boolForKey(keys::BREAK_AFTER_SWITCH);
    services.pointer.setLocalEventsSuppressionInterval(pause ? pauseAfterWrap : noSuppression);
    services.pointer.warp(P);
    services.pointer.setLocalEventsSuppressionInterval(lastingSuppression);
}

/// One point inside the edge that was crossed. The height at which the cursor escaped is kept.
void AppDelegate::forceMouseInCalculatedPoint() {
    const Rect frame = frameOf(switchedScreen);
    const bool wentRight = cordmouse.x > lastCoord.x;
    const double x = wentRight ? frame.x + frame.width - 1 : frame.x + 1;
    forceMouseToPoint({static_cast<float>(x), static_cast<float>(cordmouse.y)});
}

Rect AppDelegate::restrictRect_aboutPixel(Rect rect, float pixels) const {
    const double p = pixels;
    return {rect.x + p, rect.y + p, rect.width - 2 * p, rect.height - 2 * p};
}

Point AppDelegate::getCenterPointOfScreen(ScreenId screen) const {
    const Rect frame = frameOf(screen);
    return {frame.x + frame.width * 0.5, frame.y + frame.height * 0.5};
}

void AppDelegate::moveCursorOnScreen(ScreenId screen) {
    forceMouseToPoint(getCenterPointOfScreen(screen));
}

// The hold comes first: the hand could move a cursor on that is put there before it. Nothing of the
// way is the hand's, so none of it counts as a push.
void AppDelegate::crossToScreen(const platform::Screen& screen) {
    const Rect frame = topLeftFrame(screen);
    const Point middle{frame.x + frame.width / 2, frame.y + frame.height / 2};
    if (IDApp() == variants::barrier && services.displays.screens().size() > 1) {
        switchedScreen = screen.id;
        switchedScreenRect = frame;
        cordmouse = oldcordmouse = oldoldcordmouse = lastCoord = middle;
        holdOrRelease();
    }
    forceMouseToPoint(middle);
}

/// Pointer events are ignored from here on until rimettiCursoreSulleGiusteCoordinate.
void AppDelegate::moveCursorOnMainScreen() {
    JUST_MY_MOVE = true;
    moveCursorOnScreen(services.displays.mainScreen());
}

void AppDelegate::rimettiCursoreSulleGiusteCoordinate() {
    forceMouseToPoint(savedcoordsMD);
    JUST_MY_MOVE = false;
}

void AppDelegate::updateCustomCursorPosition() {
    const std::size_t lines = aWindowCursorX ? aWindowCursorX->size() : 0;
    for (std::size_t i = 0; i < services.displays.screens().size() && i < lines; ++i) {
        platform::Window& line = *(*aWindowCursorX)[i];
        line.setFrame(lineAcross(line.frame(), cordmouse));
    }
    if (windowCursorY) windowCursorY->setFrame(uprightLine(cordmouse));
}

void AppDelegate::playTheSound() {
    services.sounds.play("sound", 0.5);
}

} // namespace palisor
