#include "contract/desktop/Desktop.h"

#include <gtest/gtest.h>
#include <vector>

// What the services of every desktop promise. What happens over windows of the program's own is
// told everywhere, and so the hand moves there.

namespace contract {
namespace {

using platform::EventType;
using platform::Point;
using platform::Rect;
using platform::Shortcut;

constexpr Rect left{0, 0, 1920, 1080}, right{1920, 0, 1280, 1024}; // top-left
constexpr Shortcut altF2{120, Shortcut::option}, altF3{99, Shortcut::option};

class OnEveryDesktop : public testing::TestWithParam<Kind> {
  protected:
    void SetUp() override {
        if (const auto reason = GetParam().missing()) GTEST_SKIP() << *reason;
        desktop = GetParam().make();
    }

    void cover(const Rect& bottomLeft) {
        window = desktop->windows().create({.kind = platform::WindowKind::dark,
                                            .frame = bottomLeft,
                                            .alpha = 0.5,
                                            .background = platform::WindowColour::black,
                                            .opaque = true});
        window->makeKeyAndOrderFront();
    }
    /// Over the second screen there is a window of the program, which is told of the hand. The
    /// cursor is there, and all that the hand did has been told.
    void coverSecond() {
        cover(desktop->displays().screens()[1].frame);
        desktop->input().addTap(
            {.mask = maskOf(EventType::mouseMoved) | maskOf(EventType::leftMouseUp)},
            [this](const auto& event) { last = event.type; });
        int turn = 0;
        ASSERT_TRUE(desktop->until([&] {
            desktop->moveTo(2400 + turn++ % 2, 300);
            return last.has_value();
        }));
        desktop->click();
        ASSERT_TRUE(desktop->until([&] { return last == EventType::leftMouseUp; }));
    }
    bool cursorIsAt(Point place) {
        return desktop->until([&] { return desktop->pointer().location() == place; });
    }

