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

class GnomeGames : public Gnome {
  protected:
    bool stillHeld() const { return veils() == otherIsDark; }
    /// Whether the game has the pointer all the while. From one that does not read what it is told
    /// the shell takes it.
    bool staysIn(ShellGame& game, double dx, int steps) {
        constexpr int piece = 50;
        bool stays = true;
        for (int done = 0; done < steps; done += piece) {
            hand->push(dx, 0, piece, mouseRate);
            stays = game.hasPointer() && stays;
        }
        return stays;
    }
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

TEST_F(GnomeGames, WhatIsPushedInAGameThatConfinesThePointerCrossesNowhere) {
    start({.pushOption = true, .velocity = 20});
    ShellGame game(*shell, ShellGame::Takes::confines);
    const ShellWitness witness(*shell, left);
    for (int i = 0; i < 3; ++i) {
        // Longer than it takes to try whether the cursor comes, and then until that is tried again.
        EXPECT_TRUE(staysIn(game, 60, 400));
        EXPECT_TRUE(waitUntil([&] { return stillHeld(); })) << program->errors();
        EXPECT_TRUE(staysIn(game, -0.1, 1000));
    }
    EXPECT_EQ(witness.report().depth, 0);
    EXPECT_TRUE(stillHeld());
    EXPECT_NE(program->errors().find("crossed to"), std::string::npos) << "nothing was tried";
}

TEST_F(GnomeGames, AfterAGameThatConfinedThePointerPushesCross) {
    start({.pushOption = true, .velocity = 20});
    {
        ShellGame game(*shell, ShellGame::Takes::confines);
        EXPECT_TRUE(staysIn(game, 60, 400));
        EXPECT_TRUE(waitUntil([&] { return stillHeld(); })) << program->errors();
    }
    EXPECT_TRUE(waitUntil([&] {
        hand->push(60, 0, 40, mouseRate);
        return veils() == firstIsDark;
    })) << program->errors();
    EXPECT_GE(shell->cursor().x, 1280);
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

TEST_F(GnomeGames, ThreeProductsAtOnceKeepOffEachOthersWork) {
    const std::string dark = "[1280,0,1280,720,191]", upright = ",0,2,720,128]",
                      isSeen = std::string(support::cursorTracker) + ".get_pointer_visible()";
    const auto shows = [&](const std::string& veil) {
        return veils().find(veil) != std::string::npos;
    };
    const auto isHeld = [&] {
        hand->push(-20, 0, 5, mouseRate);
        hand->push(20, 0, 100, mouseRate);
        return shell->cursor().x == 1279;
    };
    start();
    const auto palisor = std::move(program);
    start({.product = "crosshair"});
    auto crosshair = std::move(program);
    start({.product = "vellumor", .more = {{"TIME_MODE", flag(true)}, {"SCHEDULE", number(1)}}});
    for (const char* title : {"Palisor", "Crosshair", "Vellumor"})
        EXPECT_TRUE(waitUntil([&] { return hasSwitch(title); })) << title;
    EXPECT_TRUE(isHeld());
    EXPECT_TRUE(waitUntil([&] { return shows(dark) && shows(upright); })) << veils();

    EXPECT_EQ(command({"off"}), "");
    EXPECT_TRUE(waitUntil([&] { return !shows(dark); }));
    EXPECT_FALSE(isHeld()) << "nobody else holds it";
    EXPECT_TRUE(shows(upright));
    shell->moveTo(640, 300);
    EXPECT_EQ(command({"on"}), "");
    EXPECT_TRUE(waitUntil([&] { return shows(dark); }));
    EXPECT_TRUE(isHeld());

    crosshair->signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !shows(upright) && !hasSwitch("Crosshair"); }));
    EXPECT_TRUE(waitUntil([&] { return !shell->isTrue(isSeen); })) << "Vellumor hides it";
    EXPECT_TRUE(hasSwitch("Palisor") && hasSwitch("Vellumor"));
    EXPECT_TRUE(isHeld());
    program->signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return shell->isTrue(isSeen) && !hasSwitch("Vellumor"); }));
    EXPECT_TRUE(isHeld());
    EXPECT_TRUE(stillHeld()) << palisor->errors();
}

} // namespace
} // namespace desktop
