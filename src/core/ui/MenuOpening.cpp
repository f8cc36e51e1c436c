#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// Opening the status menu: by a click, by itself after a mode was switched on, and not at all by a
// right click, which switches the product instead.

namespace palisor {

namespace {

constexpr double emptyMenuTime = 0.3;

// Menus open by themselves from this number on.
constexpr int firstThatOpensByItself = 1012;

/// 10.14 gives 1014. Releases from 11 on give three digits and count as older; that is intended.
int versionNumber(platform::Version version) {
    return std::stoi(std::to_string(version.major) + std::to_string(version.minor));
}

} // namespace

void AppDelegate::menuWillOpen(Menu&) {
    const bool leftClick = services.application.currentEvent().buttonNumber == 0;
    if (leftClick) {
        if (versionNumber(services.system.servicesVersion()) < firstThatOpensByItself)
            services.statusItem.popUpMenu();
        return;
    }
    enableDisable();
    mainMenu->items.clear();
    schedule<&AppDelegate::enableMainMenu>(emptyMenuTime, false, "enableMainMenu");
}

void AppDelegate::enableMainMenu() {
    updateMenuItems();
}

void AppDelegate::openMenu() {
    services.statusItem.popUpMenu();
    if (IDApp() == variants::cursorHider && services.settings.integerForKey(keys::HOT_BOUNDS) == 1)
        highLightBoders(1);
}

/// A status-bar program should not keep the keyboard that it took by starting.
void AppDelegate::dismissFocus() {
    if (services.system.servicesVersion() < platform::firstWithGlobalMonitor) return;
    services.focus.openNothingWith("Dock");
}

} // namespace palisor
