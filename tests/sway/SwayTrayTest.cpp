#include "sway/SwaySession.h"

#include <filesystem>

// The icon in the trays of bars.

namespace desktop {
namespace {

using support::Colour;

constexpr int trayWidth = 1000, trayHeight = 40;
constexpr Colour ground{0x20, 0x40, 0x20};

class SwayTray : public Sway {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateSway::missing()) GTEST_SKIP() << *reason;
        if (!std::filesystem::exists("/usr/bin/waybar")) GTEST_SKIP() << "waybar is not installed";
        begin({.layout = "1000x600+0+0,800x600+1000+0"});
        keys.emplace(*sway);
        hand->moveTo(500, 300);
        const std::string folder = sway->configFolder();
        std::ofstream(folder + "/bar.json")
            << R"({"layer": "top", "height": 40, "output": "HEADLESS-1", "modules-right": ["tray"],)"
               R"( "tray": {"icon-size": 32}})";
        std::ofstream(folder + "/bar.css")
            << "window#waybar { background: #204020; } * { min-height: 0; }";
    }
    void startBar() {
        const std::string folder = sway->configFolder();
        bar = sway->spawn("waybar", {"-c", folder + "/bar.json", "-s", folder + "/bar.css"});
    }
    /// Where the icon is in the bar, from its left end to its right one; nothing where there is
    /// none.
    std::optional<std::pair<int, int>> icon() const {
        const auto seen = sway->picture(1);
        int left = trayWidth, right = -1;
        for (int column = 0; column < trayWidth; ++column)
            for (int row = 0; row < trayHeight; ++row)
                if (seen.at(column, row) == Colour{0xff, 0xff, 0xff}) {
                    left = std::min(left, column);
                    right = std::max(right, column);
                }
        const bool isBar = seen.at(2, trayHeight / 2) == ground;
        if (!isBar || right < left) return {};
        return std::pair(left, right);
    }
    bool iconComes() const {
        return waitUntil([&] { return icon().has_value(); });
    }
    bool iconGoes() const {
        return waitUntil([&] { return !icon().has_value(); });
    }
    void pointAtIcon() {
        const auto [left, right] = icon().value();
        hand->moveTo((left + right) / 2, trayHeight / 2);
        hand->relative(1, 0);
    }
    /// How much of the monitor below the bar is no longer white.
    int menuPixels() const {
        const auto seen = sway->picture(1);
        int count = 0;
        for (int row = trayHeight; row < 600; ++row)
            for (int column = 0; column < trayWidth; ++column)
                if (seen.at(column, row) != Colour{0xff, 0xff, 0xff}) ++count;
        return count;
    }
    bool menuComes() const {
        return waitUntil([&] { return menuPixels() > 2000; });
    }
    void press(std::uint32_t key) {
        keys->press(key);
        keys->release(key);
    }

    std::optional<SwayKeys> keys;
    std::unique_ptr<support::ChildProcess> bar;
};

TEST_F(SwayTray, ShowsAnIconThatIsSeenOnADarkBarWhichComesBackWithTheBar) {
    startBar();
    start();
    ASSERT_TRUE(iconComes()) << program->errors() << bar->errors();
    const auto [left, right] = icon().value();
    EXPECT_GE(right - left, 24) << "it is as large as the bar wants it";
    bar->signal(SIGTERM);
    bar->wait();
    ASSERT_TRUE(iconGoes());
    startBar();
    EXPECT_TRUE(iconComes()) << program->errors() << bar->errors();
}

TEST_F(SwayTray, ComesToABarThatStartsAfterTheProgram) {
    start();
    startBar();
    EXPECT_TRUE(iconComes()) << program->errors() << bar->errors();
}

TEST_F(SwayTray, OpensTheMenuByALeftClickAndSwitchesOffByTheFirstEntry) {
    startBar();
    start();
    ASSERT_TRUE(iconComes());
    pointAtIcon();
    hand->pressButton();
    hand->releaseButton();
    ASSERT_TRUE(menuComes()) << program->errors();
    press(KEY_DOWN);
    press(KEY_ENTER);
    EXPECT_TRUE(brightSoon()) << program->errors();
}

} // namespace
} // namespace desktop
