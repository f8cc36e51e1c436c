#include "Stage.h"

#include "platform/qt/loop/QtDescriptors.h"
#include "platform/x11/overlay/Windows.h"
#include "testing/KeptLog.h"
#include "testing/desktop/TestWindow.h"

#include <QApplication>
#include <QMenu>

using namespace menutests;
using support::Area;
using support::Spot;

namespace {

class MenuOpening : public MenuTest {
  protected:
    MenuOpening() {
        addEntry(menu, "First", "first");
        addEntry(menu, "Second of the entries", "second");
        addEntry(menu, "Third", "third");
    }

    /// The menu's window; the toolkit may keep small ones of its own.
    Area menuArea() {
        for (const auto& window : eye.windows())
            if (window.mapped && window.overrideRedirect && !window.inputOnly &&
                window.area.width > 60 && window.area.width < 600)
                return window.area;
        return {};
    }
};

bool liesIn(const Area& inner, const Area& outer) {
    return inner.width > 0 && outer.contains(inner.x, inner.y) &&
           outer.contains(inner.x + inner.width - 1, inner.y + inner.height - 1);
}

} // namespace

TEST_F(MenuOpening, StartsAtTheCursor) {
    Area seen;
    whileOpen([&] { seen = menuArea(); });
    EXPECT_EQ(Spot({seen.x, seen.y}), start);
}

TEST_F(MenuOpening, StaysInsideTheMonitorOfTheCursor) {
    struct Row {
        const char* place;
        Spot cursor;
        Area monitor;
    };
    const Row rows[] = {{"right edge of the desktop", {2303, 300}, rightMonitor},
                        {"bottom edge", {500, 799}, leftMonitor},
                        {"bottom right corner", {2303, 783}, rightMonitor},
                        {"last column before the boundary", {1279, 300}, leftMonitor},
                        {"first column after the boundary", {1280, 300}, rightMonitor},
                        {"top left corner", {0, 0}, leftMonitor}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.place);
        start = row.cursor;
        Area seen;
        whileOpen([&] { seen = menuArea(); });
        EXPECT_TRUE(liesIn(seen, row.monitor))
            << seen.width << "x" << seen.height << "+" << seen.x << "+" << seen.y;
    }
}

TEST_F(MenuOpening, AsksTheTargetFirstAndShowsWhatItLeaves) {
    target.onOpen = [](Menu& opening) { addEntry(opening, "Fourth", "fourth"); };
    whileOpen([] { EXPECT_TRUE(isOpen(entry("Fourth"))); });
    EXPECT_EQ(target.lines(), std::vector<std::string>{"open leftDown/0"});
}

TEST_F(MenuOpening, ShowsNothingWhenTheTargetEmptiesTheMenu) {
    target.onOpen = [](Menu& opening) { opening.items.clear(); };
    item.clicked(1); // would not return with a menu open
    item.clicked(2);
    EXPECT_EQ(target.lines(), (std::vector<std::string>{"open rightDown/1", "open otherDown/2"}));
    EXPECT_EQ(application.currentEvent().buttonNumber, 0);
}

TEST_F(MenuOpening, IsClosedByAFurtherClickOnTheItem) {
    whileOpen([&] {
        for (const int button : {1, 0}) {
            if (openMenus() == 0) break;
            ask<bool>([&] {
                item.clicked(button);
                return true;
            });
        }
        EXPECT_EQ(openMenus(), 0);
    });
    // Only the first click of the two found it open.
    EXPECT_EQ(target.lines(), std::vector<std::string>{"open leftDown/0"});
}

TEST_F(MenuOpening, IgnoresASecondPopUpWhileItIsOpen) {
    whileOpen([&] {
        ask<bool>([&] {
            item.popUpMenu();
            item.activate();
            return true;
        });
        EXPECT_EQ(openMenus(), 1);
    });
}

TEST_F(MenuOpening, LetsNoTimerFireMeanwhile) {
    int fired = 0;
    loop.schedule(0, false, "due", [&] { ++fired; });
    loop.schedule(0.001, true, "often", [&] { ++fired; });
    int whileItWasOpen = -1;
    whileOpen([&] {
        hover(entry("First"));
        hover(entry("Third")); // what the toolkit does for these comes after what was due
        whileItWasOpen = ask<int>([&] { return fired; });
    });
    EXPECT_EQ(whileItWasOpen, 0);
    while (fired < 2)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

TEST_F(MenuOpening, CountsAsAWindowOfTheProgramThatHasTheKeyboard) {
    EXPECT_FALSE(platform::qt::QtApplication::hasActiveWindow());
    whileOpen([] {
        EXPECT_TRUE(ask<bool>([] { return platform::qt::QtApplication::hasActiveWindow(); }));
    });
    EXPECT_FALSE(platform::qt::QtApplication::hasActiveWindow());
}

TEST_F(MenuOpening, ClosesWhenTheUserClicksElsewhere) {
    whileOpen([&] {
        hand.moveTo(900, 700);
        hand.click();
        EXPECT_TRUE(waitUntil([] { return openMenus() == 0; }));
    });
    EXPECT_EQ(target.lines().size(), 1U);
}

namespace {

constexpr support::Colour white{255, 255, 255}, black{0, 0, 0};

} // namespace

TEST_F(MenuOpening, StandsAboveTheDarkWindowsAlsoWhenTheyAreRaisedAgain) {
    for (const std::string manager : {"openbox", "xfwm4"}) {
        SCOPED_TRACE(manager);
        desktop().stopWindowManager();
        desktop().startWindowManager(manager);
        desktop().startCompositor();
        testing_support::KeptLog log;
        platform::qt::QtDescriptors descriptors;
        descriptors.start();
        const auto opened =
            platform::x11::Connection::open(desktop().display(), descriptors, log, [] {});
        ASSERT_NE(opened.connection, nullptr) << opened.error;
        platform::x11::Displays displays(*opened.connection);
        platform::x11::Windows windows(*opened.connection, displays, log, "menu-tests",
                                       {GAMMA_GUARD, desktop().runtimeFolder(), descriptors});
        support::TestWindow below(desktop().display(), rightMonitor, white);
        const auto dark = windows.create({.frame = {1280, 16, 1024, 768},
                                          .background = platform::WindowColour::black,
                                          .opaque = true});
        dark->makeKeyAndOrderFront();
        opened.connection->sync();
        ASSERT_TRUE(eye.waitForColour(2200, 700, black));
        start = {1500, 300};
        whileOpen([&] {
            const Area menuAt = menuArea();
            const int x = menuAt.x + menuAt.width - 6, y = menuAt.y + menuAt.height / 2;
            EXPECT_TRUE(eye.waitForColour(x, y, white));
            // Over the dark window first, where the manager puts it there, and then below it.
            support::TestWindow later(desktop().display(), {1900, 400, 300, 300}, white, "later");
            EXPECT_TRUE(eye.waitForColour(2000, 600, black));
            EXPECT_EQ(eye.colour(x, y), white);
        });
        desktop().stopCompositor();
    }
    desktop().stopWindowManager();
    desktop().startWindowManager("openbox");
}
