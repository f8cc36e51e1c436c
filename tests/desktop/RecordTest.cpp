#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(Record, AnAttemptToLeaveTheMonitorIsHeldAgainWhenPlayedBack) {
    Product product;
    const std::string scenario = (product.settingsFile().parent_path() / "session.jsonl").string();
    product.start({.options = {"--record", scenario}});
    product.moveNextTo(0, 1);
    product.hand.push(7, 0, 200, 1000);
    ASSERT_TRUE(product.cursorEndsOn(0));
    product.program->signal(SIGTERM);
    ASSERT_EQ(product.program->wait(), 0);

    const auto replay = product.desktop.spawn(PALISOR_REPLAY, {"--only", "window,warp", scenario});
    EXPECT_TRUE(replay->waitForText(R"("kind":"dark","frame":[1920,0,1280,1024])"));
    EXPECT_TRUE(replay->waitForText(R"("effect":"warp","to":[1919,)"));
    EXPECT_EQ(replay->wait(), 0) << replay->errors();
}

TEST(Record, AFileThatCannotBeWrittenIsToldAndTheProgramGoesOn) {
    Product product;
    product.start({.options = {"--record", "/nowhere/at/all"}});
    EXPECT_TRUE(product.program->waitForText(
        "the scenario file /nowhere/at/all cannot be written; nothing is recorded"));
    product.moveNextTo(0, 1);
    product.hand.push(7, 0, 200, 1000);
    EXPECT_TRUE(product.cursorEndsOn(0));
}

} // namespace
} // namespace desktop
