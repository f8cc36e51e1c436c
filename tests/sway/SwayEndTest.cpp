#include "sway/SwaySession.h"

namespace desktop {
namespace {

TEST_F(Sway, IsFreeAndBrightAfterAnOrderlyEnd) {
    start();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_TRUE(isFree());
    EXPECT_FALSE(isDark());
}

TEST_F(Sway, LoadsTheModuleAndNoOtherSession) {
    start();
    std::ifstream maps("/proc/" + std::to_string(program->pid()) + "/maps");
    const std::string all{std::istreambuf_iterator<char>(maps), {}};
    EXPECT_NE(all.find("wayland-session.so"), std::string::npos);
    EXPECT_NE(all.find("libqwayland"), std::string::npos);
    EXPECT_EQ(all.find("libqxcb"), std::string::npos);
}

TEST_F(Sway, EndsWhereTheCompositorGoes) {
    start();
    const auto leaving = sway->spawn("swaymsg", {"exit"});
    leaving->wait(); // which the compositor does not answer
    const auto status = program->wait();
    ASSERT_TRUE(status);
    EXPECT_GT(*status, 0) << program->errors();
}

TEST_F(Sway, IsFreeAndBrightAfterAKill) {
    start();
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return isFree(); }));
    EXPECT_FALSE(isDark());
}

TEST_F(Sway, IsFreeAfterTheNextStartWhereTheGuardWasKilledToo) {
    start();
    const auto guards = support::childrenOf(program->pid(), "sway-guard");
    ASSERT_EQ(guards.size(), 1u);
    ::kill(guards[0], SIGKILL);
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    EXPECT_FALSE(isFree());
    start({.active = false});
    EXPECT_TRUE(isFree());
}

TEST_F(Sway, HasTheUsersOwnMappingAgainAfterAKill) {
    for (const char* const mapping :
         {"map_to_region 1920 0 1280 1024", "map_to_output HEADLESS-2"}) {
        begin({.configuration = "input type:pointer {\n  " + std::string(mapping) + "\n}"});
        startWatched();
        hand->push(7, 0, 300, mouseRate);
        EXPECT_EQ(timesOutside(), 0) << "against the user's own rule: " << mapping;
        program->signal(SIGKILL);
        ASSERT_EQ(program->wait(), -SIGKILL);
        EXPECT_TRUE(waitUntil([&] {
            hand->moveTo(960, 540);
            hand->relative(-1, 0);
            return timesOutside() > 0;
        })) << mapping;
    }
}

TEST_F(Sway, LeavesNoBindingAfterAKill) {
    start();
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return isFree(); }));
    // What is not bound cannot be unbound.
    EXPECT_TRUE(waitUntil([&] {
        try {
            sway->run("unbindcode Mod1+Mod4+37");
            return false;
        } catch (const std::runtime_error&) {
            return true;
        }
    }));
}

} // namespace
} // namespace desktop
