#include "testing/desktop/PrivateDesktop.h"
#include "tests/x11/SeenEvents.h"

#include <xcb/xtest.h>

using platform::EventType;
using platform::InputEvent;
using platform::Point;
using x11tests::Session;

namespace {

struct X11InputEvents : x11tests::SeenEvents, testing::Test {
    void monitor() { SeenEvents::monitor(session); }
    void runPastScroll() { SeenEvents::runPastScroll(session, hand); }
    std::vector<EventType> types() const {
        std::vector<EventType> all;
        for (const InputEvent& e : seen)
            all.push_back(e.type);
        return all;
    }
    std::vector<int> codes() const {
        std::vector<int> all;
        for (const InputEvent& e : seen)
            all.push_back(e.keyCode);
        return all;
    }

    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+56"};
    Session session{desktop.display(), GAMMA_GUARD};
    support::Hand hand{desktop.display()};
};

} // namespace

TEST_F(X11InputEvents, AreMotionClicksDragsAndScrollsInTheirOrder) {
    monitor();
    hand.moveTo(100, 100);
    hand.pressButton(1);
    runPastScroll();
    hand.relative(5, 0);
    runPastScroll();
    hand.releaseButton(1);
    hand.pressButton(3);
    runPastScroll();
    hand.relative(5, 0);
    runPastScroll();
    hand.releaseButton(3);
    hand.click(2);
    runPastScroll();
    const std::vector<EventType> expected = {
        EventType::mouseMoved,   EventType::leftMouseDown,  EventType::leftMouseDragged,
        EventType::leftMouseUp,  EventType::rightMouseDown, EventType::rightMouseDragged,
        EventType::rightMouseUp, EventType::otherMouseDown, EventType::otherMouseUp};
    EXPECT_EQ(types(), expected);
}

TEST_F(X11InputEvents, CarryThePlaceInTopLeftCoordinates) {
    monitor();
    hand.moveTo(2345, 67);
    ASSERT_TRUE(session.loop.runUntil([&] { return !seen.empty(); }));
    EXPECT_EQ(seen.back().location, (Point{2345, 67}));
    EXPECT_EQ(placesAsked.back().first, (Point{2345, 67}));
}

TEST_F(X11InputEvents, GiveLeftAndRightModifiersTheirOwnCodes) {
    monitor();
    // keysym, virtual key code
    const std::vector<std::pair<xcb_keysym_t, int>> rows = {
        {0xffeb, 55}, {0xffe9, 58}, {0xffe3, 59}, {0xffec, 54},
        {0xffe4, 62}, {0xffe1, 56}, {0xffe2, 60}};
    std::vector<int> expected;
    for (const auto& [keysym, code] : rows) {
        hand.type(keysym);
        expected.insert(expected.end(), {code, code});
    }
    runPastScroll();
    EXPECT_EQ(codes(), expected);
    for (const InputEvent& e : seen)
        EXPECT_EQ(e.type, EventType::flagsChanged);
}

TEST_F(X11InputEvents, DoNotRepeatAHeldKey) {
    session.input.addTap({.mask = platform::allEvents},
                         [this](const InputEvent& e) { keep(e, session); });
    session.sync();
    hand.press('a');
    // A second client sees the server's repetitions; here they must not have come.
    const support::XConnection other(desktop.display());
    const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(other.get(), other.root(), XCB_CW_EVENT_MASK, &mask);
    int repetitions = 0;
    ASSERT_TRUE(other.waitUntil([&] { return repetitions >= 3; }, support::generous,
                                [&](const xcb_generic_event_t& e) {
                                    repetitions += (e.response_type & 0x7f) == XCB_KEY_PRESS;
                                }));
    hand.release('a');
    runPastScroll();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::keyDown, EventType::keyUp}));
    EXPECT_EQ(codes(), (std::vector<int>{0, 0}));
}

TEST_F(X11InputEvents, ComeAlsoWhileAnotherProgramGrabs) {
    monitor();
    const support::XConnection other(desktop.display());
    ASSERT_TRUE(other.grabPointer());
    hand.click(1);
    runPastScroll();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseUp}));
}

