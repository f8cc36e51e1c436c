#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// Hiding the cursor, and keeping it hidden against whoever shows it again.

namespace palisor {

namespace {

constexpr double rehidePeriod = 0.005;
constexpr double retard = 0.2;

} // namespace

void AppDelegate::hidecursor() {
    cursorMustToBeHidden = true;
    invalidate(timerCursorMustToBeHidden);
    timerCursorMustToBeHidden =
        schedule<&AppDelegate::hidecursor2>(rehidePeriod, true, "hidecursor2");
    hidecursor2();
}

/// The cross-hair takes the cursor's place for good, so its requests pile up on purpose.
void AppDelegate::hidecursor2() {
    if (IDApp() == variants::crossHair || services.cursor.isVisible()) services.cursor.hide();
}

void AppDelegate::showcursor() {
    if (IDApp() == variants::cursorHider && services.settings.boolForKey(keys::STAY_HIDDEN) &&
        isActive())
        return;
    showcursor2();
}

void AppDelegate::showcursor2() {
    cursorMustToBeHidden = false;
    invalidate(timerCursorMustToBeHidden);
    if (!services.cursor.isVisible() && IDApp() != variants::crossHair) services.cursor.show();
}

void AppDelegate::hidecursorwithRetard() {
    invalidate(timerSchedule);
    invalidate(timerRetardHide);
    timerRetardHide = schedule<&AppDelegate::hidecursor>(retard, false, "hidecursor");
}

void AppDelegate::killTimer() {
    invalidate(timerSchedule);
    showcursor();
}

} // namespace palisor
