#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "ui/Overlay.h"

#include <algorithm>
#include <utility>

// The windows that darken the monitors on which the cursor is not.

namespace palisor {

void AppDelegate::updatePalisor() {
    detectCurrentScreen();
    holdOrRelease();
}

void AppDelegate::holdOrRelease() {
    if (isActive()) {
        services.pointer.holdInside(switchedScreenRect);
        otherMonitorsDark();
        tellCrossing(std::exchange(heldScreen, switchedScreen), switchedScreen);
    } else {
        services.pointer.holdInside(std::nullopt);
        otherMonitorsLight();
    }
    tellChanged();
}

void AppDelegate::otherMonitorsDark() {
    otherMonitorsLight();
    const auto screens = services.displays.screens();
    const int variant = IDApp();
    AWindowsDark.emplace().reserve(screens.size());
    for (const platform::Screen& screen : screens) {
        // A cursor hider marks the borders of every monitor, the current one too.
        if (screen.id == switchedScreen && variant != variants::cursorHider) continue;
        auto window = coveringWindow(screen, variant);
        window->makeKeyAndOrderFront();
        window->setIgnoresMouseEvents(false);
        AWindowsDark->push_back(std::move(window));
    }
    // The new windows became key; the user's application gets the keyboard back.
    services.focus.activateFrontmostApplication();
}

std::unique_ptr<platform::Window> AppDelegate::coveringWindow(const platform::Screen& screen,
                                                              int variant) {
    platform::WindowStyle style{.kind = platform::WindowKind::dark,
                                .frame = screen.frame,
                                .level = overlay::level,
                                .behaviour = overlay::behaviour};
    if (variant == variants::cursorHider) {
        style.image = "hotBordersModeOn";
    } else {
        style.alpha = darkness();
        style.background = platform::WindowColour::black;
        style.opaque = true;
    }
    return services.windows.create(style);
}

float AppDelegate::darkness() const {
    return static_cast<float>(services.settings.integerForKey(keys::OTHERS_DARK)) /
           keys::darkestLevel;
}

void AppDelegate::otherMonitorsLight() {
    if (!AWindowsDark) return;
    for (const auto& window : *AWindowsDark)
        window->orderOut();
    AWindowsDark->clear();
}

/// A cursor hider's windows are frames, and those of a level of nothing cannot be seen.
bool AppDelegate::isDark(const platform::Screen& screen) const {
    if (!AWindowsDark || IDApp() == variants::cursorHider || darkness() <= 0) return false;
    return std::ranges::any_of(*AWindowsDark,
                               [&](const auto& window) { return window->frame() == screen.frame; });
}

void AppDelegate::updateShadow() {
    tellChanged();
    if (!AWindowsDark) return;
    for (const auto& window : *AWindowsDark)
        window->setAlpha(darkness());
}

} // namespace palisor
