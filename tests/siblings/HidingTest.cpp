#include "siblings/CursorStage.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>

namespace desktop {
namespace {

Setting hider(bool timeMode, bool hotBorders, bool stayHidden) {
    return {.product = "vellumor",
            .more = {{"SCHEDULE", text("0")},
                     {"HOT_BOUNDS", text(hotBorders ? "1" : "0")},
                     {"TIME_MODE", flag(timeMode)},
                     {"STAY_HIDDEN", flag(stayHidden)}}};
}

struct HiddenCursor : CursorStage, testing::Test {
    void startHidden() {
        product.start(hider(true, false, false));
        ASSERT_TRUE(isDrawnSoon());
        product.hand.relative(5, 0);
        ASSERT_TRUE(isGoneSoon());
    }
};

TEST_F(HiddenCursor, GoesAfterAPauseAndComesBackWithEachMovement) {
    startHidden();
    for (int time = 0; time < 5; ++time) {
        // Three events: what the program shows for the first one, it hides a pause after the last.
        product.hand.push(7, 3, 3, 1000);
        EXPECT_TRUE(isDrawnSoon());
        EXPECT_TRUE(isGoneSoon());
    }
}

TEST_F(HiddenCursor, StaysAsLongAsTheHandMoves) {
    startHidden();
    product.hand.relative(1, 0);
    ASSERT_TRUE(isDrawnSoon());
    for (int step = 0; step < 40; ++step) {
        product.hand.push(step % 2 == 0 ? 2 : -2, 0, 10, 1000);
        EXPECT_TRUE(isDrawnSoon());
    }
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(HiddenCursor, GoesAtAnArmedEdgeAndComesBackInside) {
    product.start(hider(false, true, false));
    for (const int direction : {-1, 1}) {
        product.moveToMiddle(0);
        product.hand.relative(1, 0);
        ASSERT_TRUE(isDrawnSoon());
        product.hand.push(20 * direction, 0, direction < 0 ? 21 : 20, 1000);
        EXPECT_TRUE(isGoneSoon()) << direction;
        product.hand.push(-20 * direction, 0, 3, 1000);
        EXPECT_TRUE(isDrawnSoon()) << direction;
    }
}

TEST_F(HiddenCursor, StaysHiddenUntilTheProductIsSwitchedOff) {
    product.start(hider(true, true, true));
    ASSERT_TRUE(isGoneSoon());
    product.hand.push(7, 3, 40, 1000);
    EXPECT_TRUE(isGoneSoon());
    product.switchOver();
    EXPECT_TRUE(isDrawnSoon());
    product.switchOver();
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(HiddenCursor, IsSeenWhileTheMenuIsOpenWhereverItMoves) {
    for (const bool stayHidden : {false, true}) {
        product.start(hider(true, false, stayHidden));
        product.moveToMiddle(1);
        ASSERT_TRUE(isGoneSoon()) << stayHidden;
        product.openMenu();
        // The menu is drawn too, and must not be taken for the cursor.
        const Area menu = product.menus().front();
        product.hand.moveTo(menu.x < 800 ? 1500 : 100, 300);
        ASSERT_TRUE(isDrawnSoon()) << stayHidden;
        product.hand.push(1, 1, 40, 1000);
        EXPECT_TRUE(isDrawnSoon()) << stayHidden;
        product.hand.type(support::key::escape);
        EXPECT_TRUE(product.waitForMenus(0));
        product.hand.relative(5, 0);
        EXPECT_TRUE(isGoneSoon()) << "and goes on being hidden, " << stayHidden;
        product.program->end();
    }
}

TEST_F(HiddenCursor, IsSeenWhenTheMenuOpensWithoutAMovementOfTheHand) {
    product.start(hider(true, true, true));
    product.moveToMiddle(1);
    ASSERT_TRUE(isGoneSoon());
    product.openMenu();
    // Away from the menu, which is drawn too; no device has moved.
    const support::XConnection other(product.desktop.display());
    xcb_warp_pointer(other.get(), XCB_NONE, other.root(), 0, 0, 0, 0, 100, 300);
    other.sync();
    EXPECT_TRUE(isDrawnSoon());
    product.hand.type(support::key::escape);
    EXPECT_TRUE(product.waitForMenus(0));
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(HiddenCursor, IsSeenWhileTheInformationWindowIsActive) {
    // The paper lies on the other monitor alone, and not on the window.
    const support::XConnection other(product.desktop.display());
    const std::uint32_t halfOfIt[] = {800, 0, 800};
    xcb_configure_window(other.get(), paper.id(),
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH,
                         halfOfIt);
    other.sync();
    product.desktop.startWindowManager("openbox");
    Setting setting = hider(true, false, true);
    setting.more.insert(
        {{"CHECK_0", text("0")}, {"CHECK_1", text("1")}, {"RECOMMENDAUTOLOGIN", ""}});
    product.start(setting);
    const auto frame = [this] {
        std::optional<Area> found;
        for (const support::SeenWindow& window : product.eye.windows())
            if (window.mapped && window.area.width >= 400 && window.area.width < 420 &&
                window.area.height > 300)
                found = window.area;
        return found;
    };
    ASSERT_TRUE(product.eye.waitUntilSeen([&] { return frame().has_value(); }));
    // The keyboard may have gone back to the paper; a click takes it.
    EXPECT_TRUE(waitUntil([&] {
        product.hand.clickAt(frame()->x + 10, frame()->y + frame()->height - 10);
        product.moveToMiddle(1);
        return isDrawn();
    }));
    product.hand.push(7, 3, 40, 1000);
    EXPECT_TRUE(isDrawnSoon());
    product.hand.type(support::key::escape);
    EXPECT_TRUE(waitUntil([&] { return !frame(); }));
    product.hand.relative(5, 0);
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(HiddenCursor, ComesBackHoweverTheProgramEnds) {
    for (const int signal : {SIGTERM, SIGKILL}) {
        startHidden();
        product.program->signal(signal);
        product.program->wait();
        EXPECT_TRUE(isDrawnSoon()) << signal;
    }
}

TEST_F(HiddenCursor, IsReplacedByTheCrossHairForGood) {
    product.start({.product = "crosshair"});
    product.hand.push(3, 1, 50, 1000);
    // The lines go through the place of the cursor; around them there is paper alone.
    const auto onlyLines = [&] {
        const Spot at = product.eye.cursor();
        const auto seen = framebuffer.picture({at.x - 24, at.y - 24, 48, 48});
        for (int y = at.y - 24; y < at.y + 24; ++y)
            for (int x = at.x - 24; x < at.x + 24; ++x) {
                const bool onLine = x == at.x || x == at.x - 1 || y == at.y || y == at.y - 1;
                const Colour expected = onLine ? Colour{255, 0, 0} : white;
                if (!(seen.at(x, y) == expected)) return false;
            }
        return true;
    };
    EXPECT_TRUE(waitUntil(onlyLines));
    product.program->signal(SIGKILL);
    product.program->wait();
    EXPECT_TRUE(isDrawnSoon());
}

} // namespace
} // namespace desktop
