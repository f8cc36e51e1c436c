#include "testing/desktop/Product.h"
#include "testing/sway/PrivateSway.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>

// The program itself on a private sway, with a mouse for input and a layer over the other monitor
// for evidence.

namespace desktop {
namespace {

using support::PrivateSway;
using support::SwayHand;
using support::waitUntil;
using support::Witness;

constexpr int mouseRate = 1000;
constexpr std::uint32_t clear = 0, white = 0xffffffff;

class Sway : public testing::Test {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateSway::missing()) GTEST_SKIP() << *reason;
        sway.emplace();
        hand.emplace(*sway);
        hand->moveTo(960, 540);
    }

    /// Starts the barrier product and returns when the other monitor is dark.
    void start(const Setting& setting = {}) {
        Entries entries = pastTheFirstStart();
        entries["ATTIVO"] = flag(setting.active);
        entries["VELOCITY_OPTION"] = flag(setting.pushOption);
        entries["VELOCITY"] = number(setting.velocity);
        entries["OTHERS_DARK"] = number(setting.othersDark);
        std::ofstream(sway->configFolder() + "/com.tamberlo.palisor.plist")
            << propertyList(entries);
        background.emplace(sway->socket(), 1, Witness::Where::belowEverything, white);
        program = sway->spawn(programs() + "/palisor", {"--verbose"});
        ASSERT_TRUE(waitUntil([&] { return isDark() == setting.active; })) << program->errors();
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    }

    bool isDark() const { return sway->brightness(2) < 128; }

    std::optional<PrivateSway> sway;
    std::optional<SwayHand> hand;
    std::optional<Witness> background;
    std::unique_ptr<support::ChildProcess> program;
};

TEST_F(Sway, KeepsTheCursorOnItsMonitorAgainstAThousandStepsASecond) {
    start();
    const Witness other(sway->socket(), 1, Witness::Where::aboveEverything, clear);
    hand->push(7, 0, 1500, mouseRate);
    hand->push(30, 2, 1500, mouseRate);
    const auto report = other.report();
    EXPECT_EQ(report.entered, 0) << report.farthestLeft << " pixels";
}

TEST_F(Sway, LetsAHardPushThroughAndHoldsOnTheOtherSide) {
    start({.pushOption = true, .velocity = 25});
    const Witness other(sway->socket(), 1, Witness::Where::aboveEverything, clear);
    hand->moveTo(1900, 500);
    hand->push(1, 0, 200, 60);
    EXPECT_FALSE(other.report().isOver) << "steps of one pixel are no push";
    hand->push(40, 0, 12, 60);
    EXPECT_TRUE(other.waitForCursor()) << program->errors();
    EXPECT_TRUE(waitUntil([&] { return !isDark(); }));
    hand->push(-1, 0, 600, 250);
    EXPECT_TRUE(other.report().isOver) << "it is held on the other side";
}

TEST_F(Sway, IsFreeAgainAfterAKill) {
    start();
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    const Witness other(sway->socket(), 1, Witness::Where::aboveEverything, clear);
    EXPECT_TRUE(waitUntil([&] {
        hand->relative(20, 0);
        return other.report().isOver;
    }));
    EXPECT_FALSE(isDark());
}

} // namespace
} // namespace desktop
