#include "unit/Program.h"

#include <gmock/gmock.h>

// What the platform is asked to hold.

namespace palisor {
namespace {

using platform::Rect;
using platform::Value;

TEST(HeldScreen, IsTheOneThatTheBarrierIsAnchoredOn) {
    Program program(variants::barrier);
    program.platform.pointer.place({2000, 500});
    program.launched();
    EXPECT_EQ(program.platform.pointer.heldInside(), right);
}

TEST(HeldScreen, IsNoneWhileTheBarrierIsSwitchedOff) {
    Program program(variants::barrier);
    program.launched();
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
    program.app.enableDisable();
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    program.app.enableDisable();
    EXPECT_EQ(program.platform.pointer.heldInside(), left);
}

TEST(HeldScreen, IsTheOtherOneAfterACrossing) {
    Program program(variants::barrier);
    program.setting(keys::VELOCITY_OPTION, Value{true});
    program.platform.pointer.place({1900, 500});
    program.launched();
    program.pointer({1900, 500});
    program.pointer({2100, 500});
    EXPECT_EQ(program.platform.pointer.heldInside(), right);
}

TEST(HeldScreen, IsAskedForBeforeTheWindowsChange) {
    Program program(variants::barrier);
    program.setting(keys::VELOCITY_OPTION, Value{true});
    program.launched();
    program.pointer({1900, 500});
    std::vector<std::optional<Rect>> held; // at each change of a window
    program.platform.effects.setSink([&](const platform::memory::Effect& effect) {
        if (effect.name.starts_with("window"))
            held.push_back(program.platform.pointer.heldInside());
    });
    const auto heldMeanwhile = [&held] { return std::exchange(held, {}); };
    program.app.enableDisable();
    EXPECT_THAT(heldMeanwhile(), testing::ElementsAre(std::nullopt)) << "lightened";
    program.app.enableDisable();
    EXPECT_THAT(heldMeanwhile(), testing::ElementsAre(left)) << "darkened";
    program.pointer({2100, 500});
    EXPECT_THAT(heldMeanwhile(), testing::ElementsAre(std::nullopt, right)) << "crossed";
    program.platform.displays.change(screensFromLayout(oneMonitor));
    EXPECT_THAT(heldMeanwhile(), testing::ElementsAre(std::nullopt)) << "one monitor";
}

TEST(HeldScreen, FollowsAChangeOfTheLayoutAndIsNoneOnOneMonitor) {
    Program program(variants::barrier);
    program.launched();
    program.platform.displays.change(screensFromLayout("1280x1024+0+0,1280x1024+1280+0"));
    EXPECT_EQ(program.platform.pointer.heldInside(), (Rect{0, 0, 1280, 1024}));
    program.platform.displays.change(screensFromLayout(oneMonitor));
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
}

TEST(HeldScreen, IsNoneInTheOtherProducts) {
    for (const int variant : {0, 1, 2, 3, 5, 7, 9}) {
        Program program(variant);
        program.launched();
        program.app.enableDisable();
        program.app.enableDisable();
        EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt) << variant;
    }
}

} // namespace
} // namespace palisor
