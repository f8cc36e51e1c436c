#include "Session.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

#include <algorithm>
#include <gtest/gtest.h>

using platform::WindowColour;
using platform::WindowKind;
using support::Colour;
using x11tests::Session;

namespace {

constexpr Colour white{255, 255, 255};
constexpr support::Area onSecond{2000, 100, 600, 400};

struct X11Overlay : testing::Test {
    void show(float alpha, WindowColour colour = WindowColour::black,
              WindowKind kind = WindowKind::dark) {
        platform::WindowStyle style;
        style.kind = kind;
        style.frame = session.displays.screens()[1].frame;
        style.alpha = alpha;
        style.background = colour;
        window = session.windows.create(style);
        window->makeKeyAndOrderFront();
        session.connection.sync();
    }
    /// The program must run meanwhile: it changes over by itself.
    bool turnsInto(int x, int y, Colour colour) {
        return session.loop.runUntil([&] { return eye.colour(x, y) == colour; });
    }
    bool coveredBy(bool inputOnly) {
        return session.loop.runUntil([&] {
            for (const auto& seen : eye.windows())
                if (seen.title == "overlay-tests") return seen.inputOnly == inputOnly;
            return false;
        });
    }
    int pressesAfterClick(support::TestWindow& beneath) {
        hand.moveTo(2200, 300);
        hand.click(1);
        return beneath.presses();
    }

    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+56"};
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
    Session session{desktop.display(), GAMMA_GUARD};
    std::unique_ptr<platform::Window> window;
};

} // namespace

TEST_F(X11Overlay, SwallowsClicksWithoutACompositor) {
    support::TestWindow beneath(desktop.display(), onSecond, white);
    ASSERT_EQ(pressesAfterClick(beneath), 1) << "the window must be reachable at all";
    show(0.5f);
    EXPECT_EQ(pressesAfterClick(beneath), 1);
    window->setIgnoresMouseEvents(true);
    session.connection.sync();
    EXPECT_EQ(pressesAfterClick(beneath), 2);
    window->setIgnoresMouseEvents(false);
    session.connection.sync();
    EXPECT_EQ(pressesAfterClick(beneath), 2);
    window->orderOut();
    session.connection.sync();
    EXPECT_EQ(pressesAfterClick(beneath), 3);
}

TEST_F(X11Overlay, SwallowsClicksWithACompositor) {
    desktop.startCompositor();
    support::TestWindow beneath(desktop.display(), onSecond, white);
    show(0);
    ASSERT_TRUE(coveredBy(false));
    EXPECT_EQ(pressesAfterClick(beneath), 0);
    window->setIgnoresMouseEvents(true);
    session.connection.sync();
    EXPECT_EQ(pressesAfterClick(beneath), 1);
    window->setIgnoresMouseEvents(false);
    session.connection.sync();
    EXPECT_EQ(pressesAfterClick(beneath), 1);
    window.reset();
    session.connection.sync();
    EXPECT_EQ(pressesAfterClick(beneath), 2);
}

TEST_F(X11Overlay, LetsNoClickThroughToTheRoot) {
    support::XConnection manager(desktop.display());
    const std::uint32_t mask = XCB_EVENT_MASK_BUTTON_PRESS;
    xcb_change_window_attributes(manager.get(), manager.root(), XCB_CW_EVENT_MASK, &mask);
    manager.sync();
    show(0.5f);
    hand.moveTo(2200, 300);
    hand.click(3);
    manager.sync();
    EXPECT_EQ(manager.nextEvent(), nullptr);
    window.reset();
    session.connection.sync();
    hand.click(3);
    manager.sync();
    EXPECT_NE(manager.nextEvent(), nullptr) << "without the overlay the root hears it";
}

TEST_F(X11Overlay, BlendsWithWhatLiesBelow) {
    desktop.startCompositor();
    support::TestWindow beneath(desktop.display(), onSecond, white);
    ASSERT_TRUE(turnsInto(2200, 300, white));
    show(0.6f);
    EXPECT_TRUE(turnsInto(2200, 300, {102, 102, 102}));
    const auto before = eye.windows().size();
    window->setAlpha(0.2f);
    session.connection.sync();
    EXPECT_TRUE(turnsInto(2200, 300, {204, 204, 204}));
    EXPECT_EQ(eye.windows().size(), before) << "no window is made anew";
    show(0.6f, WindowColour::red, WindowKind::marker);
    EXPECT_TRUE(turnsInto(2200, 300, {255, 102, 102}));
    show(1, WindowColour::clear, WindowKind::border);
    EXPECT_TRUE(turnsInto(2200, 300, white));
}

