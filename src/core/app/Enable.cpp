#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// Switching the product on and off, and ending it.

namespace palisor {

bool AppDelegate::isActive() const {
    return services.settings.boolForKey(keys::ATTIVO);
}

void AppDelegate::enableDisable() {
    setAndSynchronize(keys::ATTIVO, platform::Value{!isActive()});

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
