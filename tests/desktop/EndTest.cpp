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

} // namespace
} // namespace desktop