TEST_F(X11Overlay, CastsNoShadowOnTheNeighbour) {
    const auto picom = desktop.spawn(
        "picom", {"--config", "/dev/null", "--backend=xrender", "--shadow", "--shadow-radius=24",
                  "--shadow-offset-x=-24", "--shadow-offset-y=-24", "--shadow-opacity=1"});
    support::TestWindow wall(desktop.display(), {1600, 100, 1000, 800}, white);
    support::TestWindow other(desktop.display(), {1650, 200, 100, 100}, white);
    show(0.6f);
    ASSERT_TRUE(turnsInto(2200, 600, {102, 102, 102}));
    ASSERT_TRUE(session.loop.runUntil([&] { return eye.colour(1645, 250).red < 240; }))
        << "an ordinary window has a shadow here";
    for (int x = 1880; x < 1920; ++x)
        EXPECT_EQ(eye.colour(x, 600), white) << x;
}

namespace {

struct X11OverlayUnder : X11Overlay, testing::WithParamInterface<const char*> {};

} // namespace

TEST_P(X11OverlayUnder, StaysOverAFullScreenWindowThatComesLater) {
    desktop.startWindowManager(GetParam());
    desktop.startCompositor();
    show(0.6f);
    support::TestWindow film(desktop.display(), onSecond, white, "film");
    film.makeFullScreen();
    EXPECT_TRUE(turnsInto(1930, 70, {102, 102, 102}));
    hand.moveTo(2200, 300);
    hand.click(1);
    EXPECT_EQ(film.presses(), 0);
    window.reset();
    session.connection.sync();
    EXPECT_TRUE(turnsInto(1930, 70, white));
}

TEST_P(X11OverlayUnder, CatchesClicksOverAFullScreenWindowWithoutACompositor) {
    desktop.startWindowManager(GetParam());
    show(0.6f);
    support::TestWindow film(desktop.display(), onSecond, white, "film");
    film.makeFullScreen();
    EXPECT_TRUE(
        session.loop.runUntil([&] { return eye.windows().back().title == "overlay-tests"; }));
    hand.moveTo(2200, 300);
    hand.click(1);
    EXPECT_EQ(film.presses(), 0);
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, X11OverlayUnder, testing::Values("openbox", "xfwm4"),
                         [](const auto& manager) { return std::string(manager.param); });

TEST_F(X11Overlay, LeavesAMenuAboveItself) {
    desktop.startWindowManager("xfwm4");
    show(0.6f);
    support::XConnection other(desktop.display());
    const xcb_window_t menu = xcb_generate_id(other.get());
    const std::uint32_t unmanaged = 1;
    xcb_create_window(other.get(), XCB_COPY_FROM_PARENT, menu, other.root(), 2000, 100, 200, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &unmanaged);
    xcb_map_window(other.get(), menu);
    other.sync();
    support::TestWindow film(desktop.display(), onSecond, white, "film");
    film.makeFullScreen();
    auto place = [&](auto matches) {
        const auto all = eye.windows();
        return std::find_if(all.begin(), all.end(), matches) - all.begin();
    };
    const auto overlayPlace = [&] {
        return place([](const auto& w) { return w.title == "overlay-tests"; });
    };
    const auto menuPlace = [&] { return place([&](const auto& w) { return w.id == menu; }); };
    const auto filmPlace = [&] {
        return place(
            [&](const auto& w) { return w.mapped && !w.overrideRedirect && w.area.width == 1280; });
    };
    EXPECT_TRUE(session.loop.runUntil([&] { return overlayPlace() > filmPlace(); }));
    EXPECT_EQ(menuPlace() > overlayPlace(), menuPlace() > filmPlace())
        << "the overlay goes directly above what it has to cover";
}

TEST_F(X11Overlay, IsNumberedWhenItFirstComesOnScreen) {
    auto first = session.windows.create({});
    auto second = session.windows.create({});
    EXPECT_EQ(first->id(), 0u);
    second->makeKeyAndOrderFront();
    first->makeKeyAndOrderFront();
    second->orderOut();
    second->makeKeyAndOrderFront();
    EXPECT_EQ(second->id(), 1u);
    EXPECT_EQ(first->id(), 2u);
}