TEST_F(X11InputEvents, AnswerTheWarpedPlaceInsideAHandlerAndForWhatComesAfter) {
    std::vector<Point> places;
    session.input.addGlobalMonitor(monitorMask, [&](const InputEvent& e) {
        places.push_back(session.pointer.location());
        if (e.type == EventType::mouseMoved) session.pointer.warp({900, 900});
        places.push_back(session.pointer.location());
    });
    session.sync();
    hand.moveTo(100, 100);
    hand.pressButton(1);
    hand.releaseButton(1);
    ASSERT_TRUE(session.loop.runUntil([&] { return places.size() == 6; }));
    EXPECT_EQ(places, (std::vector<Point>{
                          {100, 100}, {900, 900}, {900, 900}, {900, 900}, {900, 900}, {900, 900}}));
}

TEST_F(X11InputEvents, MergeMotionThatCameTogether) {
    monitor();
    for (int i = 0; i < 500; ++i)
        hand.relative(1, 0);
    runPastScroll();
    EXPECT_GE(seen.size(), 1u);
    EXPECT_LE(seen.size(), 50u);
}

TEST_F(X11InputEvents, FollowAChangeOfTheKeyboardsMapping) {
    monitor();
    const support::XConnection other(desktop.display());
    const std::uint8_t first = xcb_get_setup(other.get())->min_keycode;
    const auto mapping = support::own(xcb_get_keyboard_mapping_reply(
        other.get(), xcb_get_keyboard_mapping(other.get(), first, 200), nullptr));
    ASSERT_TRUE(mapping);
    const int width = mapping->keysyms_per_keycode;
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    int shiftKey = 0;
    while (shiftKey < 199 && keysyms[shiftKey * width] != support::key::leftShift)
        ++shiftKey;
    const auto code = static_cast<std::uint8_t>(first + shiftKey);
    auto type = [&] {
        xcb_test_fake_input(other.get(), XCB_KEY_PRESS, code, 0, other.root(), 0, 0, 0);
        xcb_test_fake_input(other.get(), XCB_KEY_RELEASE, code, 0, other.root(), 0, 0, 0);
        other.sync();
    };
    type();
    runPastScroll();
    EXPECT_EQ(codes(), (std::vector<int>{56, 56}));

    std::vector<xcb_keysym_t> changed(static_cast<std::size_t>(width), support::key::leftSuper);
    xcb_change_keyboard_mapping(other.get(), 1, code, static_cast<std::uint8_t>(width),
                                changed.data());
    other.sync();
    seen.clear();
    runPastScroll();
    type();
    runPastScroll();
    EXPECT_EQ(codes(), (std::vector<int>{55, 55}));
}

TEST_F(X11InputEvents, FollowAUserWhoSwapsTheButtons) {
    monitor();
    const support::XConnection other(desktop.display());
    const auto now = support::own(
        xcb_get_pointer_mapping_reply(other.get(), xcb_get_pointer_mapping(other.get()), nullptr));
    ASSERT_TRUE(now && now->map_len >= 3);
    const std::uint8_t* present = xcb_get_pointer_mapping_map(now.get());
    std::vector<std::uint8_t> swapped(present, present + now->map_len);
    std::swap(swapped[0], swapped[2]);
    const auto set = support::own(xcb_set_pointer_mapping_reply(
        other.get(), xcb_set_pointer_mapping(other.get(), now->map_len, swapped.data()), nullptr));
    ASSERT_TRUE(set && set->status == XCB_MAPPING_STATUS_SUCCESS);
    runPastScroll();
    seen.clear();
    const std::uint32_t buttons = XCB_EVENT_MASK_BUTTON_PRESS;
    xcb_change_window_attributes(other.get(), other.root(), XCB_CW_EVENT_MASK, &buttons);
    other.sync();
    hand.pressButton(1);
    runPastScroll();
    unsigned told = 0;
    ASSERT_TRUE(
        other.waitUntil([&] { return told != 0; }, support::generous,
                        [&](const xcb_generic_event_t& e) {
                            if ((e.response_type & 0x7f) == XCB_BUTTON_PRESS && told == 0)
                                told = reinterpret_cast<const xcb_button_press_event_t&>(e).detail;
                        }));
    hand.releaseButton(1);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(told, 3u) << "what other programs are told";
    EXPECT_EQ(seen[0].type, EventType::rightMouseDown);
}
