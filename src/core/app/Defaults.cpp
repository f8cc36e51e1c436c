#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// First-run values and registered defaults.

namespace palisor {

using platform::Value;

namespace {

// The menu does not exist yet; it does before the run loop turns.
constexpr double firstMenuDelay = 0.2;

} // namespace

void AppDelegate::initiailValuesForUserDefaults() {
    auto& settings = services.settings;
    const int variant = IDApp();

    if (!settingIsOne(keys::PRIMOACCESSO)) {
        setAndSynchronize(keys::CHECK_0, Value{"0"});
        setAndSynchronize(keys::CHECK_1, Value{"0"});
        setAndSynchronize(keys::SCHEDULE, Value{"5"});
        setAndSynchronize(keys::HOT_BOUNDS, Value{"0"});
        setAndSynchronize(keys::PRIMOACCESSO, Value{"1"});
        schedule<&AppDelegate::firstTime>(firstMenuDelay, false, "firstTime");
    }
    // An installation from before the time slider holds a time that the slider may not show.
    if (variant == variants::cursorHider && !settingIsOne(keys::PRIMOACCESSOCONSLIDER)) {
        setAndSynchronize(keys::SCHEDULE, Value{"5"});
        setAndSynchronize(keys::PRIMOACCESSOCONSLIDER, Value{"1"});
    }
    if (variant == variants::wrapAround || variant == variants::cursorHider ||
        variant == variants::desktopSwitcher) {
        settings.registerDefault(keys::BUTLATO1, Value{true});
        settings.registerDefault(keys::BUTLATO3, Value{true});
    }
    settings.registerDefault(keys::ATTIVO, Value{true});
    settings.registerDefault(keys::SHOW_ON_SCROLL, Value{true});
    settings.registerDefault(keys::CTRLALTCMD, Value{true});
    settings.registerDefault(keys::VELOCITY_OPTION, Value{false});
    settings.registerDefault(keys::VELOCITY, Value{std::int64_t{50}});
    settings.registerDefault(keys::BREAK_AFTER_SWITCH, Value{false});
    settings.registerDefault(keys::OFFSET, Value{std::int64_t{0}});
    settings.registerDefault(keys::ALARM_SOUND, Value{"Pop"});
    settings.registerDefault(keys::TIME_MODE, Value{true});
    if (variant == variants::cursorHider) settings.registerDefault(keys::STAY_HIDDEN, Value{false});
    if (variant == variants::barrier)
        settings.registerDefault(keys::OTHERS_DARK, Value{std::int64_t{15}});
}

void AppDelegate::firstTime() {
    services.statusItem.popUpMenu();
}

} // namespace palisor
