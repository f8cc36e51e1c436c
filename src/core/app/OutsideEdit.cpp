#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

#include <algorithm>

// What is on the screen after somebody has edited the settings file. Most settings are read at each
// use; these are the ones that have left something behind.

namespace palisor {

void AppDelegate::settingsEdited(const std::set<std::string, std::less<>>& edited) {
    if (!mainMenu) return;
    const auto isEdited = [&edited](std::string_view key) { return edited.contains(key); };
    const int variant = IDApp();

    if (variant == variants::barrier && isEdited(keys::ATTIVO))
        applicationDidChangeScreenParameters();
    else if (variant == variants::barrier && isEdited(keys::OTHERS_DARK))
        updateShadow();
    if (variant == variants::keepAwake && isEdited(keys::ATTIVO)) keepAwakeWhileActive();
    if (variant == variants::calendarAlerts && isEdited(keys::ATTIVO))
        lookAfterCalendarWhileActive();

    static constexpr keys::Key hiding[] = {keys::ATTIVO, keys::STAY_HIDDEN, keys::HOT_BOUNDS,
                                           keys::TIME_MODE};
    if (variant == variants::crossHair && isEdited(keys::ATTIVO)) resetCursor();
    if (variant == variants::cursorHider && std::ranges::any_of(hiding, isEdited)) resetCursor();

    setUpHotBorderButtons(variant);
    // By a timer, since those wait for the end of an open menu.
    schedule<&AppDelegate::updateMenuItems>(0, false, "updateMenuItems");
}

} // namespace palisor
