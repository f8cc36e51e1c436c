#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

#include <algorithm>

// Switching the product on and off, and ending it.

namespace palisor {

namespace {

constexpr double longestFreeing = 24 * 60 * 60;

} // namespace

bool AppDelegate::isActive() const {
    return services.settings.boolForKey(keys::ATTIVO) && !isFreed();
}

void AppDelegate::enableDisable() {
    const bool on = !isActive();
    forgetFreeing();
    setAndSynchronize(keys::ATTIVO, platform::Value{on});

    if (IDApp() == variants::barrier) {
        if (services.displays.screens().size() > 1)
            updatePalisor();
        else
            noSecondaryMonitor();
    } else if (IDApp() == variants::keepAwake) {
        keepAwakeWhileActive();
    }

    updateMenuItems();

    const int variant = IDApp();
    if (variant == variants::crossHair || variant == variants::cursorHider) resetCursor();
    if (variant == variants::calendarAlerts) lookAfterCalendarWhileActive();
}

// The settings say all the while that the product is on, so that it is at the next start, however
// this one ends.
void AppDelegate::freeFor(double seconds) {
    if (!mainMenu || (!isActive() && !isFreed())) return;
    if (!(seconds > 0)) {
        if (isFreed()) endFreeing();
        return;
    }
    const bool wasFreed = isFreed();
    forgetFreeing();
    seconds = std::min(seconds, longestFreeing);
    freedUntil = services.runLoop.now() + seconds;
    freeingTimer = schedule<&AppDelegate::endFreeing>(seconds, false, "endFreeing");
    if (wasFreed) {
        tellChanged();
        return;
    }
    activityChanged();
    updateMenuSoon();
}

double AppDelegate::freedFor() const {
    return freedUntil ? std::max(0.0, *freedUntil - services.runLoop.now()) : 0;
}

void AppDelegate::forgetFreeing() {
    freedUntil.reset();
    invalidate(freeingTimer);
    freeingTimer = TimerId::none;
}

void AppDelegate::endFreeing() {
    forgetFreeing();
    // Who holds the combination meanwhile goes on being free until it is released.
    if (combo && IDApp() == variants::barrier && services.displays.screens().size() > 1)
        comboPressedReleased(true);
    else
        activityChanged();
    updateMenuSoon();
}

void AppDelegate::keepAwakeWhileActive() {
    if (isActive())
        noSleep();
    else
        readyToSleep();
}

/// Forgets a pending hide, and shows the cursor unless it stays hidden or markers replace it.
void AppDelegate::resetCursor() {
    killTimer();
    if (IDApp() == variants::crossHair) letMarkersReplaceCursor();
    if (IDApp() == variants::cursorHider && services.settings.boolForKey(keys::STAY_HIDDEN) &&
        isActive())
        hidecursor();
}

void AppDelegate::lookAfterCalendarWhileActive() {
    if (isActive())
        turnOnCustomDefaultAlert();
    else
        turnOffCustomDefaultAlert();
}

void AppDelegate::quit() {
    services.application.terminate();
    services.application.exit(0);
}

void AppDelegate::killapp() {
    static constexpr const char* text = "CHIUSURA DI SICUREZZA!!";
    services.log.write(text);
    services.notifications.deliver({.title = text, .sound = platform::Notifications::defaultSound});
    quit();
}

} // namespace palisor
