#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

#include <csignal>

namespace desktop {
namespace {

TEST(Life, EndsAsQuitDoesOnEachSignalThatAsksForIt) {
    for (const int signal : {SIGTERM, SIGINT}) {
        Product product;
        const auto before = product.eye.gamma("DUMMY1");
        product.start();
        ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != before; }));
        product.program->signal(signal);
        EXPECT_EQ(product.program->wait(), 0) << signal;
        EXPECT_TRUE(product.nothingCoveredSoon());
        EXPECT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") == before; }));
    }
}

class Killed : public testing::TestWithParam<bool> {};
INSTANTIATE_TEST_SUITE_P(Life, Killed, testing::Bool(),
                         [](const auto& test) { return test.param ? "Held" : "WarpedBack"; });

TEST_P(Killed, LeavesNothingHeldOrDark) {
    Product product;
    const auto before = product.eye.gamma("DUMMY1");
    product.start({.hold = GetParam()});
    ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != before; }));
    product.program->signal(SIGKILL);
    EXPECT_EQ(product.program->wait(), -SIGKILL);
    EXPECT_TRUE(product.nothingCoveredSoon());
    EXPECT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") == before; }));
    product.hand.push(7, 0, 200, 1000);
    EXPECT_TRUE(product.cursorIsOn(1));
}

TEST(Life, IsOneOfItsKindInASession) {
    Product product;
    product.start();
    const auto second = product.run();
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(second->waitForText("running already")) << second->errors();
    EXPECT_TRUE(product.program->running());
    const auto sibling =
        product.desktop.spawn(programs() + "/palisor", {"--verbose", "--product", "orbisant"});
    EXPECT_TRUE(sibling->waitForText("10.14")) << "another product is another program";
}

TEST(Life, OnOneMonitorWarnsAndEndsWithTheProductSwitchedOff) {
    Product product("1920x1080+0+0");
    product.desktop.startWindowManager("openbox");
    product.spawn();
    const auto alertIsShown = [&] {
        for (const auto& window : product.eye.windows())
            if (window.mapped && !window.overrideRedirect && window.area.width > 200) return true;
        return false;
    };
    ASSERT_TRUE(waitUntil([&] { return alertIsShown() || !product.program->running(); }));
    ASSERT_TRUE(product.program->running()) << product.program->errors();
    ASSERT_TRUE(waitUntil([&] {
        product.hand.type(support::key::enter);
        return !product.program->running();
    }));
    EXPECT_EQ(product.program->wait(), 0);
    EXPECT_NE(product.storedSettings().find(entry("ATTIVO", flag(false))), std::string::npos);
}

TEST(Life, OnOneMonitorEndsOnASignalWhileItWarns) {
    Product product("1920x1080+0+0");
    product.desktop.startWindowManager("openbox");
    product.spawn();
    ASSERT_TRUE(product.saysThatItStarts());
    product.program->signal(SIGTERM);
    EXPECT_EQ(product.program->wait(), 0);
}

TEST(Life, WithoutAnX11SessionSaysWhatToDoAndFails) {
    Product product("1920x1080+0+0");
    for (const char* display : {"", ":4242"}) {
        product.desktop.setVariable("DISPLAY", display);
        const auto program = product.run();
        EXPECT_EQ(program->wait(), 1);
        EXPECT_TRUE(program->waitForText("DISPLAY")) << program->errors();
        const std::string errors = program->errors();
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << "one line: " << errors;
    }
}

} // namespace
} // namespace desktop
