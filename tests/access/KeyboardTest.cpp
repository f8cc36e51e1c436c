#include "testing/desktop/Product.h"
#include "testing/reader/ScreenReader.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

// The first minutes with the program and without a mouse: each part is reached, in the order of the
// screen, it is seen where the keyboard is, and Escape leaves.

namespace desktop {
namespace {

namespace key = support::key;

struct KeyboardAlone : Product, testing::Test {
    KeyboardAlone() : Product("1280x800+0+0,1024x768+1280+16") {
        hand.type(key::leftShift); // upon the first key the window manager takes its own anew
        desktop.startWindowManager("openbox");
        hand.moveTo(1270, 790);
    }

    testing::AssertionResult isAt(const std::string& line) {
        if (reader.reads(line)) return testing::AssertionSuccess();
        const auto now = reader.focus();
        return testing::AssertionFailure()
               << "not at " << line << "\nbut at " << (now ? now->line() : "nothing");
    }
    /// The key leads there, and a mark as long as a line around something small is seen there.
    testing::AssertionResult leads(xcb_keysym_t pressed, const std::string& line) {
        constexpr int mark = 80;
        const auto before = eye.picture(monitor(0));
        hand.type(pressed);
        if (const auto there = isAt(line); !there) return there;
        const Area place = reader.focus()->place;
        int changed = 0;
        const auto isMarked = [&] {
            const auto now = eye.picture(monitor(0));
            changed = 0;
            for (int y = place.y; y < place.y + place.height; ++y)
                for (int dx = 0; dx < place.width; ++dx)
                    changed += now.at(place.x + dx, y) != before.at(place.x + dx, y) ? 1 : 0;
            return changed >= mark;
        };
        if (eye.waitUntilSeen(isMarked, support::milliseconds(3000)))
            return testing::AssertionSuccess();
        return testing::AssertionFailure()
               << "only " << changed << " points tell of " << line << " at " << place.x << ","
               << place.y << " " << place.width << "x" << place.height;
    }
    bool shows(const std::string& beginning) {
        return reader.waitUntil([&] {
            return std::ranges::any_of(reader.windows(), [&](const support::Heard& each) {
                return each.line().starts_with(beginning);
            });
        });
    }
    void picture(const std::string& what) const {
        if (const char* pictures = std::getenv("PALISOR_PICTURES"))
            eye.screenshot(std::string(pictures) + "/keyboard-" + what + ".png");
    }

