#include "sway/SwaySession.h"

#include <filesystem>
#include <tuple>

// What the program looks like beside a bar, light and dark, on a monitor of whole and of broken
// scale. Where the environment names a folder in PALISOR_PICTURES, each is kept there.

namespace desktop {
namespace {

using support::Area;
using support::Colour;
using support::Picture;

constexpr Colour white{0xff, 0xff, 0xff};
constexpr int barHeight = 30; ///< layout pixels
constexpr int width = 1200, height = 800;

struct Look {
    const char* product;
    Entries more{};
    std::vector<std::uint32_t> keys{}; ///< in the menu, to what else there is to see
};

void PrintTo(const Look& look, std::ostream* out) {
    *out << look.product;
}

/// All is told in pixels of the first monitor, which `scale` of them make one of the layout's.
class SwayLook : public Sway {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateSway::missing()) GTEST_SKIP() << *reason;
        if (!std::filesystem::exists("/usr/bin/waybar")) GTEST_SKIP() << "waybar is not installed";
    }
    void beginScaled(double by) {
        scale = by;
        keys.reset();
        bar.reset();
        portal.reset();
        const auto pixels = [by](int of) { return std::to_string(static_cast<int>(of * by)); };
        begin({.layout = "1200x800+0+0,800x600+1200+0",
               .configuration = "output HEADLESS-1 mode " + pixels(width) + "x" + pixels(height) +
                                " scale " + std::to_string(by)});
        keys.emplace(*sway);
        hand->moveTo(600, 400);
    }
    void startPortal(const std::vector<std::string>& arguments) {
        portal = sway->spawn(PORTAL, arguments);
        ASSERT_TRUE(portal->waitForText("ready")) << portal->errors();
    }
    void wishForDarkInFile() const {
        const std::string folder = sway->configFolder() + "/gtk-3.0";
        std::filesystem::create_directories(folder);
        std::ofstream(folder + "/settings.ini") << "[Settings]\ngtk-theme-name=Adwaita-dark\n";
    }
    void startBar(bool dark, const std::string& position = "top") {
        const std::string folder = sway->configFolder();
        std::ofstream(folder + "/bar.json")
            << R"({"layer": "top", "height": 30, "output": "HEADLESS-1", "position": ")" << position
            << R"(",)"
               R"( "modules-left": ["sway/workspaces"], "modules-right": ["tray"],)"
               R"( "tray": {"icon-size": 22, "spacing": 8}})";
        std::ofstream(folder + "/bar.css")
            << "* { min-height: 0; border: none; border-radius: 0; font-family: sans-serif; }"
            << (dark ? "window#waybar { background: #2b303b; color: #ffffff; }"
                     : "window#waybar { background: #e4e4e4; color: #202020; }")
            << "#tray { padding: 0 10px; }"
            // The icon's, which would be taken for a part of the menu.
            << "tooltip, tooltip * { background: none; color: transparent; border: none;"
               " box-shadow: none; }";
        bar = sway->spawn("waybar", {"-c", folder + "/bar.json", "-s", folder + "/bar.css"});
    }
    int pixels(int ofLayout) const { return static_cast<int>(ofLayout * scale); }

    /// Where the icon is in the bar: what differs from the bar's ground at its right end.
    std::optional<Area> icon() const {
        const Picture seen = sway->picture(1);
        const Colour ground = seen.at(seen.area.width - 2, pixels(barHeight) / 2);
        if (ground == white) return {};
        Area found{seen.area.width, pixels(barHeight), 0, 0};
        int right = 0, bottom = 0;
        for (int y = 0; y < pixels(barHeight); ++y)
            for (int x = seen.area.width - pixels(60); x < seen.area.width; ++x)
                if (seen.at(x, y) != ground) {
                    found.x = std::min(found.x, x);
                    found.y = std::min(found.y, y);
                    right = std::max(right, x + 1);
                    bottom = std::max(bottom, y + 1);
                }
        if (right <= found.x) return {};
        found.width = right - found.x;
        found.height = bottom - found.y;
        return found;
    }
    /// What lies over the monitor's white below the bar.
    std::optional<Area> menu() const {
        const Picture seen = sway->picture(1);
        int left = seen.area.width, right = -1, top = seen.area.height, bottom = -1;
        for (int y = pixels(barHeight) + 1; y < seen.area.height; ++y)
            for (int x = 0; x < seen.area.width; ++x)
                if (seen.at(x, y) != white) {
                    left = std::min(left, x);
                    right = std::max(right, x + 1);
                    top = std::min(top, y);
                    bottom = std::max(bottom, y + 1);
                }
        if (right - left < pixels(100) || bottom - top < pixels(100)) return {};
        return Area{left, top, right - left, bottom - top};
    }
    double brightness(const Area& area) const {
        const Picture seen = sway->picture(1);
        double sum = 0;
        for (int y = area.y; y < area.y + area.height; ++y)
            for (int x = area.x; x < area.x + area.width; ++x) {
                const Colour& pixel = seen.at(x, y);
                sum += (pixel.red + pixel.green + pixel.blue) / 3.0;
            }
        return sum / (area.width * area.height);
    }
    bool isPainted(bool dark) const {
        const auto area = menu();
        if (!area) return false;
        const double mean = brightness(*area);
        return dark ? mean < 80 && mean > 32 : mean > 180 && mean < 254;
    }
    void openMenu() {
        ASSERT_TRUE(waitUntil([&] { return icon().has_value(); }))
            << program->errors() << bar->errors();
        const Area at = icon().value();
        // Clicks in turns at its sides: two at one place, soon after each other, are a double
        // click.
        const int part = ++clicks % 2 == 0 ? 3 : 1;
        hand->moveTo(static_cast<int>((at.x + part * at.width / 4) / scale), barHeight / 2);
        hand->relative(1, 0);
        hand->pressButton();
        hand->releaseButton();
        ASSERT_TRUE(waitUntil([&] { return menu().has_value(); })) << program->errors();
    }
    void press(std::uint32_t key) {
        keys->press(key);
        keys->release(key);
    }
    void keep(const std::string& name) const {
        const char* const folder = std::getenv("PALISOR_PICTURES");
        if (!folder) return;
        // Two that are the same, one after the other; a bar may go on drawing.
        Picture before = sway->picture(1);
        (void)waitUntil(
            [&] {
                Picture now = sway->picture(1);
                const bool same = now.pixels == before.pixels;
                before = std::move(now);
                return same;
            },
            std::chrono::seconds(2));
        for (const int output : {1, 2})
            sway->picture(output).writePng(std::string(folder) + "/sway-" + name + "-" +
                                           std::to_string(output) + ".png");
    }

    double scale = 1;
    int clicks = 0; ///< on the icon
    std::optional<SwayKeys> keys;
    std::unique_ptr<support::ChildProcess> bar, portal;
};

