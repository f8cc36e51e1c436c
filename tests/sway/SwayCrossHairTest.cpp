#include "sway/SwaySession.h"

// The cross-hair cannot follow a cursor whose place nobody tells.

namespace desktop {
namespace {

TEST_F(Sway, LeavesTheCursorAndSaysSoWhereTheCrossHairCannotFollowIt) {
    start({.product = "crosshair"});
    EXPECT_TRUE(program->waitForText("sway tells no program where the cursor is"));
    hand->push(3, 1, 50, mouseRate);
    EXPECT_FALSE(sway->isOfOneColour(1)) << "the cursor is seen";
    EXPECT_TRUE(sway->isOfOneColour(2)) << "and no line";
    const auto status = sway->spawn(programs() + "/crosshair", {"status"});
    EXPECT_EQ(status->wait(), 0);
    EXPECT_NE(status->output().find("can place: no (sway tells no program"), std::string::npos)
        << status->output();
}

} // namespace
} // namespace desktop
