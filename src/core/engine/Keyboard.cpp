#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// CTRL+ALT+CMD: which of the three keys are held, and what holding all of them does.

namespace palisor {

void AppDelegate::onKeyPressed(std::uint16_t keyCode) {
    namespace codes = platform::keyCodes;
    if (!services.settings.boolForKey(keys::CTRLALTCMD)) return;
    // The left-hand keys only.
    if (keyCode != codes::command && keyCode != codes::option && keyCode != codes::control) return;

    // A change event does not say which way the key went: each one turns its entry over.
    const std::string key = std::to_string(keyCode);
    if (proKeys.erase(key) == 0) proKeys.emplace(key, "YES");

    if (combo) comboPressedReleased(false);
    const bool allHeld = proKeys.contains("55") && proKeys.contains("58") && proKeys.contains("59");
    if (allHeld) comboPressedReleased(true);
}

void AppDelegate::comboPressedReleased(bool held) {
    if (!services.settings.boolForKey(keys::CTRLALTCMD)) return;
    combo = held;
    switch (IDApp()) {
    case variants::barrier: // held to switch off, which a freed one is already
        if (isFreed()) return;
        if (isActive() == combo) enableDisable();
        return;
    case variants::desktopSwitcher: // held to switch on
    case variants::wrapAround:
        if (isActive() != combo) enableDisable();
        return;
    case variants::cursorHider: // released to hide
        if (combo) return;
        if (!isActive()) {
            services.log.write("asdasdasd");
            enableDisable();
        }
        hidecursor();
        return;
    default:
        return;
    }
}

} // namespace palisor