/// Which product, at which scale, and whether the desktop is dark.
using Shown = std::tuple<Look, double, bool>;

std::string nameOf(const Shown& shown) {
    const auto& [look, by, dark] = shown;
    return std::string(look.product) + (dark ? "-dark" : "-light") + (by > 1 ? "-scaled" : "");
}

struct SwayLookOf : SwayLook, testing::WithParamInterface<Shown> {};

TEST_P(SwayLookOf, IsLightOrDarkAsTheDesktopIsAndItsMenuIsWholeAtTheIcon) {
    const auto& [look, by, dark] = GetParam();
    beginScaled(by);
    if (dark) startPortal({});
    startBar(dark);
    spawn({.product = look.product, .more = look.more});
    openMenu();
    EXPECT_TRUE(waitUntil([this, wanted = dark] { return isPainted(wanted); }))
        << program->errors();
    const Area seen = menu().value();
    EXPECT_LE(seen.x + seen.width, pixels(width));
    EXPECT_LE(seen.y + seen.height, pixels(height));
    EXPECT_GE(seen.x + seen.width, icon().value().x) << "in line with the icon";
    const Picture whole = sway->picture(1);
    EXPECT_EQ(whole.at(seen.x + 9, pixels(barHeight) - 2),
              whole.at(seen.x - 9, pixels(barHeight) - 2))
        << "beside the bar and not over it";
    keep(nameOf(GetParam()));
    if (look.keys.empty()) return;
    for (const std::uint32_t key : look.keys)
        press(key);
    keep(nameOf(GetParam()) + "-more");
}

