#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::EventType;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Monitor, TakesPointerEventsModifierChangesAndNothingElse) {
    Program program(variants::barrier);
    program.app.applicationDidFinishLaunching();
    EXPECT_THAT(
        program.effects({"monitor", "tap", "log"}),
        ElementsAre(R"(log {"text":"macOS 10.14 or high"})", R"(monitor {"mask":264245502})"));
}

TEST(Monitor, OfEveryKindOfPointerEventForwardsOne) {
    for (const EventType type :
         {EventType::leftMouseDown, EventType::leftMouseUp, EventType::rightMouseDown,
          EventType::rightMouseUp, EventType::mouseMoved, EventType::leftMouseDragged,
          EventType::rightMouseDragged, EventType::scrollWheel, EventType::tabletPoint,
          EventType::tabletProximity, EventType::otherMouseDown, EventType::otherMouseUp,
          EventType::otherMouseDragged}) {
        Program program(variants::wrapAround);
        program.launched();
        program.pointer({960, 540});
        program.pointer({700, 300}, type);
        EXPECT_EQ(program.app.cordmouse, (Point{700, 300})) << static_cast<int>(type);
        EXPECT_EQ(program.app.oldcordmouse, (Point{960, 540})) << static_cast<int>(type);
    }
}

TEST(Monitor, LeavesKeyPressesOut) {
    Program program(variants::wrapAround);
    program.launched();
    program.pointer({700, 300}, EventType::keyDown);
    program.pointer({700, 300}, EventType::keyUp);
    EXPECT_EQ(program.app.cordmouse, (Point{0, 0}));
}

TEST(Monitor, ForwardsTheCursorsPlaceAtTheTimeOfHandling) {
    Program program(variants::barrier);
    program.launched();
    program.platform.pointer.place({640, 480});
    program.platform.input.deliver({.type = EventType::mouseMoved, .location = {1, 2}});
    EXPECT_EQ(program.app.cordmouse, (Point{640, 480}));
}

TEST(Monitor, TurnsAModifierChangeIntoOneKeyAndNoPointerEvent) {
    Program program(variants::wrapAround);
    program.launched();
    program.pointer({960, 540});
    program.platform.pointer.place({10, 10});
    program.modifier(platform::keyCodes::option);
    EXPECT_EQ(program.app.cordmouse, (Point{960, 540}));
    EXPECT_EQ(program.app.proKeys.size(), 1U);
}

TEST(Intake, OfTheCalendarProductIsNotInstalled) {
    Program program(variants::calendarAlerts);
    program.app.applicationDidFinishLaunching();
    EXPECT_THAT(program.effects({"monitor", "tap", "log"}), IsEmpty());
    program.pointer({700, 300});
    program.modifier(platform::keyCodes::option);
    EXPECT_EQ(program.app.cordmouse, (Point{0, 0}));
    EXPECT_THAT(program.app.proKeys, IsEmpty());
}

TEST(ScrollEvents, AreForwardedByEveryProductButTheCursorHider) {
    for (const int variant : {0, 2, 3, 5, 7, 8}) {
        Program program(variant);
        program.launched();
        program.setting(keys::SHOW_ON_SCROLL, Value{false});
        program.pointer({900, 300}, EventType::scrollWheel);
        EXPECT_EQ(program.app.cordmouse, (Point{900, 300})) << variant;
    }
    Program hider(variants::cursorHider);
    hider.launched();
    hider.setting(keys::SHOW_ON_SCROLL, Value{false});
    hider.pointer({900, 300}, EventType::scrollWheel);
    EXPECT_EQ(hider.app.cordmouse, (Point{0, 0}));
    hider.setting(keys::SHOW_ON_SCROLL, Value{true});
    hider.pointer({900, 300}, EventType::scrollWheel);
    EXPECT_EQ(hider.app.cordmouse, (Point{900, 300}));
}

/// A program on services that have no global monitor yet.
struct Tapped : Program {
    explicit Tapped(int variant, platform::Version version = {10, 13, 6}) : Program(variant) {
        platform.system.setVersion(version);
    }
};

TEST(Tap, ReplacesTheMonitorOnOlderServices) {
    const char* hid = R"(tap {"location":0,"placement":0,"options":1,"mask":18446744073709551615})";
    const char* session = R"(tap {"location":1,"placement":1,"options":1,"mask":264245502})";
    for (const auto& [variant, tap] :
         {std::pair{0, session}, std::pair{1, session}, std::pair{2, hid}, std::pair{3, session},
          std::pair{5, hid}, std::pair{7, session}, std::pair{8, hid}}) {
        Tapped program(variant);
        program.app.applicationDidFinishLaunching();
        const Lines effects = program.effects({"monitor", "tap", "log"});
        EXPECT_THAT(effects, testing::Contains(tap)) << variant;
        EXPECT_THAT(effects, testing::Not(testing::Contains(testing::HasSubstr("10.14"))))
            << variant;
    }
}

TEST(Tap, RunsTheLoopFromInsideStartSoThatItsLaterStepsWait) {
    Tapped program(variants::barrier);
    program.settled().platform.pointer.place({100, 100});
    bool insideTheLoop = false;
    program.platform.runLoop.setWhileRunning([&] {
        insideTheLoop = true;
        EXPECT_THAT(program.effects({"window"}), IsEmpty());
    });
    program.app.applicationDidFinishLaunching();
    EXPECT_TRUE(insideTheLoop);
    EXPECT_THAT(program.effects({"window"}), testing::SizeIs(1)) << "once the loop has ended";
}

TEST(Tap, IsChosenByTheServicesVersion) {
    for (const auto& [version, tapped] : {std::pair{platform::Version{10, 13, 99}, true},
                                          std::pair{platform::Version{9, 99, 0}, true},
                                          std::pair{platform::Version{10, 14, 0}, false},
                                          std::pair{platform::Version{10, 15, 7}, false},
                                          std::pair{platform::Version{11, 0, 0}, false}}) {
        Tapped program(variants::wrapAround, version);
        program.app.applicationDidFinishLaunching();
        EXPECT_THAT(program.effects({"tap"}), testing::SizeIs(tapped ? 1 : 0));
    }
}

TEST(Tap, ForwardsTheEventsOwnPlaceAndKeyPressesToo) {
    Tapped program(variants::wrapAround);
    program.app.applicationDidFinishLaunching();
    program.platform.pointer.place({640, 480});
    program.platform.input.deliver({.type = EventType::keyDown, .location = {0, 300}});
    EXPECT_THAT(program.effects({"warp"}), ElementsAre(R"(warp {"to":[3199,480]})"))
        << "the left edge, by the event's own place";
}

TEST(Tap, AppliesTheScrollRuleOfTheCursorHider) {
    Tapped program(variants::cursorHider);
    program.app.applicationDidFinishLaunching();
    program.setting(keys::SHOW_ON_SCROLL, Value{false});
    program.pointer({900, 300}, EventType::scrollWheel);
    EXPECT_EQ(program.app.cordmouse, (Point{0, 0}));
    program.setting(keys::SHOW_ON_SCROLL, Value{true});
    program.pointer({900, 300}, EventType::scrollWheel);
    EXPECT_EQ(program.app.cordmouse, (Point{900, 300}));
}

TEST(Forwarder, DropsEventsWhenThereIsNoApplicationObject) {
    ASSERT_EQ(AppDelegate::shared(), nullptr);
    Appoggio::onMouseMovedOrClicked({1, 2});
    Appoggio::onKeyPressed(55);
    Program program(variants::wrapAround);
    EXPECT_EQ(AppDelegate::shared(), &program.app);
}

} // namespace
} // namespace palisor
