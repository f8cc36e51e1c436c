#include "gnome/GnomeSession.h"
#include "testing/gnome/ShellGame.h"
#include "testing/gnome/ShellWitness.h"

namespace desktop {
namespace {

using support::Area;
using support::ShellGame;
using support::ShellWitness;
using Place = PrivateShell::Place;

constexpr Area left{0, 0, 1280, 720};
constexpr int mouseRate = 1000;

class GnomeGames : public Gnome {
  protected:
    bool stillHeld() const { return veils() == otherIsDark; }
};

TEST_F(GnomeGames, AFullScreenWindowIsHeldOverAndItsPushCrosses) {
    const ShellGame game(*shell, ShellGame::Takes::nothing);
    start({.pushOption = true, .velocity = 50});
    const ShellWitness witness(*shell, left);
    shell->moveTo(1270, 300);
    hand->button(BTN_LEFT, true);
    constexpr int slowRate = 125;
    hand->push(1, 0, 200, slowRate);
    hand->button(BTN_LEFT, false);
    EXPECT_EQ(witness.report().depth, 0) << program->errors();
    hand->push(300, 0, 40, mouseRate);
    ASSERT_TRUE(waitUntil([&] { return veils() == firstIsDark; })) << program->errors();
    EXPECT_GE(shell->cursor().x, 1280);
}

TEST_F(GnomeGames, WhatIsPushedInAGameThatLocksThePointerCrossesNowhere) {
    start({.pushOption = true, .velocity = 20});
    for (const int x : {640, 1270}) {
        shell->moveTo(x, 300);
        ShellGame game(*shell, ShellGame::Takes::locks);
        hand->push(60, 0, 100, mouseRate);
        hand->push(-60, 0, 100, mouseRate);
        EXPECT_TRUE(game.hasPointer());
        EXPECT_EQ(shell->cursor(), (Place{x, 300}));
        EXPECT_TRUE(stillHeld()) << program->errors();
    }
    hand->push(60, 0, 40, mouseRate);
    EXPECT_TRUE(waitUntil([&] { return veils() == firstIsDark; })) << "and afterwards it does";
}

TEST_F(GnomeGames, AGameThatConfinesThePointerIsHeldToo) {
    start();
    ShellGame game(*shell, ShellGame::Takes::confines);
    const ShellWitness witness(*shell, left);
    hand->push(20, 3, 200, mouseRate);
    EXPECT_TRUE(game.hasPointer());
    EXPECT_EQ(witness.report().depth, 0);
    EXPECT_EQ(shell->cursor().x, 1279);
}

TEST_F(GnomeGames, HoldsInTheOverviewAndAfterIt) {
    start();
    const ShellWitness witness(*shell, left);
    for (const bool isShown : {true, false}) {
        shell->run(isShown ? "Main.overview.show()" : "Main.overview.hide()");
        hand->push(20, 2, 100, mouseRate);
        hand->button(BTN_LEFT, true);
        hand->push(20, -2, 100, mouseRate);
        hand->button(BTN_LEFT, false);
        ASSERT_TRUE(waitUntil([&] {
            return shell->isTrue("Main.overview.visible && !Main.overview.animationInProgress") ==
                   isShown;
        }));
        hand->push(20, 0, 100, mouseRate);
        EXPECT_EQ(shell->cursor().x, 1279);
    }
    EXPECT_EQ(witness.report().depth, 0);
}

TEST_F(GnomeGames, ASiblingBesideItKeepsWhatItAskedForWhenTheOtherEnds) {
    start();
    const auto other = std::move(program);
    start({.product = "vellumor", .more = {{"TIME_MODE", flag(true)}, {"SCHEDULE", number(1)}}});
    const std::string isSeen = std::string(support::cursorTracker) + ".get_pointer_visible()";
    hand->push(1, 0, 5, mouseRate);
    EXPECT_TRUE(waitUntil([&] { return !shell->isTrue(isSeen); })) << program->errors();
    hand->push(20, 0, 100, mouseRate);
    EXPECT_EQ(shell->cursor().x, 1279);
    program->signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return shell->isTrue(isSeen); }, std::chrono::seconds(1)));
    EXPECT_TRUE(stillHeld());
    hand->push(20, 0, 100, mouseRate);
    EXPECT_EQ(shell->cursor().x, 1279) << "the hold is the first one's";
    other->signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }, std::chrono::milliseconds(500)));
    hand->push(20, 0, 100, mouseRate);
    EXPECT_GE(shell->cursor().x, 1280);
}

} // namespace
} // namespace desktop
