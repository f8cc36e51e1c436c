#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

#include <csignal>

// The end of the program while those that it has to do with do not answer.

namespace desktop {
namespace {

using support::Stopped;

struct End : testing::Test {
    void startDark() {
        dark = product.eye.gamma("DUMMY1");
        bright = dark;
        product.start();
        ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != bright; }));
        dark = product.eye.gamma("DUMMY1");
    }
    bool isBrightSoon() {
        return waitUntil([&] { return product.eye.gamma("DUMMY1") == bright; });
    }
    pid_t guard() const {
        const auto guards = support::childrenOf(product.program->pid(), "gamma-guard");
        return guards.size() == 1 ? guards.front() : 0;
    }

    Product product;
    support::GammaRamp bright, dark;
};

TEST_F(End, WaitsForNoGuardThatIsStopped) {
    startDark();
    ASSERT_NE(guard(), 0);
    const Stopped stopped(guard());
    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_TRUE(isBrightSoon());
}

TEST_F(End, WaitsForNoServerThatIsStopped) {
    startDark();
    ASSERT_NE(guard(), 0);
    {
        const Stopped stopped(product.desktop.serverProcess());
        product.program->signal(SIGTERM);
        EXPECT_EQ(product.program->wait(), 0);
        EXPECT_TRUE(stopped.stillIs());
    }
    EXPECT_TRUE(isBrightSoon()) << "by the guard, which waits";
    EXPECT_TRUE(product.nothingCoveredSoon());
}

TEST_F(End, WaitsForNoServerThatIsStoppedUnderAnOpenMenu) {
    startDark();
    product.openMenu();
    {
        const Stopped stopped(product.desktop.serverProcess());
        product.program->signal(SIGTERM);
        // The toolkit itself may be waiting for the server, which only a kill puts an end to.
        EXPECT_TRUE(product.program->wait().has_value());
        EXPECT_TRUE(stopped.stillIs());
    }
    EXPECT_TRUE(isBrightSoon());
}

TEST_F(End, WaitsForNoBusThatIsStopped) {
    startDark();
    const Stopped stopped(product.desktop.busProcess());
    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_TRUE(stopped.stillIs());
    EXPECT_TRUE(isBrightSoon());
}

TEST_F(End, ComesAlsoWhereNobodyAnswers) {
    startDark();
    {
        const Stopped guardStopped(guard());
        const Stopped bus(product.desktop.busProcess());
        const Stopped server(product.desktop.serverProcess());
        product.program->signal(SIGTERM);
        EXPECT_EQ(product.program->wait(), 0);
        EXPECT_TRUE(server.stillIs() && bus.stillIs() && guardStopped.stillIs());
    }
    EXPECT_TRUE(isBrightSoon()) << "by the guard, once it wakes";
}

TEST_F(End, LeavesTheUsersRampAlsoAfterAKillOfProgramAndGuard) {
    startDark();
    const pid_t guarding = guard();
    ASSERT_NE(guarding, 0);
    product.program->signal(SIGSTOP);
    ASSERT_EQ(kill(guarding, SIGKILL), 0);
    product.program->signal(SIGKILL);
    ASSERT_EQ(product.program->wait(), -SIGKILL);
    ASSERT_EQ(product.eye.gamma("DUMMY1"), dark);
    product.start();
    EXPECT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") == dark; }));
    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_EQ(product.eye.gamma("DUMMY1"), bright);
}

// The bus that is named is none, so nobody notices that there are two.
TEST_F(End, OfTwoProgramsLeavesTheUsersRampInEitherOrder) {
    for (const bool firstEndsFirst : {true, false}) {
        product.desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
        bright = product.eye.gamma("DUMMY1");
        product.spawn();
        ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != bright; }));
        dark = product.eye.gamma("DUMMY1");
        auto other = product.run();
        ASSERT_TRUE(waitUntil([&] {
            return !other->running() || other->errors().find("no tray") != std::string::npos;
        }));
        EXPECT_EQ(product.eye.gamma("DUMMY1"), dark);
        auto& early = firstEndsFirst ? product.program : other;
        auto& late = firstEndsFirst ? other : product.program;
        early->signal(SIGTERM);
        EXPECT_EQ(early->wait(), 0);
        late->signal(SIGTERM);
        EXPECT_EQ(late->wait(), 0);
        EXPECT_EQ(product.eye.gamma("DUMMY1"), bright) << firstEndsFirst;
    }
}

} // namespace
} // namespace desktop
