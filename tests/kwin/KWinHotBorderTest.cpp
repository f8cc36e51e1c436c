#include "kwin/PlasmaSession.h"

// The cursor hider's hot borders, with a mouse of the compositor around KWin's: its pictures have
// the cursor.

namespace desktop {
namespace {

struct KWinHotBorder : ShownKWin {
    /// On a monitor that shows nothing else.
    bool isDrawn() const {
        const auto pixels = picture().pixels;
        return std::ranges::any_of(pixels, [](const Colour& one) { return one.red > 128; });
    }
    bool isDrawnSoon(bool drawn) const {
        return waitUntil([&] { return isDrawn() == drawn; });
    }
};

TEST_F(KWinHotBorder, HidesTheCursorAtOnceAndShowsItInside) {
    beginShown();
    support::SwayHand mouse(*screen);
    mouse.moveTo(50, 300);
    mouse.relative(1, 0);
    ASSERT_TRUE(isDrawnSoon(true)) << "the picture has no cursor at all";
    start({.product = "vellumor",
           .more = {{"SCHEDULE", text("30")},
                    {"HOT_BOUNDS", text("1")},
                    {"TIME_MODE", flag(false)},
                    {"STAY_HIDDEN", flag(false)}}});
    const auto strips = [&] {
        return kwin->evaluate("workspace.windowList().filter(one => one.frameGeometry.width === 2 "
                              "&& one.frameGeometry.x === 0).length > 0") == "true";
    };
    ASSERT_TRUE(waitUntil(strips)) << program->errors();
    for (int time = 0; time < 2; ++time) {
        mouse.moveTo(50, 300);
        mouse.relative(1, 0);
        EXPECT_TRUE(isDrawnSoon(true)) << program->errors();
        keep("border-inside");
        mouse.push(-7, 0, 12, 125);
        EXPECT_TRUE(isDrawnSoon(false)) << "at the border, time " << time;
        keep("border-at");
    }
    mouse.push(20, 0, 5, 125);
    EXPECT_TRUE(isDrawnSoon(true));
}

} // namespace
} // namespace desktop
