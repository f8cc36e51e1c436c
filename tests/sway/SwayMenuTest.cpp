#include "sway/SwaySession.h"

namespace desktop {
namespace {

TEST_F(Sway, ShowsItsMenuBesideTheWindowsAndHoldsAgainWhenItHasClosed) {
    start({.pushOption = true});
    const auto hasWindow = [&](const std::string& kind) {
        const std::string tree = sway->ask("get_tree");
        return tree.find("com.tamberlo.palisor") != std::string::npos &&
               tree.find(kind) != std::string::npos;
    };
    ASSERT_EQ(run()->wait(), 0); // the second start
    ASSERT_TRUE(waitUntil([&] { return hasWindow("floating_con"); })) << sway->ask("get_tree");
    SwayKeys keys(*sway);
    EXPECT_TRUE(waitUntil([&] {
        keys.press(KEY_ESC);
        keys.release(KEY_ESC);
        return !hasWindow("");
    }));
    hand->moveTo(1900, 500);
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(1));
}

} // namespace
} // namespace desktop
