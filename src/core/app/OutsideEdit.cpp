#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

#include <algorithm>

// What is on the screen after settings were changed by other means than the program's own windows:
// in the settings file, or by somebody who asked for it. Most settings are read at each use; these
// are the ones that have left something behind.

namespace palisor {

void AppDelegate::settingsEdited(const std::set<std::string, std::less<>>& edited) {
    if (!mainMenu) return;
    const auto isEdited = [&edited](std::string_view key) { return edited.contains(key); };
    const int variant = IDApp();

    if (isEdited(keys::ATTIVO)) {
        const bool wasFreed = isFreed();
        forgetFreeing();
        if (isActive() || !wasFreed) activityChanged();
    } else if (variant == variants::barrier && isEdited(keys::OTHERS_DARK)) {
        updateShadow();
    }
    static constexpr keys::Key hiding[] = {keys::STAY_HIDDEN, keys::HOT_BOUNDS, keys::TIME_MODE};
    if (variant == variants::cursorHider && !isEdited(keys::ATTIVO) &&
        std::ranges::any_of(hiding, isEdited))
        resetCursor();

    setUpHotBorderButtons(variant);
    updateMenuSoon();
}

// The barrier can be left only by those who have a way back, and a cursor that stays hidden be
// shown again.
bool AppDelegate::changeSetting(std::string_view key, std::optional<platform::Value> value) {
    if (key == keys::customShortcut && !value && IDApp() == variants::barrier) return false;
    if (key == keys::STAY_HIDDEN && value && platform::boolValue(*value) && !hasUsableShortcut())
        return false;
    if (key == keys::CHECK_1 && value) {
        const int state = platform::boolValue(*value) ? 1 : 0;
        presscheck(CheckBox{.tag = tags::startAtLogin, .state = state});
        updateMenuSoon();
        return true;
    }
    auto& settings = services.settings;
    const auto read = [&] {
        const platform::Value* now = settings.object(key);
        return now == nullptr ? std::nullopt : std::optional(*now);
    };
    const auto before = read();
    if (value)
        settings.set(key, *std::move(value));
    else
        settings.remove(key);
    settings.synchronize();
    const bool endsFreeing = key == keys::ATTIVO && isFreed();
    if (read() != before || endsFreeing) settingsEdited({std::string(key)});
    return true;
}

/// What is on the screen follows from the product's being on or off now. Unlike `enableDisable` it
/// asks nobody anything, and a single monitor does not end the program.
void AppDelegate::activityChanged() {
    switch (IDApp()) {
    case variants::barrier:
        applicationDidChangeScreenParameters();
        break;
    case variants::keepAwake:
        keepAwakeWhileActive();
        break;
    case variants::calendarAlerts:
        lookAfterCalendarWhileActive();
        break;
    case variants::crossHair:
    case variants::cursorHider:
        resetCursor();
        break;
    default:
        break;
    }
}

void AppDelegate::updateMenuSoon() {
    // By a timer, since those wait for the end of an open menu.
    schedule<&AppDelegate::updateMenuItems>(0, false, "updateMenuItems");
}

} // namespace palisor
