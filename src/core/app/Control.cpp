#include "app/Control.h"

#include "app/AppDelegate.h"
#include "app/Variants.h"

#include <algorithm>
#include <cmath>

// What can be seen and done from outside, and who is told of it.

namespace palisor {

namespace {

/// Empty for one that is not attached.
std::string_view nameOf(const platform::Displays& displays, ScreenId screen) {
    for (const platform::Screen& one : displays.screens())
        if (one.id == screen) return one.name;
    return {};
}

} // namespace

void AppDelegate::tellChanged() const {
    if (watcher != nullptr) watcher->changed();
}

/// A cursor whose monitor has gone has not crossed.
void AppDelegate::tellCrossing(ScreenId from, ScreenId to) const {
    if (watcher == nullptr || from == to) return;
    const auto before = nameOf(services.displays, from);
    if (!before.empty()) watcher->crossed(before, nameOf(services.displays, to));
}

namespace control {

State state(const AppDelegate& app) {
    const auto& displays = app.services.displays;
    const auto screens = displays.screens();
    const bool holds =
        app.IDApp() == variants::barrier && app.mainMenu && app.isActive() && screens.size() > 1;
    State seen{.active = app.services.settings.boolForKey(keys::ATTIVO),
               .held = {},
               .freed = static_cast<int>(std::ceil(app.freedFor())),
               .monitors = {},
               .shortcut = app.hasUsableShortcut() ? app.shortcutText() : std::string()};
    for (const platform::Screen& screen : screens) {
        const bool isHeld = holds && screen.id == app.switchedScreen;
        if (isHeld) seen.held = screen.name;
        seen.monitors.push_back({.name = screen.name,
                                 .frame = app.topLeftFrame(screen),
                                 .scale = screen.scale,
                                 .primary = screen.id == displays.mainScreen(),
                                 .held = isHeld,
                                 .dark = app.isDark(screen)});
    }
    return seen;
}

void setActive(AppDelegate& app, bool on) {
    if (!app.mainMenu) return;
    // Freed, it is off already, and stays so.
    if (!on && app.isFreed())
        app.changeSetting(keys::ATTIVO, platform::Value{false});
    else if (app.isActive() != on)
        app.enableDisable();
}

bool canSwitchOn(const AppDelegate& app) {
    return app.IDApp() != variants::barrier || app.services.displays.screens().size() > 1;
}

void free(AppDelegate& app, double seconds) {
    app.freeFor(seconds);
}

bool crossTo(AppDelegate& app, std::string_view monitor) {
    const auto screens = app.services.displays.screens();
    const auto found = std::ranges::find(screens, monitor, &platform::Screen::name);
    if (!app.mainMenu || found == screens.end()) return false;
    app.crossToScreen(*found);
    return true;
}

void watch(AppDelegate& app, Watcher* watcher) {
    app.watch(watcher);
}

} // namespace control

} // namespace palisor
