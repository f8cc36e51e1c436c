#include "app/AppDelegate.h"
#include "ui/Overlay.h"

// The cross-hair: half-transparent red windows that let every click through.

namespace palisor {

namespace {

constexpr Rect smallMarker{0, 0, 2, 2};

platform::WindowStyle markerStyle(Rect frame, std::optional<Rect> seenAt = {}) {
    return {.kind = platform::WindowKind::marker,
            .frame = frame,
            .alpha = 0.5F,
            .level = overlay::level,
            .behaviour = overlay::behaviour,
            .background = platform::WindowColour::red,
            .seenAt = seenAt};
}

} // namespace

std::unique_ptr<platform::Window> AppDelegate::initwindowCursor2(const platform::Screen& screen) {
    auto window = services.windows.create(
        markerStyle(screen.frame, lineAcross(screen.frame, getCurrentMouseLocation())));
    initwindowCursor(*window);
    return window;
}

void AppDelegate::initwindowCursor(platform::Window& window) {
    window.makeKeyAndOrderFront();
    window.setIgnoresMouseEvents(true);
}

Rect AppDelegate::lineAcross(const Rect& screen, Point cursor) const {
    return {screen.x, MAX_H - cursor.y - 1, screen.width, 2};
}

Rect AppDelegate::uprightLine(Point cursor) const {
    return {cursor.x - 1, -MAX_H, 2, 2 * static_cast<double>(MAX_H)};
}

/// Their frames are those of the screens until the cursor moves, and no event tells of that while a
/// window of the program is active; so they are seen as the lines that they will be from then on.
void AppDelegate::createMarkers() {
    aWindowCursorX.emplace();
    for (const platform::Screen& screen : services.displays.screens())
        aWindowCursorX->push_back(initwindowCursor2(screen));
    // The height of its frame is that of two first screens, and others may be above or be taller.
    platform::WindowStyle upright =
        markerStyle(smallMarker, uprightLine(getCurrentMouseLocation()));
    upright.fullHeight = true;
    windowCursorY = services.windows.create(upright);
    windowCursorX = services.windows.create(markerStyle(smallMarker));
    initwindowCursor(*windowCursorY);
    initwindowCursor(*windowCursorX);
    letMarkersReplaceCursor();
}

/// Switched off, the product leaves the desktop as it would be without it. The markers stay on
/// screen and the requests to hide the cursor are as many as before; they are not in force. So it
/// is on a desktop that does not tell where the cursor is, where nothing could follow it.
void AppDelegate::letMarkersReplaceCursor() {
    const bool replaces = isActive() && services.input.tellsMotion();
    services.cursor.setHidingInForce(replaces);
    services.windows.letMarkersBeSeen(replaces);
}

} // namespace palisor
