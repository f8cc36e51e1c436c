#include "pictures/Stage.h"

#include <QtGlobal>
#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace pictures {

using desktop::flag;
using desktop::number;
using desktop::text;
using support::Area;
using support::Picture;

namespace key = support::key;

namespace {

constexpr const char* oneMonitor = "760x420+0+0";
constexpr const char* twoMonitors = "660x420+0+0,420x340+660+40";

std::string themeOf(bool dark) {
    return dark ? "Greybird-dark" : "Greybird";
}

Area around(const Area& window, const Area& monitor) {
    constexpr int margin = 24;
    const int left = std::max(window.x - margin, monitor.x);
    const int top = std::max(window.y - margin, monitor.y);
    return {left, top, std::min(window.x + window.width + margin, monitor.x + monitor.width) - left,
            std::min(window.y + window.height + margin, monitor.y + monitor.height) - top};
}

} // namespace

const std::vector<Scene>& scenes() {
    static const std::vector<Scene> all{
        {.name = "palisor",
         .product = "palisor",
         .layout = twoMonitors,
         .settings = {{"VELOCITY_OPTION", flag(true)}, {"OTHERS_DARK", number(12)}},
         .submenu = 3},
        {.name = "vellumor",
         .product = "vellumor",
         .layout = oneMonitor,
         .settings = {{"SCHEDULE", text("5")}, {"TIME_MODE", flag(true)}},
         .submenu = 5},
        {.name = "orbisant", .product = "orbisant", .layout = oneMonitor, .submenu = 3},
        {.name = "quenlow", .product = "quenlow", .layout = oneMonitor, .submenu = 3},
        {.name = "stay-awake", .product = "stay-awake", .layout = oneMonitor},
        {.name = "crosshair", .product = "crosshair", .layout = oneMonitor},
        {.name = "calendar-alerts", .product = "calendar-alerts", .layout = oneMonitor},
        {.name = "shortcut",
         .product = "palisor",
         .layout = twoMonitors,
         .settings = {{"customShortcut", ""}},
         .isOfAWindow = true},
        {.name = "welcome",
         .product = "palisor",
         .layout = "760x560+0+0,420x340+760+40",
         .settings = {{"CHECK_0", text("0")}, {"CHECK_1", text("1")}},
         .isOfAWindow = true},
    };
    return all;
}

Stage::Stage(const Scene& scene, bool dark)
    : Product(scene.layout),
      backdrop(
          (desktop.startWindowManager("openbox"), desktop.startCompositor(), desktop.display()),
          layout, dark),
      settingsManager(desktop.display(), {{"Net/ThemeName", themeOf(dark)}}),
      reader(desktop),
      showsWindow(scene.isOfAWindow) {
    startTray(dark);
    hand.moveTo(monitor(0).width / 3, monitor(0).height * 2 / 3);
    std::vector<std::string> options;
    if (scene.product == "calendar-alerts") options = {"--calendar", desktop.home().string()};
    spawn({.product = scene.product, .more = scene.settings, .options = options});
    if (scene.isOfAWindow)
        showWindow();
    else
        showMenu(scene);
}

// Where there is none, the menu opens at the cursor.
void Stage::startTray(bool dark) {
    if (desktop.spawn("sh", {"-c", "command -v trayer"})->wait() != 0) return;
    constexpr int rim = 3;
    tray =
        desktop.spawn("trayer", {"--edge",         "top",
                                 "--align",        "right",
                                 "--margin",       "8",
                                 "--distancefrom", "top",
                                 "--distance",     std::to_string(rim),
                                 "--widthtype",    "request",
                                 "--height",       std::to_string(Backdrop::panelHeight - 2 * rim),
                                 "--transparent",  "true",
                                 "--alpha",        "0",
                                 "--tint",         Backdrop::panelColour(dark)});
}

// A dark monitor may be as small as a menu.
bool Stage::menusAre(std::size_t count) {
    return eye.waitUntilSeen([&] {
        auto all = menus();
        for (const support::Monitor& each : layout)
            std::erase(all, each.area);
        return all.size() == count;
    });
}

