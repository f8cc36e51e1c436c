#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"

// The extent of the desktop, and the screen that holds the cursor.

namespace palisor {

namespace {

constexpr float beyondAnyScreen = 999999.0F;

// The system's own words; a table of texts may have others for them.
constexpr std::string_view oneMonitorOnly =
    "As described on the Mac App Store, the app is useful for multi monitor users only and without "
    "Mirror Displays mode.";

double heightOfFirst(std::span<const platform::Screen> screens) {
    return screens.empty() ? 0 : screens.front().frame.height;
}

} // namespace

Rect AppDelegate::topLeftFrame(const platform::Screen& screen) const {
    const Rect& frame = screen.frame;
    const double top = heightOfFirst(services.displays.screens()) - frame.height - frame.y;
    return {frame.x, top, frame.width, frame.height};
}

Rect AppDelegate::frameOf(ScreenId screen) const {
    return services.displays.frame(screen).value_or(Rect{});
}

void AppDelegate::updateScreensSize() {
    MIN_X = beyondAnyScreen;
    MAX_X = -beyondAnyScreen;
    MIN_Y = beyondAnyScreen;
    MAX_Y = -beyondAnyScreen;

    const auto screens = services.displays.screens();
    for (const platform::Screen& screen : screens) {
        const Rect frame = topLeftFrame(screen);
        if (MIN_X > frame.x) MIN_X = static_cast<float>(frame.x);
        if (frame.x > MAX_X) {
            MAX_X = static_cast<float>(frame.x);
            screenMax = screen.id;
        }
        if (MIN_Y > frame.y) MIN_Y = static_cast<float>(frame.y);
        if (frame.y > MAX_Y) {
            MAX_Y = static_cast<float>(frame.y);
            screenMaxH = screen.id;
        }
    }

    const Rect rightmost = frameOf(screenMax);
    MAX_W = static_cast<float>(rightmost.x + rightmost.width);
    MAX_H = static_cast<float>(IDApp() == variants::crossHair
                                   ? heightOfFirst(screens)
                                   : frameOf(services.displays.mainScreen()).height);
    tellWhatIsWatched();
}

void AppDelegate::detectCurrentScreen() {
    cordmouse = getCurrentMouseLocation();
    for (const platform::Screen& screen : services.displays.screens()) {
        // No early end: of mirrored screens the last one counts.
        const Rect frame = topLeftFrame(screen);
        if (!frame.contains(cordmouse)) continue;
        switchedScreenRect = frame;
        switchedScreen = screen.id;
        lastCoord = cordmouse;
    }
}

void AppDelegate::noSecondaryMonitor() {
    setAndSynchronize(keys::ATTIVO, platform::Value{false});
    services.alerts.runModal({.message = services.bundle.localizedString("WARNING"),
                              .informative = services.bundle.localizedString(oneMonitorOnly),
                              .buttons = {services.bundle.localizedString("OK")}});
    quit();
}

void AppDelegate::applicationDidChangeScreenParameters() {
    tellChanged();
    if (IDApp() != variants::barrier) return;
    if (services.displays.screens().size() > 1) {
        updatePalisor();
        return;
    }
    detectCurrentScreen();
    services.pointer.holdInside(std::nullopt); // there is nowhere to go
    otherMonitorsLight();
}

} // namespace palisor
