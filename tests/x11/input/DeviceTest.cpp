#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"
#include "tests/x11/SeenEvents.h"

#include <xcb/xinput.h>

// Devices of other kinds than a mouse: a touch screen, a pen, a fine wheel, many buttons, and
// somebody else's.

using platform::EventType;
using platform::InputEvent;
using platform::Point;
using support::Device;
using x11tests::Session;

namespace {

constexpr platform::Rect leftScreen{0, 0, 1920, 1080};

struct X11Devices : x11tests::SeenEvents, testing::Test {
    static support::PrivateDesktop::Options withAll() {
        support::PrivateDesktop::Options options;
        options.layout = "1920x1080+0+0,1280x1024+1920+56";
        options.devices = {Device::pointer, Device::pen, Device::touchScreen};
        options.bus = false;
        return options;
    }
    void SetUp() override {
        if (!desktop.hasDevices()) GTEST_SKIP() << "needs Xorg and its driver inputtest";
        mouse = desktop.device(0);
        pen = desktop.device(1);
        screen = desktop.device(2);
        session = std::make_unique<Session>(desktop.display(), GAMMA_GUARD);
        monitor(*session);
    }
    void runPastScroll() { SeenEvents::runPastScroll(*session, hand); }
    std::vector<EventType> types() const {
        std::vector<EventType> all;
        for (const InputEvent& e : seen)
            all.push_back(e.type);
        return all;
    }
    bool comes(std::size_t count) {
        return session->loop.runUntil([&] { return seen.size() >= count; });
    }

    support::PrivateDesktop desktop{withAll()};
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
    std::unique_ptr<Device> mouse, pen, screen;
    std::unique_ptr<Session> session;
};

} // namespace

TEST_F(X11Devices, TellATouchAsAMoveAPressADragAndARelease) {
    screen->touch(1, 400, 300);
    ASSERT_TRUE(comes(2));
    screen->drag(1, 450, 310);
    ASSERT_TRUE(comes(3));
    screen->lift(1, 450, 310);
    runPastScroll();
    EXPECT_EQ(types(),
              (std::vector<EventType>{EventType::mouseMoved, EventType::leftMouseDown,
                                      EventType::leftMouseDragged, EventType::leftMouseUp}));
    const Point first{400, 300}, last{450, 310};
    EXPECT_EQ(seen[0].location, first);
    EXPECT_EQ(seen[1].location, first);
    EXPECT_EQ(seen[2].location, last);
    EXPECT_EQ(seen[3].location, last);
    EXPECT_EQ(placesAsked[1].first, first);
    hand.relative(3, 0);
    runPastScroll();
    EXPECT_EQ(seen.back().type, EventType::mouseMoved) << "nothing is held any more";
}

TEST_F(X11Devices, TellATouchAtItsPlaceThoughTheCursorHasBeenPutBack) {
    answer = [&](const InputEvent& event) {
        if (event.type == EventType::mouseMoved) session->pointer.warp({100, 100});
    };
    screen->touch(1, 2500, 700);
    ASSERT_TRUE(comes(2));
    EXPECT_EQ(seen[1].type, EventType::leftMouseDown);
    EXPECT_EQ(seen[1].location, (Point{2500, 700}));
    session->sync();
    EXPECT_EQ(eye.cursor(), (support::Spot{100, 100}));
}

TEST_F(X11Devices, TouchWhereTheServerPutsTheCursor) {
    const support::Spot places[] = {{0, 0},      {1, 1},       {1919, 1079}, {1920, 56},
                                    {3199, 100}, {3199, 1079}, {777, 333}};
    for (const auto& [x, y] : places) {
        screen->touch(1, x, y);
        screen->lift(1, x, y);
        runPastScroll();
        const support::Spot at = eye.cursor();
        EXPECT_EQ(seen.back().location, (Point{at.x + 0.0, at.y + 0.0})) << x << ", " << y;
    }
}

