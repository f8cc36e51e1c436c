#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "util/Format.h"

// The shortcut that switches the product from anywhere, which the user chooses, and the fixed one,
// which is claimed and does nothing.

namespace palisor {

using platform::Shortcut;

namespace {

constexpr double menuRefreshDelay = 0.1;

constexpr Shortcut commandF2{120, Shortcut::command};

} // namespace

void AppDelegate::initGlobalShortCutForEnableDisable() {
    auto& settings = services.settings;
    settings.registerDefault(keys::hardcodedShortcutEnabled, platform::Value{true});
    settings.registerDefault(keys::customShortcutEnabled, platform::Value{true});
    for (const std::string_view key :
         {keys::customShortcut, keys::customShortcutEnabled, keys::hardcodedShortcutEnabled}) {
        settings.observe(key, [this, key] { observeValueForKeyPath(key); });
        observeValueForKeyPath(key); // the value at the start counts as a change
    }
}

void AppDelegate::observeValueForKeyPath(std::string_view keyPath) {
    const bool value = services.settings.boolForKey(keyPath);
    if (keyPath == keys::customShortcutEnabled)
        setCustomShortcutEnabled(value);
    else if (keyPath == keys::hardcodedShortcutEnabled)
        setHardcodedShortcutEnabled(value);
    // Each change has a timer of its own.
    schedule<&AppDelegate::updateMenuItems>(menuRefreshDelay, false, "updateMenuItems");
}

void AppDelegate::setCustomShortcutEnabled(bool enabled) {
    if (enabled)
        services.hotKeys.bindShortcut(keys::customShortcut, [this] { enableDisable(); });
    else
        services.hotKeys.breakBinding(keys::customShortcut);
}

void AppDelegate::setHardcodedShortcutEnabled(bool enabled) {
    if (enabled)
        services.hotKeys.registerShortcut(commandF2, [] {});
    else
        services.hotKeys.unregisterShortcut(commandF2);
}

/// The barrier can be left only by those who have a way back, so it asks until there is one.
void AppDelegate::showShortcutPopup() {
    do {
        alertShortCut = {.message = services.bundle.localizedString("SHORTCUT"),
                         .buttons = {services.bundle.localizedString("DONE")},
                         .accessory = std::string(accessories::shortcutRecorder)};
        const auto instructions = [this](std::string_view key) {
            return formatted(services.bundle.localizedString(key), services.bundle.displayName());
        };
        if (IDApp() == variants::barrier)
            alertShortCut.informative = instructions("SHORTCUT_INSTRUCTIONS_PALISOR");
        if (IDApp() == variants::cursorHider)
            alertShortCut.informative = instructions("SHORTCUT_INSTRUCTIONS");
        services.application.activateIgnoringOtherApps();
        services.alerts.runModal(alertShortCut);
    } while (IDApp() == variants::barrier && !hasUsableShortcut());
}

/// A chosen shortcut is usable when it has a modifier and the recorder is switched on.
bool AppDelegate::hasUsableShortcut() const {
    const auto shortcut = Shortcut::fromValue(services.settings.object(keys::customShortcut));
    return shortcut && (shortcut->modifierFlags & Shortcut::modifiers) != 0 &&
           services.settings.boolForKey(keys::customShortcutEnabled);
}

std::string AppDelegate::shortcutText() const {
    const auto shortcut = Shortcut::fromValue(services.settings.object(keys::customShortcut));
    if (!shortcut) return {};
    return services.hotKeys.modifierFlagsString(*shortcut) +
           services.hotKeys.keyCodeString(*shortcut);
}

} // namespace palisor