    std::unique_ptr<Desktop> desktop;
    std::unique_ptr<platform::Window> window;
    std::optional<EventType> last; ///< that was told of the hand
};

/// Where a hand is held, and the program is told what windows of its own get.
class OnARealDesktop : public OnEveryDesktop {};

class Screens : public OnEveryDesktop {};

TEST_P(Screens, HaveTheirOriginAtTheLowerLeftOfTheFirstWhichIsTheMainOne) {
    const auto screens = desktop->displays().screens();
    ASSERT_EQ(screens.size(), 2u);
    EXPECT_EQ(screens[0].frame, (Rect{0, 0, 1920, 1080}));
    EXPECT_EQ(screens[1].frame, (Rect{1920, 56, 1280, 1024}));
    EXPECT_EQ(desktop->displays().mainScreen(), screens[0].id);
    EXPECT_NE(screens[0].id, screens[1].id);
    EXPECT_FALSE(screens[0].name.empty());
}

TEST_P(Screens, AreToldWhenTheyGoAndComeBackAsTheSame) {
    auto& displays = desktop->displays();
    const auto second = displays.screens()[1].id;
    int changes = 0;
    displays.onChange([&] { ++changes; });
    if (!desktop->unplugSecond()) GTEST_SKIP() << "no monitor can be unplugged here";
    EXPECT_TRUE(desktop->until([&] { return changes > 0 && displays.screens().size() == 1; }));
    EXPECT_EQ(displays.frame(second), std::nullopt);
    changes = 0;
    desktop->plugSecond();
    EXPECT_TRUE(desktop->until([&] {
        return changes > 0 && displays.frame(second) == Rect{1920, 56, 1280, 1024};
    }));
}

TEST_P(Screens, AreToldWhenTheyMove) {
    auto& displays = desktop->displays();
    const auto second = displays.screens()[1].id;
    int changes = 0;
    displays.onChange([&] { ++changes; });
    desktop->lowerSecond(56);
    EXPECT_TRUE(desktop->until([&] {
        return changes > 0 && displays.frame(second) == Rect{1920, 0, 1280, 1024};
    }));
}

class ThePointer : public OnEveryDesktop {};

TEST_P(ThePointer, IsWhereItWasPut) {
    desktop->pointer().warp({2500, 300});
    EXPECT_TRUE(cursorIsAt({2500, 300}));
    desktop->pointer().warp({100, 200});
    EXPECT_TRUE(cursorIsAt({100, 200}));
}

TEST_P(ThePointer, IsAtTheEventsPlaceInsideAHandlerAndWhereItWasPutAfterwards) {
    coverSecond();
    std::vector<Point> places;
    desktop->input().addGlobalMonitor(maskOf(EventType::mouseMoved), [&](const auto& event) {
        if (!places.empty() || event.location != Point{2500, 300}) return;
        places.push_back(desktop->pointer().location());
        desktop->pointer().warp({700, 400});
        places.push_back(desktop->pointer().location());
    });
    desktop->moveTo(2500, 300);
    ASSERT_TRUE(desktop->until([&] { return !places.empty(); }));
    EXPECT_EQ(places, (std::vector<Point>{{2500, 300}, {700, 400}}));
    EXPECT_TRUE(cursorIsAt({700, 400}));
}

TEST_P(ThePointer, MakesNoEventWhenItIsPutSomewhere) {
    coverSecond();
    std::vector<EventType> told; // on the second screen
    desktop->input().addGlobalMonitor(
        maskOf(EventType::mouseMoved) | maskOf(EventType::leftMouseUp), [&](const auto& event) {
            if (right.contains(event.location)) told.push_back(event.type);
        });
    desktop->pointer().warp({2500, 300});
    ASSERT_TRUE(cursorIsAt({2500, 300}));
    desktop->click(); // which comes behind any motion
    ASSERT_TRUE(desktop->until([&] { return !told.empty(); }));
    EXPECT_EQ(told, std::vector{EventType::leftMouseUp});
}

TEST_P(OnARealDesktop, PutsThePointerOntoTheNearestScreenWhereItIsPutBesideAll) {
    desktop->pointer().warp({5000, 300});
    EXPECT_TRUE(cursorIsAt({3199, 300}));
}

/// The events of one push: those on the screen, and the first beyond it.
struct Push {
    std::vector<Point> inside;
    std::optional<Point> beyond;
    void add(Point place) {
        if (beyond) return;
        if (left.contains(place))
            inside.push_back(place);
        else
            beyond = place;
    }
};

TEST_P(OnARealDesktop, TellsOfAPushAsAStepOutOfTheScreenThatIsHeldAndKeepsThePointerThere) {
    Push push;
    desktop->input().watch({.pushes = true});
    desktop->input().addGlobalMonitor(maskOf(EventType::mouseMoved), [&](const auto& event) {
        push.add(event.location);
        if (!left.contains(event.location)) desktop->pointer().warp({1918, event.location.y});
    });
    desktop->moveTo(1900, 500);
    desktop->pointer().holdInside(left);
    ASSERT_TRUE(desktop->push(60, [&] { return push.beyond.has_value(); }));
    ASSERT_FALSE(push.inside.empty());
    const Point held = push.inside.back();
    EXPECT_NEAR(held.x, 1918.5, 1);
    EXPECT_EQ(held.y, push.beyond->y);
    EXPECT_GE(push.beyond->x, 1920);
    EXPECT_LT(desktop->pointer().location().x, 1920);
}

TEST_P(OnARealDesktop, LetsThePointerGoWhereAPushLedThatNobodyAnswers) {
    Push push;
    desktop->input().watch({.pushes = true});
    desktop->input().addGlobalMonitor(maskOf(EventType::mouseMoved),
                                      [&](const auto& event) { push.add(event.location); });
    desktop->moveTo(1900, 500);
    desktop->pointer().holdInside(left);
    ASSERT_TRUE(desktop->push(60, [&] { return push.beyond.has_value(); }));
    EXPECT_TRUE(desktop->until([&] { return desktop->pointer().location().x >= 1920; }));
}

TEST_P(OnARealDesktop, LetsThePointerOverToTheScreenThatIsHeldInsteadAndKeepsItThere) {
    Push push;
    desktop->input().watch({.pushes = true});
    desktop->input().addGlobalMonitor(maskOf(EventType::mouseMoved), [&](const auto& event) {
        if (!push.beyond && !left.contains(event.location)) {
            desktop->pointer().holdInside(std::nullopt);
            desktop->pointer().holdInside(right);
        }
        push.add(event.location);
        if (push.beyond && left.contains(event.location))
            desktop->pointer().warp({1921, event.location.y});
    });
    desktop->moveTo(1900, 500);
    desktop->pointer().holdInside(left);
    ASSERT_TRUE(desktop->push(60, [&] { return push.beyond.has_value(); }));
    EXPECT_TRUE(desktop->until([&] { return desktop->pointer().location().x >= 1920; }));
    int steps = 0;
    EXPECT_TRUE(desktop->push(-60, [&] { return ++steps == 20; }));
    EXPECT_GE(desktop->pointer().location().x, 1920);
}

class Events : public OnEveryDesktop {};

TEST_P(Events, GoToWhoAskedForTheirTypeInTheOrderOfAsking) {
    coverSecond();
    std::string told;
    desktop->input().addGlobalMonitor(maskOf(EventType::leftMouseDown), [&](const auto& event) {
        EXPECT_EQ(event.location, (Point{2600, 350}));
        told += 'a';
    });
    desktop->input().addTap(
        {.mask = maskOf(EventType::leftMouseDown) | maskOf(EventType::leftMouseUp)},
        [&](const auto& event) { told += event.type == EventType::leftMouseDown ? 'b' : 'B'; });
    desktop->moveTo(2600, 350);
    desktop->click();
    ASSERT_TRUE(desktop->until([&] { return told.ends_with('B'); }));
    EXPECT_EQ(told, "abB");
}

TEST_P(OnARealDesktop, TellsTapsAloneWhileAWindowOfTheProgramIsActive) {
    coverSecond();
    int monitored = 0, tapped = 0;
    const auto presses = maskOf(EventType::leftMouseDown);
    desktop->input().addGlobalMonitor(presses, [&](const auto&) { ++monitored; });
    desktop->input().addTap({.mask = presses}, [&](const auto&) { ++tapped; });
    desktop->setOwnWindowActive(true);
    desktop->moveTo(2600, 350);
    desktop->click();
    ASSERT_TRUE(desktop->until([&] { return tapped == 1; }));
    EXPECT_EQ(monitored, 0);
    desktop->setOwnWindowActive(false);
    desktop->click();
    ASSERT_TRUE(desktop->until([&] { return tapped == 2; }));
    EXPECT_EQ(monitored, 1);
}

class Overlays : public OnEveryDesktop {};

TEST_P(Overlays, AreNumberedWhenTheyFirstComeOnScreen) {
    auto& windows = desktop->windows();
    const auto first = windows.create({}), second = windows.create({});
    EXPECT_EQ(first->id(), 0u);
    EXPECT_FALSE(first->isVisible());
    second->makeKeyAndOrderFront();
    first->makeKeyAndOrderFront();
    EXPECT_TRUE(second->isVisible());
    second->orderOut();
    EXPECT_FALSE(second->isVisible());
    second->makeKeyAndOrderFront();
    EXPECT_EQ(second->id(), 1u);
    EXPECT_EQ(first->id(), 2u);
}

TEST_P(Overlays, StandWhereTheyWerePutLast) {
    const auto made = desktop->windows().create({.frame = {10, 20, 30, 40}});
    EXPECT_EQ(made->frame(), (Rect{10, 20, 30, 40}));
    made->makeKeyAndOrderFront();
    made->setFrame({50, 60, 70, 80});
    EXPECT_EQ(made->frame(), (Rect{50, 60, 70, 80}));
}

class Keys : public OnEveryDesktop {
  protected:
    void SetUp() override {
        OnEveryDesktop::SetUp();
        if (desktop) desktop->hotKeys().registerShortcut(altF3, [this] { ++probes; });
    }
    /// How often Alt and F2 have run their action: another combination comes behind.
    int pressed() {
        desktop->pressAltAnd(2);
        const int before = probes;
        desktop->pressAltAnd(3);
        EXPECT_TRUE(desktop->until([&] { return probes > before; }));
        return presses;
    }
    int presses = 0, probes = 0;
};

TEST_P(Keys, RunTheirActionUntilTheyAreGivenBack) {
    auto& hotKeys = desktop->hotKeys();
    EXPECT_EQ(hotKeys.obstacleTo(altF2), platform::HotKeys::Obstacle::none);
    hotKeys.registerShortcut(altF2, [this] { ++presses; });
    EXPECT_EQ(hotKeys.obstacleTo(altF2), platform::HotKeys::Obstacle::fixed);
    EXPECT_EQ(pressed(), 1);
    hotKeys.unregisterShortcut(altF2);
    EXPECT_EQ(pressed(), 1);
    hotKeys.unregisterShortcut(altF2); // ignored
}

TEST_P(Keys, FollowWhatIsStored) {
    constexpr const char* where = "theShortcut";
    desktop->hotKeys().bindShortcut(where, [this] { ++presses; });
    EXPECT_EQ(pressed(), 0);
    desktop->settings().set(where, altF2.toValue());
    EXPECT_EQ(pressed(), 1);
    desktop->settings().remove(where);
    EXPECT_EQ(pressed(), 1);
    desktop->settings().set(where, altF2.toValue());
    desktop->hotKeys().breakBinding(where);
    EXPECT_EQ(pressed(), 1);
}

std::string nameOf(const testing::TestParamInfo<Kind>& test) {
    return test.param.name;
}

const auto all = testing::Values(memoryDesktop, x11Desktop, swayDesktop);
INSTANTIATE_TEST_SUITE_P(Contract, Screens, all, nameOf);
INSTANTIATE_TEST_SUITE_P(Contract, ThePointer, all, nameOf);
INSTANTIATE_TEST_SUITE_P(Contract, Events, all, nameOf);
INSTANTIATE_TEST_SUITE_P(Contract, Overlays, all, nameOf);
INSTANTIATE_TEST_SUITE_P(Contract, Keys, all, nameOf);
// In memory nothing is held, no window is anybody's, and scenarios put the cursor where they like:
// who drives the events decides all that.
INSTANTIATE_TEST_SUITE_P(Contract, OnARealDesktop, testing::Values(x11Desktop, swayDesktop),
                         nameOf);

} // namespace
} // namespace contract
