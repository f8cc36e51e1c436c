#include "testing/SettingsManager.h"
#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

// The menu of the real program, driven as a user drives it.

namespace desktop {
namespace {

namespace key = support::key;

constexpr Colour white{255, 255, 255};

struct MenuOfTheProgram : Product, testing::Test {
    MenuOfTheProgram() : Product("1280x800+0+0,1024x768+1280+16") {
        desktop.startWindowManager("openbox");
        desktop.startCompositor();
        paper.emplace(desktop.display(), monitor(1), white);
        hand.moveTo(400, 300);
    }

    void startWith(const Entries& settings, const std::string& product = "palisor") {
        spawn({.product = product, .more = settings});
        ASSERT_TRUE(saysThatItStarts()) << program->errors();
    }

    /// The slider's panel in the submenu of the entry that so many downward steps reach.
    Area openSubmenu(int steps) {
        for (int step = 0; step < steps; ++step)
            hand.type(key::down);
        hand.type(key::right);
        EXPECT_TRUE(waitForMenus(2));
        for (const Area& area : menus())
            if (area.width == 210) return {area.x, area.y + (area.height - 50) / 2, 210, 50};
        ADD_FAILURE() << "no slider";
        return {};
    }

    void closeMenus() {
        for (auto left = menus().size(); left > 0; --left) {
            hand.type(key::escape);
            ASSERT_TRUE(waitForMenus(left - 1));
        }
    }

    /// Whether the program has stored that when it has ended.
    testing::AssertionResult hasStored(const std::string& setting, const std::string& value) {
        program->end();
        const std::string list = storedSettings();
        if (list.find(entry(setting, value)) != std::string::npos)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << setting << " is not " << value << " in " << list;
    }

    bool turnsInto(int brightness) {
        return eye.waitUntilSeen(
            [&] { return std::abs(eye.colour(2000, 400).green - brightness) <= 1; });
    }

    std::optional<support::TestWindow> paper;
};

TEST_F(MenuOfTheProgram, DarkensTheOtherMonitorWhileItsSliderIsDragged) {
    startWith({{"OTHERS_DARK", number(4)}});
    ASSERT_TRUE(turnsInto(204));
    openMenu();
    const Area slider = openSubmenu(3);
    const int y = slider.y + 40;
    hand.moveTo(slider.x + 5 + 7 + 37, y);
    hand.pressButton();
    hand.moveTo(slider.x + 105, y);
    EXPECT_TRUE(turnsInto(128)) << "before the button is released";
    hand.moveTo(slider.x + 5 + 7 + 186 * 3 / 4, y);
    EXPECT_TRUE(turnsInto(64));
    hand.releaseButton();
    closeMenus();
    EXPECT_TRUE(hasStored("OTHERS_DARK", number(15)));
}

TEST_F(MenuOfTheProgram, NeverRewritesTheDarknessByBeingBuilt) {
    startWith({{"OTHERS_DARK", number(4000)}});
    choose(5);
    openMenu();
    openSubmenu(3);
    closeMenus();
    EXPECT_TRUE(hasStored("OTHERS_DARK", number(4000)));
    EXPECT_TRUE(hasStored("CTRLALTCMD", flag(false))) << "the entry that was chosen";
}

TEST_F(MenuOfTheProgram, KeepsTheDarknessInRangeWhateverIsStored) {
    struct Row {
        std::string before;
        xcb_keysym_t pressed;
        int after;
    };
    const Row rows[] = {
        {number(-7), key::right, 1}, {number(4000), key::left, 19}, {text("x"), key::right, 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.before);
        startWith({{"OTHERS_DARK", row.before}, {"VELOCITY", number(0)}});
        openMenu();
        openSubmenu(3);
        hand.type(row.pressed);
        closeMenus();
        EXPECT_TRUE(hasStored("OTHERS_DARK", number(row.after)));
        EXPECT_TRUE(hasStored("VELOCITY", number(1)));
    }
}

TEST_F(MenuOfTheProgram, KeepsTheTimeInRangeWhateverIsStored) {
    for (const std::string silly : {"abc", "-7"}) {
        SCOPED_TRACE(silly);
        startWith({{"SCHEDULE", text(silly)}}, "vellumor");
        openMenu();
        openSubmenu(5);
        hand.type(key::right);
        closeMenus();
        EXPECT_TRUE(hasStored("SCHEDULE", text("1")));
    }
}

TEST_F(MenuOfTheProgram, IsDarkWhereTheDesktopAsksForIt) {
    auto portal = desktop.spawn(PORTAL);
    ASSERT_TRUE(portal->waitForText("ready"));
    startWith({});
    openMenu();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto areas = menus();
        return !areas.empty() && eye.picture(areas.front()).brightness() < 80;
    }));
    const Area slider = openSubmenu(3);
    ASSERT_TRUE(eye.waitUntilSeen([&] {
        const double brightness = eye.picture(slider).brightness();
        return brightness > 32 && brightness < 80;
    })) << "painted";
    if (const char* pictures = std::getenv("PALISOR_PICTURES"))
        eye.screenshot(std::string(pictures) + "/program-dark.png");
    // What is drawn of the slider and its ticks below the label, against what is around it.
    const auto lightest = [&](const Area& area) {
        int found = 0;
        for (const Colour& pixel : eye.picture(area).pixels)
            found = std::max<int>(found, pixel.green);
        return found;
    };
    const Area ticks{slider.x + 12, slider.y + 21, 186, 5};
    const Area handle{slider.x + 12, slider.y + 30, 186, 14};
    EXPECT_GT(lightest(ticks), 100);
    EXPECT_GT(lightest(handle), 100);
}