TEST(X11Touch, FollowsADesktopThatGrows) {
    support::PrivateDesktop desktop{X11Devices::withAll()};
    if (!desktop.hasDevices()) GTEST_SKIP() << "needs Xorg and its driver inputtest";
    Session session(desktop.display(), GAMMA_GUARD);
    support::Hand hand(desktop.display());
    x11tests::SeenEvents events;
    events.monitor(session);
    desktop.plug("DUMMY2", "1024x768+3200+0");
    events.runPastScroll(session, hand);
    const auto screen = desktop.device(2);
    screen->touch(1, 3500, 300);
    screen->lift(1, 3500, 300);
    events.runPastScroll(session, hand);
    ASSERT_FALSE(events.seen.empty());
    EXPECT_EQ(events.seen.back().location, (Point{3500, 300}));
}

TEST(MotionWatch, ReadsWhatTellsPlacesHoweverFast) {
    platform::x11::MotionWatch watch;
    constexpr std::uint16_t mouse = 9;
    for (int i = 0; i < 130; ++i)
        watch.place();
    for (int i = 0; i < 130; ++i)
        watch.event({1, 0}, mouse);
    watch.looked(true);
    EXPECT_FALSE(watch.frameEnded());
    EXPECT_TRUE(watch.readsEvents());
}

TEST_F(X11Devices, CountOfSeveralFingersTheOneThatMovesTheCursor) {
    screen->touch(1, 400, 300);
    screen->touch(2, 900, 300);
    screen->drag(2, 950, 300);
    screen->lift(1, 400, 300);
    screen->touch(3, 700, 700);
    screen->lift(3, 700, 700);
    screen->lift(2, 950, 300);
    screen->touch(4, 800, 800);
    screen->lift(4, 800, 800);
    runPastScroll();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::mouseMoved, EventType::leftMouseDown,
                                               EventType::leftMouseUp, EventType::mouseMoved,
                                               EventType::leftMouseDown, EventType::leftMouseUp}));
    EXPECT_EQ(seen[3].location, (Point{800, 800}));
}

TEST_F(X11Devices, CountATouchOnceWhereAProgramTakesTouchesToo) {
    const support::XConnection other(desktop.display());
    support::own(xcb_input_xi_query_version_reply(
        other.get(), xcb_input_xi_query_version(other.get(), 2, 2), nullptr));
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } wanted{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
             XCB_INPUT_XI_EVENT_MASK_TOUCH_BEGIN | XCB_INPUT_XI_EVENT_MASK_TOUCH_UPDATE |
                 XCB_INPUT_XI_EVENT_MASK_TOUCH_END};
    xcb_input_xi_select_events(other.get(), other.root(), 1, &wanted.head);
    other.sync();
    screen->touch(1, 400, 300);
    screen->drag(1, 450, 310);
    screen->lift(1, 450, 310);
    runPastScroll();
    std::size_t presses = 0, releases = 0;
    for (const InputEvent& e : seen) {
        presses += e.type == EventType::leftMouseDown;
        releases += e.type == EventType::leftMouseUp;
    }
    EXPECT_EQ(presses, 1u);
    EXPECT_EQ(releases, 1u);
    EXPECT_EQ(seen.back().location, (Point{450, 310}));
}

TEST_F(X11Devices, AddScrollingByLessThanANotchUpToNotches) {
    for (int part = 0; part < 24; ++part) // three notches
        mouse->scroll(15);
    for (int part = 0; part < 12; ++part) // one back
        mouse->scroll(-10);
    for (int part = 0; part < 8; ++part) // two to the side
        mouse->scrollAcross(30);
    mouse->scroll(600); // five at once
    hand.relative(1, 0);
    ASSERT_TRUE(session->loop.runUntil(
        [&] { return !seen.empty() && seen.back().type == EventType::mouseMoved; }));
    EXPECT_EQ(std::ranges::count(types(), EventType::scrollWheel), 3 + 1 + 2 + 5);
}

