#include "app/AppDelegate.h"
#include "app/Keys.h"

// The user's own shortcut for switching the product on and off.

namespace palisor {

namespace {

// Shift, Control, Option and Command.
constexpr int modifierFlags = 0x1e0000;

} // namespace

/// A shortcut is usable when it has a modifier and shortcuts are not switched off.
bool AppDelegate::hasUsableShortcut() const {
    const auto& settings = services.settings;
    if (settings.object(keys::customShortcutEnabled) != nullptr &&
        !settings.boolForKey(keys::customShortcutEnabled))
        return false;
    const platform::Value* stored = settings.object(keys::customShortcut);
    if (stored == nullptr) return false;
    const auto* shortcut = std::get_if<platform::Dictionary>(&stored->held);
    if (shortcut == nullptr) return false;
    const auto flags = shortcut->find("modifierFlags");
    return flags != shortcut->end() && (platform::intValue(flags->second) & modifierFlags) != 0;
}

} // namespace palisor