const Look products[] = {
    {"palisor", {}, {KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_RIGHT}},
    {"vellumor", {}, {KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_RIGHT}},
    {"quenlow"},
    {"orbisant", {}, {KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_RIGHT}},
    {"stay-awake"},
    {"crosshair"},
    {"calendar-alerts"}};

INSTANTIATE_TEST_SUITE_P(Products, SwayLookOf,
                         testing::Combine(testing::ValuesIn(products), testing::Values(1.0, 1.5),
                                          testing::Bool()),
                         [](const auto& row) {
                             std::string name = nameOf(row.param);
                             std::erase(name, '-');
                             return name;
                         });

TEST_F(SwayLook, OfADarkMonitorIsEvenAtABrokenScale) {
    begin(
        {.layout = "1000x600+0+0,1200x900+1000+0", .configuration = "output HEADLESS-2 scale 1.5"});
    start();
    EXPECT_TRUE(sway->isOfOneColour(2));
    EXPECT_NEAR(sway->brightness(2), 64, 4) << "a quarter of the light";
}

TEST_F(SwayLook, IsDarkByTheSettingsFileWhereNobodyElseTells) {
    beginScaled(1);
    wishForDarkInFile();
    startBar(true);
    spawn({});
    openMenu();
    EXPECT_TRUE(waitUntil([&] { return isPainted(true); })) << program->errors();
}

TEST_F(SwayLook, OfTheMenuIsAboveABarAtTheLowerSide) {
    beginScaled(1);
    wishForDarkInFile(); // so that the menu is seen on white
    startBar(true, "bottom");
    spawn({});
    constexpr int inBar = height - barHeight / 2;
    const auto ground = [&] { return sway->picture(1).at(width - 2, inBar); };
    ASSERT_TRUE(waitUntil([&] { return ground() != white; })) << bar->errors();
    const Colour bare = ground();
    const auto iconAt = [&] {
        const Picture seen = sway->picture(1);
        for (int x = width - 3; x > width - 60; --x)
            if (seen.at(x, inBar) != bare) return x;
        return 0;
    };
    ASSERT_TRUE(waitUntil([&] { return iconAt() > 0; })) << program->errors() << bar->errors();
    hand->moveTo(iconAt() - 4, inBar);
    hand->relative(-1, 0);
    hand->pressButton();
    hand->releaseButton();
    const auto isMenuAt = [&](int y) { return sway->picture(1).at(width - 100, y) != white; };
    constexpr int abovePanel = height - barHeight - 10;
    EXPECT_TRUE(waitUntil([&] { return isMenuAt(abovePanel); })) << program->errors();
    const Picture seen = sway->picture(1);
    for (int y = height - barHeight + 1; y < height - 1; ++y)
        ASSERT_EQ(seen.at(width - 100, y), bare) << "the bar is covered at " << y;
    keep("palisor-bottom");
}

TEST_F(SwayLook, FollowsTheDesktopWhileTheProgramRuns) {
    beginScaled(1);
    startPortal({"later"});
    startBar(true);
    spawn({});
    openMenu();
    EXPECT_TRUE(waitUntil([&] { return isPainted(false); }));
    const auto call =
        sway->spawn("busctl", {"--user", "call", "org.freedesktop.portal.Desktop",
                               "/org/freedesktop/portal/desktop", "local.Test", "Darken"});
    ASSERT_EQ(call->wait(), 0) << call->errors();
    press(KEY_ESC);
    ASSERT_TRUE(waitUntil([&] { return !menu(); }));
    openMenu();
    EXPECT_TRUE(waitUntil([&] { return isPainted(true); })) << program->errors();
}

} // namespace
} // namespace desktop