// By a second start it opens where the icon is. A program that has just started tells no screen
// reader anything yet.
void Stage::openToldMenu() {
    constexpr int tries = 10;
    constexpr support::milliseconds soon(2'000);
    for (int i = 0; i < tries; ++i) {
        if (run()->wait() != 0 || !menusAre(1)) break;
        if (reader.waitUntil([&] { return reader.focus().has_value(); }, soon)) return;
        hand.type(key::escape);
        if (!menusAre(0)) break;
    }
    throw std::runtime_error("no menu is told: " + program->errors());
}

void Stage::showMenu(const Scene& scene) {
    // The icon is what differs from the panel at its end; a tray that has just come does, too, as a
    // whole.
    const Area end{monitor(0).width - 40, 0, 40, Backdrop::panelHeight};
    const auto isThere = [&] {
        const Picture seen = eye.picture(end);
        const auto different = std::ranges::count_if(seen.pixels, [&](const auto& pixel) {
            return std::abs(pixel.green - seen.pixels.front().green) > 60;
        });
        return different > 20 && different < static_cast<long>(seen.pixels.size()) / 2;
    };
    if (!desktop.isOnTheBusSoon(identifier()) || (tray && !eye.waitUntilSeen(isThere)))
        throw std::runtime_error("there is no icon: " + program->errors());
    openToldMenu();
    for (int step = 0; step < std::max(scene.submenu, 1); ++step)
        hand.type(key::down);
    if (!reader.waitUntil([&] { return reader.aroundFocus().size() > 3; }))
        throw std::runtime_error("the menu is not told");
    if (scene.submenu == 0) return hear(reader.aroundFocus());
    const auto entry = reader.focus()->line();
    hand.type(key::right);
    if (!menusAre(2) ||
        !reader.waitUntil([&] { return reader.focus() && reader.focus()->line() != entry; }))
        throw std::runtime_error("the submenu did not open");
    hear(reader.aroundFocus());
}

std::optional<Area> Stage::window() const {
    for (const support::SeenWindow& each : eye.windows())
        if (each.mapped && !each.overrideRedirect && !each.inputOnly && each.area.width >= 200)
            return each.area;
    return std::nullopt;
}

void Stage::showWindow() {
    if (!reader.waitUntil([&] { return window() && !reader.windows().empty(); }))
        throw std::runtime_error("no window came: " + program->errors());
    hear(reader.windows());
}

// The window manager puts a window where it belongs after it is there.
Picture Stage::picture() const {
    const auto shown = showsWindow ? window() : std::nullopt;
    return eye.picture(shown ? around(*shown, monitor(0)) : support::boundsOf(layout));
}

// Which window is active the window manager decides in its own time, and what describes an entry
// some toolkits make of its tool tip.
void Stage::hear(const std::vector<support::Heard>& lines) {
    for (support::Heard each : lines) {
        each.states.erase("active");
        each.states.erase("focused");
        if (each.role == "menu item") each.description.clear();
        told += each.line() + "\n";
    }
}

std::string Stage::toolkit() const {
    const auto match = desktop.spawn("fc-match", {"sans"});
    match->wait();
    const std::string font = match->output();
    return "Qt " + std::string(qVersion()) + ", " + font.substr(0, font.find(':')) +
           (tray ? "" : ", without a tray");
}

bool Stage::comesToLookLike(const Picture& other) const {
    return support::waitUntil([&] { return areAlike(picture(), other); },
                              support::milliseconds(10'000));
}

Picture Stage::settledPicture() const {
    constexpr int often = 100;
    Picture last = picture();
    int alike = 0;
    support::waitUntil([&] {
        const Picture now = picture();
        alike = areAlike(now, last) ? alike + 1 : 0;
        last = now;
        return alike == often;
    });
    return last;
}

bool areAlike(const Picture& one, const Picture& other) {
    constexpr int seen = 40;            ///< of 255, in one channel
    constexpr double fewPixels = 0.002; ///< of all
    if (one.pixels.size() != other.pixels.size() || one.area.width != other.area.width)
        return false;
    long different = 0;
    for (std::size_t i = 0; i < one.pixels.size(); ++i) {
        const auto &a = one.pixels[i], &b = other.pixels[i];
        if (std::abs(a.red - b.red) > seen || std::abs(a.green - b.green) > seen ||
            std::abs(a.blue - b.blue) > seen)
            ++different;
    }
    return static_cast<double>(different) <= fewPixels * static_cast<double>(one.pixels.size());
}

} // namespace pictures
