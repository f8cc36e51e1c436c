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
        if (isActive())
            noSleep();
        else
            readyToSleep();
    }

    updateMenuItems();

    const int variant = IDApp();
    if (variant == variants::crossHair || variant == variants::cursorHider) killTimer();
    if (variant == variants::crossHair) letMarkersReplaceCursor();
    if (variant == variants::cursorHider && services.settings.boolForKey(keys::STAY_HIDDEN) &&
        isActive())
        hidecursor();
    if (variant == variants::calendarAlerts) {
        if (isActive())
            turnOnCustomDefaultAlert();
        else
            turnOffCustomDefaultAlert();
    }
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
