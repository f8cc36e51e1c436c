#include "TestLoop.h"
#include "platform/qt/pictures/Pictures.h"
#include "platform/x11/overlay/Windows.h"
#include "platform/x11/session/Displays.h"
#include "testing/KeptLog.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

#include <gtest/gtest.h>
#include <stdexcept>

using support::Colour;

namespace {

constexpr Colour white{255, 255, 255};
constexpr Colour line{255, 165, 61}; ///< the outermost of the frame's colours

// The second monitor is at +1280+0; the frame's line is 8/1600 of its width, which is 5 pixels.
constexpr support::Area second{1280, 0, 1024, 768};
constexpr support::Spot onLine{1282, 400}, inGlow{1290, 400}, faint{1320, 400}, inMiddle{1792, 384};

struct CountedPictures final : platform::PictureSource {
    explicit CountedPictures(platform::Log& log) : real({IMAGES}, log) {}
    std::unique_ptr<platform::Picture> picture(const std::string& name, int width,
                                               int height) const override {
        ++asked;
        return real.picture(name, width, height);
    }

    platform::qt::Pictures real;
    mutable int asked = 0;
};

struct X11PictureOverlay : testing::Test {
    static platform::x11::Connection& checked(platform::x11::Connection::Opened& opened) {
        if (!opened.connection) throw std::runtime_error(opened.error);
        return *opened.connection;
    }

    std::unique_ptr<platform::Window> makeWindow(platform::Rect frame) {
        return windows.create(
            {.kind = platform::WindowKind::dark, .frame = frame, .image = "hotBordersModeOn"});
    }
    void show() {
        window = makeWindow(displays.screens()[1].frame);
        window->makeKeyAndOrderFront();
        connection.sync();
    }
    Colour seen(support::Spot spot) { return eye.colour(spot.x, spot.y); }
    /// The program runs meanwhile.
    bool turnsInto(support::Spot spot, Colour colour) {
        return loop.runUntil([&] { return seen(spot) == colour; });
    }
    /// More red than blue, and not as strong as the line.
    bool glows(support::Spot spot) {
        return loop.runUntil([&] {
            const Colour c = seen(spot);
            return c.red == 255 && c.blue < 240 && c.blue > line.blue;
        });
    }
    int pressesAfterClick(support::TestWindow& beneath, support::Spot spot) {
        hand.moveTo(spot.x, spot.y);
        hand.click(1);
        return beneath.presses();
    }
    void expectClicksOnlyBeforeAndAfter(support::TestWindow& beneath) {
        for (const support::Spot spot : {onLine, inMiddle}) {
            const int before = beneath.presses();
            ASSERT_EQ(pressesAfterClick(beneath, spot), before + 1) << "reachable at all";
            show();
            EXPECT_TRUE(turnsInto(onLine, line));
            EXPECT_EQ(pressesAfterClick(beneath, spot), before + 1);
            window->setIgnoresMouseEvents(true);
            connection.sync();
            EXPECT_EQ(pressesAfterClick(beneath, spot), before + 2);
            window->setIgnoresMouseEvents(false);
            connection.sync();
            EXPECT_EQ(pressesAfterClick(beneath, spot), before + 2);
            window->orderOut();
            connection.sync();
            EXPECT_EQ(pressesAfterClick(beneath, spot), before + 3);
        }
    }

    support::PrivateDesktop desktop{"1280x1024+0+0,1024x768+1280+0"};
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
    testing_support::KeptLog log;
    x11tests::TestLoop loop;
    platform::x11::Connection::Opened opened =
        platform::x11::Connection::open(desktop.display(), loop, log, [] {});
    platform::x11::Connection& connection = checked(opened);
    platform::x11::Displays displays{connection};
    CountedPictures pictures{log};
    platform::x11::GammaMeans means{GAMMA_GUARD, desktop.runtimeFolder(), loop};
    platform::x11::Windows windows{connection, displays, log, "picture-tests", means, &pictures};
    std::unique_ptr<platform::Window> window;
};

/// Draws nothing and notes which rows were asked for.
struct NotedPicture final : platform::Picture {
    NotedPicture(int pixelsInRow, std::vector<int>& asked, std::size_t& most)
        : width(pixelsInRow), timesAsked(asked), largest(most) {}
    void draw(int firstRow, std::span<std::uint32_t> pixels) override {
        largest = std::max(largest, pixels.size_bytes());
        const int rows = static_cast<int>(pixels.size()) / width;
        for (int row = firstRow; row < firstRow + rows; ++row)
            ++timesAsked.at(static_cast<std::size_t>(row));
    }
    int width;
    std::vector<int>& timesAsked;
    std::size_t& largest;
};

struct NotedPictures final : platform::PictureSource {
    std::unique_ptr<platform::Picture> picture(const std::string&, int width, int) const override {
        return std::make_unique<NotedPicture>(width, timesAsked, largest);
    }

    mutable std::vector<int> timesAsked = std::vector<int>(2160);
    mutable std::size_t largest = 0;
};

} // namespace

TEST_F(X11PictureOverlay, BlendsItsFrameWithWhatLiesBelow) {
    desktop.startCompositor();
    support::TestWindow beneath(desktop.display(), second, white);
    ASSERT_TRUE(turnsInto(onLine, white));
    show();
    EXPECT_TRUE(turnsInto(onLine, line));
    EXPECT_TRUE(turnsInto({second.x + second.width - 1, 400}, line));
    EXPECT_TRUE(turnsInto({inMiddle.x, 0}, line));
    EXPECT_TRUE(turnsInto({inMiddle.x, second.height - 1}, line));
    EXPECT_TRUE(glows(inGlow));
    EXPECT_EQ(seen(inMiddle), white);
    EXPECT_EQ(eye.picture({1270, 390, 10, 10}).brightness(),
              eye.picture({0, 0, 10, 10}).brightness())
        << "nothing of it is on the neighbour";
    window->orderOut();
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, white));
}

