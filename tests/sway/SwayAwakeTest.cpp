#include "sway/SwaySession.h"
#include "testing/sway/SwayIdle.h"

// The product that keeps the displays on: a pixel that the compositor does not go idle over.

namespace desktop {
namespace {

/// The compositor does not count while it is kept awake, so each look begins one of its own.
struct SwayAwake : Sway {
    bool isIdleSoon(std::chrono::milliseconds limit = support::generous) const {
        const support::SwayIdle idle(*sway, std::chrono::milliseconds(200));
        return waitUntil([&] { return idle.isIdle(); }, limit);
    }
    bool tell(const char* command) const {
        return sway->spawn(programs() + "/stay-awake", {command})->wait() == 0;
    }
    static constexpr std::chrono::seconds longer{2};
};

TEST_F(SwayAwake, TheCompositorDoesNotGoIdleWhileTheProductIsOn) {
    ASSERT_TRUE(isIdleSoon());
    start({.product = "stay-awake"});
    ASSERT_TRUE(program->waitForText("kIOReturnSuccess")) << program->errors();
    EXPECT_FALSE(isIdleSoon(longer));
    ASSERT_TRUE(tell("off"));
    EXPECT_TRUE(isIdleSoon()) << "switched off";
    ASSERT_TRUE(tell("on"));
    EXPECT_FALSE(isIdleSoon(longer));
    program->signal(SIGKILL);
    program->wait();
    EXPECT_TRUE(isIdleSoon()) << "killed";
}

} // namespace
} // namespace desktop