TEST_F(X11Devices, DragWithEveryButton) {
    const struct {
        int button;
        EventType drag;
    } rows[] = {{1, EventType::leftMouseDragged},  {2, EventType::otherMouseDragged},
                {3, EventType::rightMouseDragged}, {8, EventType::otherMouseDragged},
                {9, EventType::otherMouseDragged}, {12, EventType::otherMouseDragged}};
    for (const auto& row : rows) {
        seen.clear();
        mouse->press(row.button);
        mouse->move(5, 0);
        runPastScroll();
        mouse->release(row.button);
        mouse->move(5, 0);
        runPastScroll();
        ASSERT_EQ(seen.size(), 4u) << row.button;
        EXPECT_EQ(seen[1].type, row.drag) << row.button;
        EXPECT_EQ(seen[3].type, EventType::mouseMoved) << row.button;
    }
}

namespace {

/// Somebody else's pointer, to whom the device belongs from here on.
struct SecondMaster {
    SecondMaster(const std::string& display, const std::string& device) : x(display) {
        support::own(xcb_input_xi_query_version_reply(
            x.get(), xcb_input_xi_query_version(x.get(), 2, 2), nullptr));
        struct {
            xcb_input_add_master_t head{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ADD_MASTER, 4, 6, 1, 1};
            char name[8] = "second";
        } add;
        xcb_input_xi_change_hierarchy(x.get(), 1,
                                      reinterpret_cast<const xcb_input_hierarchy_change_t*>(&add));
        id = find("second pointer");
        const xcb_input_attach_slave_t attach{XCB_INPUT_HIERARCHY_CHANGE_TYPE_ATTACH_SLAVE, 2,
                                              find(device), id};
        xcb_input_xi_change_hierarchy(
            x.get(), 1, reinterpret_cast<const xcb_input_hierarchy_change_t*>(&attach));
        x.sync();
    }
    std::uint16_t find(const std::string& name) const {
        const auto reply = support::own(xcb_input_xi_query_device_reply(
            x.get(), xcb_input_xi_query_device(x.get(), XCB_INPUT_DEVICE_ALL), nullptr));
        for (auto it = xcb_input_xi_query_device_infos_iterator(reply.get()); it.rem;
             xcb_input_xi_device_info_next(&it)) {
            const std::string one(
                xcb_input_xi_device_info_name(it.data),
                static_cast<std::size_t>(xcb_input_xi_device_info_name_length(it.data)));
            if (one == name) return it.data->deviceid;
        }
        throw std::runtime_error("no device " + name);
    }
    support::Spot place() const {
        const auto reply = support::own(xcb_input_xi_query_pointer_reply(
            x.get(), xcb_input_xi_query_pointer(x.get(), x.root(), id), nullptr));
        if (!reply) throw std::runtime_error("no second pointer");
        return {reply->root_x >> 16, reply->root_y >> 16};
    }

    support::XConnection x;
    std::uint16_t id = 0;
};

} // namespace

TEST_F(X11Devices, AreNothingToTheProgramWhereTheyBelongToASecondPointer) {
    session->pointer.holdInside(leftScreen);
    session->sync();
    hand.moveTo(900, 500);
    runPastScroll();
    seen.clear();
    const SecondMaster other(desktop.display(), Device::nameOf(0));
    for (int step = 0; step < 40; ++step)
        mouse->move(40, 1);
    mouse->press(1);
    mouse->release(1);
    mouse->scroll(240);
    runPastScroll();
    EXPECT_EQ(types(), std::vector<EventType>{});
    EXPECT_GT(other.place().x, 1920) << "it is not held either";
    EXPECT_EQ(eye.cursor(), (support::Spot{900, 500}));
    hand.relative(5, 0);
    runPastScroll();
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].location, (Point{905, 500}));
    EXPECT_EQ(session->log.lines, std::vector<std::string>{});
}

TEST_F(X11Devices, OfASecondPointerAreLeftAloneWhileTheCursorIsPausedAfterAWarp) {
    const SecondMaster other(desktop.display(), Device::nameOf(0));
    const support::Spot before = other.place();
    session->pointer.setLocalEventsSuppressionInterval(60);
    session->pointer.warp({before.x + 20.0, before.y + 0.0});
    session->sync();
    for (int step = 0; step < 20; ++step)
        mouse->move(3, 0);
    EXPECT_EQ(other.place(), (support::Spot{before.x + 60, before.y}));
}