    support::XConnection x{desktop.display()};
    support::ScreenReader reader{desktop};
};

TEST_F(KeyboardAlone, GoesFromTheFirstStartToTheMenusSliders) {
    spawn({.othersDark = 16,
           .more = {{"PRIMOACCESSO", ""}, {"customShortcut", ""}, {"RECOMMENDAUTOLOGIN", ""}}});
    ASSERT_TRUE(shows("push button \"Press the keys…\"")) << program->errors();
    ASSERT_TRUE(waitUntil([&] { return x.keyboardIsGrabbed(); }));
    picture("recording");
    hand.chord({key::leftControl, key::leftAlt, 'b'});
    ASSERT_TRUE(isAt("push button \"Ctrl+Alt+B\" [focused]"));
    hand.type(key::tab);
    EXPECT_TRUE(isAt("push button \"Clear\" (Clear) [focused]"));
    hand.type(key::tab);
    EXPECT_TRUE(isAt("push button \"Done\" [default, focused]"));
    picture("recorded");
    hand.type(key::enter);

    ASSERT_TRUE(shows("check box \"Do not show this window at start\""));
    ASSERT_TRUE(isAt("push button \"Done\" [default, focused]"));
    EXPECT_TRUE(leads(key::tab, "check box \"Do not show this window at start\" [focused]"));
    hand.type(key::space);
    EXPECT_TRUE(isAt("check box \"Do not show this window at start\" [checked, focused]"));
    EXPECT_TRUE(stores(entry("CHECK_0", text("1"))));
    picture("information");
    EXPECT_TRUE(leads(key::tab, "push button \"Done\" [default, focused]"));
    hand.type(key::escape);

    ASSERT_TRUE(shows("label \"Start by itself when you log in?\""));
    ASSERT_TRUE(isAt("push button \"Yes\" [default, focused]"));
    hand.type(key::tab);
    EXPECT_TRUE(isAt("push button \"Not Now\" [focused]"));
    picture("login");
    hand.type(key::escape);

    ASSERT_TRUE(waitForMenus(1));
    ASSERT_TRUE(waitUntil([&] { return x.keyboardIsGrabbed(); }));
    EXPECT_TRUE(leads(key::down, "menu item \"Switch Off\" by Ctrl+Alt+B [focused]"));
    EXPECT_TRUE(leads(key::down, "menu item \"Keyboard Shortcut…\" [focused]"));
    EXPECT_TRUE(leads(key::down, "menu item \"Darken Other Monitors\" [collapsed, focused]"));
    EXPECT_TRUE(
        leads(key::right, "slider \"Darken Other Monitors\" (80%) 80 of 0 to 100 [focused]"));
    EXPECT_TRUE(
        leads(key::right, "slider \"Darken Other Monitors\" (85%) 85 of 0 to 100 [focused]"));
    picture("slider");
    hand.type(key::escape);
    EXPECT_TRUE(waitForMenus(1));
    EXPECT_TRUE(leads(key::up, "menu item \"Keyboard Shortcut…\" [focused]"));
    EXPECT_TRUE(leads(key::up, "menu item \"Switch Off\" by Ctrl+Alt+B [focused]"));
    EXPECT_TRUE(leads(key::up, "menu item \"Quit\" [focused]"));
    hand.type(key::escape);
    EXPECT_TRUE(waitForMenus(0));
    EXPECT_TRUE(program->running());
}

TEST_F(KeyboardAlone, ReadsTheShortcutInTheLayoutThatTheUserGoesTo) {
    constexpr xcb_keysym_t nextLayout = 0xfe08;
    spawn({.more = {{"customShortcut", shortcut(40, 0xC0000)}}});
    ASSERT_TRUE(isUpSoon()) << program->errors();
    const auto done =
        desktop.spawn("setxkbmap", {"-layout", "us,ru", "-option", "grp:caps_toggle"});
    ASSERT_EQ(done->wait(), 0) << done->errors();
    choose(2);
    EXPECT_TRUE(shows("push button \"Ctrl+Alt+K\""));
    hand.type(nextLayout);
    EXPECT_TRUE(shows("push button \"Ctrl+Alt+Л\""));
    hand.type(nextLayout);
    EXPECT_TRUE(shows("push button \"Ctrl+Alt+K\""));
}

TEST_F(KeyboardAlone, GoesRoundTheBoxesOfTheBordersAsTheyLie) {
    spawn({.product = "orbisant"});
    ASSERT_TRUE(isUpSoon()) << program->errors();
    openMenu();
    for (int step = 0; step < 3; ++step)
        hand.type(key::down);
    EXPECT_TRUE(leads(key::right, "check box \"Top left corner\" [focused]"));
    for (const char* place : {"Top side", "Top right corner", "Right side", "Bottom right corner",
                              "Bottom side", "Bottom left corner", "Left side"}) {
        hand.type(key::right);
        EXPECT_TRUE(reader.waitUntil([&] {
            const auto now = reader.focus();
            return now && now->name == place;
        })) << place;
    }
    picture("boxes");
    hand.type(key::escape);
    EXPECT_TRUE(waitForMenus(1));
    hand.type(key::escape);
    EXPECT_TRUE(waitForMenus(0));
}

TEST_F(KeyboardAlone, IsInTheSubmenuForWhichTheMenuOpensAgain) {
    spawn({.product = "vellumor", .more = {{"HOT_BOUNDS", text("0")}}});
    ASSERT_TRUE(isUpSoon()) << program->errors();
    openMenu();
    for (int step = 0; step < 4; ++step)
        hand.type(key::down);
    ASSERT_TRUE(isAt("check box \"Hot Borders\" [focused]"));
    hand.type(key::enter);
    ASSERT_TRUE(isAt("check box \"Top left corner\" [focused]"));
    EXPECT_TRUE(waitForMenus(2));
    picture("again");
    hand.type(key::right);
    EXPECT_TRUE(isAt("check box \"Top side\" [focused]"));
    hand.type(key::escape);
    EXPECT_TRUE(isAt("check box \"Hot Borders\" [checked, collapsed, focused]"));
    EXPECT_TRUE(waitForMenus(1));
    hand.type(key::escape);
    EXPECT_TRUE(waitForMenus(0));
    openMenu();
    EXPECT_TRUE(isAt("popup menu \"Vellumor: on\" [active, focused]")) << "by a second start";
}

TEST_F(KeyboardAlone, ReachesEveryPartOfAnInformationWindowThatHasAddresses) {
    useDictionary("orbisant", {{"IDApp", number(5)},
                               {"CFBundleDisplayName", text("Orbisant")},
                               {"CFBundleIdentifier", text("com.tamberlo.orbisant")},
                               {"CFBundleShortVersionString", text("1.0")},
                               {"MakerSite", text("https://tamberlo.example")},
                               {"SupportMail", text("help@tamberlo.example")}});
    spawn({.product = "orbisant",
           .active = false,
           .more = {{"CHECK_0", text("0")}, {"CHECK_1", text("1")}, {"RECOMMENDAUTOLOGIN", ""}}});
    ASSERT_TRUE(isAt("push button \"Done\" [default, focused]"));
    EXPECT_TRUE(leads(key::tab, "push button \"Open the makers’ page\" [focused]"));
    EXPECT_TRUE(leads(key::tab, "label \"https://tamberlo.example\" [focused]"));
    picture("link");
    EXPECT_TRUE(leads(key::tab, "label \"help@tamberlo.example\" [focused]"));
    EXPECT_TRUE(leads(key::tab, "check box \"Do not show this window at start\" [focused]"));
    EXPECT_TRUE(leads(key::tab, "push button \"Open the makers’ page\" [focused]"));
    picture("logo");
    EXPECT_TRUE(leads(key::tab, "push button \"Recommend\" [default, focused]"));
    EXPECT_TRUE(leads(key::tab, "push button \"Done\" [default, focused]"));
}

} // namespace
} // namespace desktop
