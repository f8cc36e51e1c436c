#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "engine/Decisions.h"

#include <cmath>

// What a pointer event means, product by product.

namespace palisor {

void AppDelegate::onMouseMovedOrClicked(Point P) {
    auto& settings = services.settings;
    const int variant = IDApp();

    if (variant != variants::barrier) {
        oldoldcordmouse = oldcordmouse;
        oldcordmouse = cordmouse;
    }
    if (!isActive()) return;
    if (JUST_MY_MOVE) return;

    if (variant == variants::cursorHider && settings.boolForKey(keys::TIME_MODE)) {
        if (!services.cursor.hidesAtRest()) rearmHideTimer(0.1);
        showcursor();
    }
    cordmouse = P;

    switch (variant) {
    case variants::crossHair:
        moveCrossHair();
        return;
    case variants::barrier:
        holdInsideScreen(P);
        return;
    case variants::cursorHider:
        if (!settingIsOne(keys::HOT_BOUNDS)) return;
        break;
    default:
        break;
    }
    followHotEdges(P, variant);
}

void AppDelegate::rearmHideTimer(double secondsWhenZero) {
    const int seconds = services.settings.integerForKey(keys::SCHEDULE);
    invalidate(timerSchedule);
    timerSchedule = schedule<&AppDelegate::hidecursor>(seconds == 0 ? secondsWhenZero : seconds,
                                                       false, "hidecursor");
}

void AppDelegate::moveCrossHair() {
    if (windowCursorX) windowCursorX->makeKeyAndOrderFront();
    if (windowCursorY) windowCursorY->makeKeyAndOrderFront();
    rearmHideTimer(0.4);
    updateCustomCursorPosition();
}

void AppDelegate::holdInsideScreen(Point P) {
    if (switchedScreenRect.contains(P)) {
        oldoldcordmouse = oldcordmouse;
        oldcordmouse = cordmouse;
        lastCoord = P;
        return;
    }
    const bool pushed =
        services.settings.boolForKey(keys::VELOCITY_OPTION) && !combo &&
        distanceBewteenCGPoint_andCGPoint_distanceMax(P, oldcordmouse, calculatedSettedDistance());
    if (pushed) {
        // Switching off and on again anchors the barrier on the screen that the cursor has entered.
        enableDisable();
        enableDisable();
    } else {
        forceMouseInCalculatedPoint();
    }
    if (decisions != nullptr) tellDecision(P, pushed);
}

void AppDelegate::tellDecision(Point P, bool pushed) const {
    using Outcome = Decision::Outcome;
    Decision decision{.outcome = Outcome::noPush,
                      .at = services.pointer.location(),
                      .sideways = std::abs(P.x - oldcordmouse.x),
                      .upOrDown = std::abs(P.y - oldcordmouse.y),
                      .needed = calculatedSettedDistance()};
    if (pushed)
        decision.outcome = Outcome::crossed;
    else if (services.settings.boolForKey(keys::VELOCITY_OPTION) && !combo)
        decision.outcome =
            decision.sideways > decision.needed ? Outcome::slanted : Outcome::tooShort;
    decisions->decided(decision);
}

} // namespace palisor