TEST_F(MenuOfTheProgram, TurnsDarkWhenTheDesktopDoesWhileItRuns) {
    auto portal = desktop.spawn(PORTAL, {"later"});
    ASSERT_TRUE(portal->waitForText("ready"));
    startWith({});
    ASSERT_TRUE(isUpSoon());
    EXPECT_FALSE(desktop
                     .call({"--dest=org.freedesktop.portal.Desktop",
                            "/org/freedesktop/portal/desktop", "local.Test.Darken"})
                     .empty());
    openMenu();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto areas = menus();
        return !areas.empty() && eye.picture(areas.front()).brightness() < 80;
    }));
}

TEST_F(MenuOfTheProgram, TurnsDarkAndLightWithTheThemeWhereThereIsNoPortal) {
    startWith({});
    ASSERT_TRUE(isUpSoon());
    const support::SettingsManager manager(desktop.display(), {{"Net/ThemeName", "Greybird-dark"}});
    const auto turnsDark = [&](bool dark) {
        return waitUntil([&] {
            openMenu();
            const double brightness = eye.picture(menus().front()).brightness();
            closeMenus();
            return dark ? brightness < 80 : brightness > 180;
        });
    };
    EXPECT_TRUE(turnsDark(true));
    manager.write({{"Net/ThemeName", "Greybird"}});
    EXPECT_TRUE(turnsDark(false));
}

TEST_F(MenuOfTheProgram, FollowsThePortalAgainstTheTheme) {
    const support::SettingsManager manager(desktop.display(), {{"Net/ThemeName", "Greybird"}});
    auto portal = desktop.spawn(PORTAL);
    ASSERT_TRUE(portal->waitForText("ready"));
    startWith({});
    openMenu();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto areas = menus();
        return !areas.empty() && eye.picture(areas.front()).brightness() < 80;
    }));
}

TEST_F(MenuOfTheProgram, IsSaidInANoticeToBeReachedByASecondStartWhereThereIsNoTray) {
    const auto monitor = desktop.spawn("dbus-monitor", {"--session", "member='Notify'"});
    ASSERT_TRUE(monitor->waitForText("NameAcquired"));
    startWith({});
    EXPECT_TRUE(monitor->waitForText("once more to open its menu"))
        << monitor->output() << program->errors();
    const std::string told = monitor->output();
    EXPECT_EQ(told.find("No place for the icon"), told.rfind("No place for the icon"));
}

TEST_F(MenuOfTheProgram, IsLightWithoutAPortal) {
    startWith({});
    openMenu();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto areas = menus();
        return !areas.empty() && eye.picture(areas.front()).brightness() > 180;
    }));
}

} // namespace
} // namespace desktop
