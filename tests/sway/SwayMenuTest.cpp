#include "sway/SwaySession.h"

namespace desktop {
namespace {

using support::Area;
using support::Picture;

constexpr int x = 500, y = 200; ///< of the cursor at first

/// The menu, and when it is gone. It is seen against what the monitor showed before.
class SwayMenu : public Sway {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateSway::missing()) GTEST_SKIP() << *reason;
        beginWith("");
    }
    void beginWith(const std::string& configuration) {
        keys.reset();
        begin({.layout = "1000x600+0+0,800x600+1000+0", .configuration = configuration});
        keys.emplace(*sway);
        hand->moveTo(x, y);
    }
    void open() {
        before = sway->picture(1);
        const auto command = sway->spawn(programs() + "/palisor", {"menu"});
        ASSERT_EQ(command->wait(), 0) << command->errors();
        ASSERT_TRUE(waitUntil([&] { return isSeen(); })) << program->errors();
    }
    /// What is not as it was; nothing where all is, but for a cursor that has moved.
    std::optional<Area> changed() const {
        const Picture now = sway->picture(1);
        int left = now.area.width, right = -1, top = now.area.height, bottom = -1;
        for (int row = 0; row < now.area.height; ++row)
            for (int column = 0; column < now.area.width; ++column)
                if (now.at(column, row) != before.at(column, row)) {
                    left = std::min(left, column);
                    right = std::max(right, column);
                    top = std::min(top, row);
                    bottom = std::max(bottom, row);
                }
        constexpr int cursor = 64;
        if (right - left < cursor || bottom - top < cursor) return {};
        return Area{left, top, right + 1 - left, bottom + 1 - top};
    }
    bool isSeen() const { return changed().has_value(); }
    bool isGone() const {
        return waitUntil([&] { return !isSeen(); });
    }
    void press(std::uint32_t key) {
        keys->press(key);
        keys->release(key);
    }
    void click() {
        hand->pressButton();
        hand->releaseButton();
    }

    Picture before;
    std::optional<SwayKeys> keys;
};

TEST_F(SwayMenu, OpensBesideThePointerAndIsNoWindowOfTheCompositors) {
    start();
    open();
    const Area menu = changed().value();
    EXPECT_NEAR(menu.x, x, 2);
    EXPECT_NEAR(menu.y, y, 2);
    EXPECT_EQ(sway->ask("get_tree").find("com.tamberlo.palisor"), std::string::npos);
}

TEST_F(SwayMenu, IsClosedByEscapeAndHoldsAgain) {
    start({.pushOption = true});
    open();
    press(KEY_ESC);
    EXPECT_TRUE(isGone());
    hand->moveTo(990, 300);
    hand->push(150, 0, 12, 60);
    EXPECT_TRUE(darkSoon(1));
}

TEST_F(SwayMenu, IsClosedByAClickElsewhereThatNobodyElseGets) {
    start();
    open();
    hand->moveTo(100, 550);
    hand->relative(1, 0);
    click();
    EXPECT_TRUE(isGone());
    EXPECT_EQ(backgrounds[0]->report().buttons, 0);
}

TEST_F(SwayMenu, IsClosedByAClickOnADarkMonitor) {
    start();
    open();
    hand->moveTo(1500, 300);
    hand->relative(1, 0);
    click();
    EXPECT_TRUE(isGone());
}

TEST_F(SwayMenu, ChoosesTheEntryThatIsClicked) {
    start();
    open();
    hand->moveTo(x + 60, y + 15);
    hand->relative(1, 0);
    click();
    EXPECT_TRUE(brightSoon()) << "its first entry switches off";
    EXPECT_TRUE(isGone());
}

TEST_F(SwayMenu, HasASliderInASubmenuForTheMouse) {
    constexpr int entry = 78, groove = 25; // rows down from the menu's top, and from the entry
    start();
    open();
    const Area alone = changed().value();
    hand->moveTo(x + 60, y + entry);
    std::optional<Area> both;
    ASSERT_TRUE(waitUntil([&] {
        both = changed();
        return both && both->width > alone.width + 50;
    })) << "it darkens other monitors";
    hand->moveTo(both->x + 10, y + entry + groove);
    click();
    EXPECT_TRUE(brightSoon()) << "at the slider's end";
    EXPECT_TRUE(isSeen()) << "it stays open";
}

TEST_F(SwayMenu, ChoosesTheEntryThatTheKeysGoTo) {
    start();
    open();
    press(KEY_DOWN);
    press(KEY_ENTER);
    EXPECT_TRUE(brightSoon());
}

TEST_F(SwayMenu, IsWholeOnTheMonitorAboveAPointerAtItsEnd) {
    start();
    hand->moveTo(990, 590);
    open();
    const Area menu = changed().value();
    EXPECT_EQ(menu.x + menu.width, 1000);
    EXPECT_NEAR(menu.y + menu.height, 590, 2);
}

TEST_F(SwayMenu, OpensASubmenuOnTheSideWhereThereIsRoom) {
    start();
    hand->moveTo(990, 590);
    open();
    const Area alone = changed().value();
    for (const std::uint32_t key : {KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_RIGHT})
        press(key);
    EXPECT_TRUE(waitUntil([&] {
        const auto both = changed();
        return both && both->x < alone.x - 50 && both->x + both->width == alone.x + alone.width;
    }));
}

TEST_F(SwayMenu, IsSeenAboveAFullScreenWindow) {
    start();
    const auto window = sway->spawn("foot", {"--fullscreen", "sh", "-c", "echo ready; read line"});
    ASSERT_TRUE(waitUntil([&] {
        return sway->ask("get_tree").find(R"("fullscreen_mode": 1)") != std::string::npos;
    })) << window->errors();
    ASSERT_TRUE(waitUntil([&] { return isDark(1); })) << "the terminal is black";
    open();
    press(KEY_ESC);
    EXPECT_TRUE(isGone());
}

TEST_F(SwayMenu, IsSharpAndBesideThePointerOnAScaledMonitorLeftOfTheFirst) {
    beginWith("output HEADLESS-1 mode 1600x1200 scale 2 position -800 0");
    hand->moveTo(300, 100); // from the left end of all
    start();
    open();
    const Area menu = changed().value();
    constexpr int cursor = 8; // reaches so far beyond its point, in the newer releases
    EXPECT_NEAR(menu.x, 600, cursor);
    EXPECT_NEAR(menu.y, 200, cursor);
    EXPECT_GT(menu.width, 500) << "twice as many pixels as on the other one";
}

} // namespace
} // namespace desktop
