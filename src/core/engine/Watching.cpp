#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "app/Variants.h"
#include "engine/HotEdges.h"

#include <algorithm>
#include <cmath>

// What a desktop has to tell that does not tell of every motion, and what it has to do by itself.

namespace palisor {

using platform::PointerWatch;

namespace {

// A cursor that has left a strip of this width is back inside.
constexpr double stripWidth = 2;

/// The pixels of a side from one corner to the other, without the corners that are not armed.
struct Stretch {
    double from, to;

    /// `last` is the end that the second corner is measured from.
    Stretch(double begin, double end, double last, double corner, const CheckBox& near,
            const CheckBox& far)
        : from(near.state != 0 ? begin : std::ceil(begin + corner)),
          to(far.state != 0 ? end : std::min(end, std::floor(last - corner) + 1)) {}
    double length() const { return to - from; }
};

} // namespace

void AppDelegate::tellWhatIsWatched() {
    if (!mainMenu) return;
    if (IDApp() == variants::cursorHider) {
        const auto& settings = services.settings;
        std::optional<double> rest;
        if (isActive() && settings.boolForKey(keys::TIME_MODE))
            rest = std::max(0.1, static_cast<double>(settings.integerForKey(keys::SCHEDULE)));
        services.cursor.hideAfterRest(rest);
    }
    services.input.watch(pointerWatch());
}

PointerWatch AppDelegate::pointerWatch() const {
    PointerWatch watch;
    if (!isActive()) return watch;
    const auto& settings = services.settings;
    switch (IDApp()) {
    case variants::crossHair:
        watch.motion = true;
        return watch;
    case variants::cursorHider:
        watch.motion = !services.cursor.hidesAtRest() && settings.boolForKey(keys::TIME_MODE);
        if (!settingIsOne(keys::HOT_BOUNDS)) return watch;
        break;
    case variants::desktopSwitcher:
    case variants::wrapAround:
        watch.pushes = settings.boolForKey(keys::VELOCITY_OPTION);
        break;
    default:
        watch.pushes = settings.boolForKey(keys::VELOCITY_OPTION);
        if (watch.pushes) watch.crossing = calculatedSettedDistance();
        return watch;
    }
    for (const platform::Screen& screen : services.displays.screens())
        addHotStrips(watch, topLeftFrame(screen));
    return watch;
}

// Where `armedEdgeAt` finds an edge, but that of a side which only some other screen bounds.
void AppDelegate::addHotStrips(PointerWatch& watch, const Rect& screen) const {
    const bool ownEdges = IDApp() == variants::cursorHider;
    const double right = screen.x + screen.width, bottom = screen.y + screen.height;
    const auto add = [&watch](const CheckBox& side, const Rect& strip) {
        if (side.state != 0 && strip.width > 0 && strip.height > 0) watch.strips.push_back(strip);
    };
    const double high = screen.height / cornerDivisor, wide = screen.width / cornerDivisor;
    if (ownEdges || static_cast<float>(screen.x) <= MIN_X) {
        const Stretch along(screen.y, bottom, bottom, high, butangolo1, butangolo4);
        add(butlato1, {screen.x, along.from, stripWidth, along.length()});
    }
    if (ownEdges || static_cast<float>(right) >= MAX_W) {
        const Stretch along(screen.y, bottom, bottom, high, butangolo2, butangolo3);
        add(butlato3, {right - stripWidth, along.from, stripWidth, along.length()});
    }
    const double last = ownEdges ? right : static_cast<double>(MAX_W);
    const Stretch upper(screen.x, right, last, wide, butangolo1, butangolo2);
    add(butlato2, {upper.from, screen.y, upper.length(), stripWidth});
    const Stretch lower(screen.x, right, last, wide, butangolo4, butangolo3);
    add(butlato4, {lower.from, bottom - stripWidth, lower.length(), stripWidth});
}

} // namespace palisor
