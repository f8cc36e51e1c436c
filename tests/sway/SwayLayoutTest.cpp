#include "sway/SwaySession.h"

namespace desktop {
namespace {

TEST_F(Sway, CrossesFromAMonitorLeftOfTheOriginAndBack) {
    begin({.configuration = "output HEADLESS-1 position -1920 0\noutput HEADLESS-2 position 0 0"});
    start({.pushOption = true, .velocity = 50});
    hand->moveTo(1900, 500);
    hand->push(150, 0, 12, 60);
    ASSERT_TRUE(darkSoon(1));
    hand->push(-1, 0, 40, 250);
    hand->push(-150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(2)) << "it was put beside the edge that it crossed";
    EXPECT_TRUE(cursorIsOn(0));
}

} // namespace
} // namespace desktop
