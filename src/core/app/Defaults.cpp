#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/SettingsTable.h"
#include "app/Variants.h"

// First-run values and registered defaults.

namespace palisor {

using platform::Value;

namespace {

// The menu does not exist yet; it does before the run loop turns.
constexpr double firstMenuDelay = 0.2;

} // namespace

void AppDelegate::initiailValuesForUserDefaults() {
    const int variant = IDApp();

    if (!settingIsOne(keys::PRIMOACCESSO)) {
        for (const Setting& setting : settingsTable())
            if (setting.origin == Setting::Origin::firstRun)
                setAndSynchronize(setting.key, setting.standardValue());
        setAndSynchronize(keys::PRIMOACCESSO, Value{"1"});
        schedule<&AppDelegate::firstTime>(firstMenuDelay, false, "firstTime");
    }
    // An installation from before the time slider holds a time that the slider may not show.
    if (variant == variants::cursorHider && !settingIsOne(keys::PRIMOACCESSOCONSLIDER)) {
        setAndSynchronize(keys::SCHEDULE, Value{"5"});
        setAndSynchronize(keys::PRIMOACCESSOCONSLIDER, Value{"1"});
    }
    for (const Setting& setting : settingsTable())
        if (setting.origin == Setting::Origin::registered && setting.hasStandard(variant))
            services.settings.registerDefault(setting.key, setting.standardValue());
}

void AppDelegate::firstTime() {
    services.statusItem.popUpMenu();
}

} // namespace palisor