TEST_F(X11PictureOverlay, FadesWithoutBeingSentAgain) {
    desktop.startCompositor();
    support::TestWindow beneath(desktop.display(), second, white);
    show();
    ASSERT_TRUE(glows(faint)) << "the program has heard of the compositor";
    ASSERT_TRUE(turnsInto(onLine, line));
    const int before = pictures.asked;
    window->setAlpha(0.4f);
    connection.sync();
    EXPECT_TRUE(loop.runUntil([&] {
        const Colour c = seen(onLine);
        return std::abs(c.green - (255 - 90 * 0.4)) <= 2 &&
               std::abs(c.blue - (255 - 194 * 0.4)) <= 2;
    })) << "0.4 of the line's colour over white";
    window->setAlpha(0);
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, white));
    window->setAlpha(1);
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, line));
    EXPECT_EQ(pictures.asked, before);
}

TEST_F(X11PictureOverlay, IsCutOutWithoutACompositor) {
    support::TestWindow beneath(desktop.display(), second, white);
    show();
    EXPECT_TRUE(turnsInto(onLine, line));
    EXPECT_TRUE(turnsInto({second.x + second.width - 1, 400}, line));
    EXPECT_TRUE(turnsInto({inMiddle.x, 0}, line));
    EXPECT_TRUE(turnsInto({inMiddle.x, second.height - 1}, line));
    EXPECT_EQ(seen(inMiddle), white);
    EXPECT_EQ(seen(faint), white) << "the faint part of the glow is left out";
    window->setAlpha(0.4f);
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, white));
    window->setAlpha(0.6f);
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, line));
    window->orderOut();
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, white));
}

TEST_F(X11PictureOverlay, SwallowsClicksOnlyWhileItShowsWithACompositor) {
    desktop.startCompositor();
    support::TestWindow beneath(desktop.display(), second, white);
    expectClicksOnlyBeforeAndAfter(beneath);
}

TEST_F(X11PictureOverlay, SwallowsClicksOnlyWhileItShowsWithoutACompositor) {
    support::TestWindow beneath(desktop.display(), second, white);
    expectClicksOnlyBeforeAndAfter(beneath);
}

TEST_F(X11PictureOverlay, ChangesOverWhenACompositorComesAndGoes) {
    support::TestWindow beneath(desktop.display(), second, white);
    show();
    ASSERT_TRUE(turnsInto(onLine, line));
    ASSERT_EQ(seen(faint), white);
    desktop.startCompositor();
    EXPECT_TRUE(glows(faint));
    EXPECT_TRUE(turnsInto(onLine, line));
    desktop.stopCompositor();
    EXPECT_TRUE(turnsInto(faint, white));
    EXPECT_TRUE(turnsInto(onLine, line));
    window.reset();
    connection.sync();
    EXPECT_TRUE(turnsInto(onLine, white));
}

TEST_F(X11PictureOverlay, IsStretchedAnewWhenItsFrameChanges) {
    support::TestWindow beneath(desktop.display(), second, white);
    for (const bool composited : {false, true}) {
        SCOPED_TRACE(composited);
        if (composited) desktop.startCompositor();
        show();
        ASSERT_TRUE(turnsInto(onLine, line));
        const platform::Rect frame = displays.screens()[1].frame;
        window->setFrame({frame.x, frame.y, frame.width / 2, frame.height / 2});
        connection.sync();
        const support::Spot rightEdge{second.x + second.width / 2 - 1, second.height * 3 / 4};
        EXPECT_TRUE(turnsInto(rightEdge, line));
        EXPECT_TRUE(turnsInto({second.x + second.width - 1, 400}, white));
        window->setFrame({frame.x + 100, frame.y, frame.width / 2, frame.height / 2});
        connection.sync();
        EXPECT_TRUE(turnsInto({rightEdge.x + 100, rightEdge.y}, line));
        EXPECT_TRUE(turnsInto({second.x + 1, rightEdge.y}, white));
    }
}

TEST_F(X11PictureOverlay, IsNeverHeldAsAWhole) {
    for (const bool composited : {false, true}) {
        SCOPED_TRACE(composited);
        if (composited) desktop.startCompositor();
        NotedPictures source;
        platform::x11::Windows noted(connection, displays, log, "noted", means, &source);
        const auto wide = noted.create({.frame = {0, 0, 3840, 2160}, .image = "any"});
        wide->makeKeyAndOrderFront();
        connection.sync();
        EXPECT_EQ(source.timesAsked, std::vector<int>(2160, 1)) << "every row once";
        EXPECT_LE(source.largest, 256u * 1024);
    }
}

TEST_F(X11PictureOverlay, WithoutAPictureIsLoggedOnceAndStillCatchesClicks) {
    support::TestWindow beneath(desktop.display(), second, white);
    for (int i = 0; i < 2; ++i) {
        window = windows.create({.frame = displays.screens()[1].frame, .image = "noSuchImage"});
        window->makeKeyAndOrderFront();
        connection.sync();
        EXPECT_EQ(pressesAfterClick(beneath, inMiddle), 0);
    }
    EXPECT_EQ(log.lines, std::vector<std::string>{"cannot read the image noSuchImage"});
}
