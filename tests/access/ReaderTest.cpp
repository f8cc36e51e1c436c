#include "testing/desktop/Product.h"
#include "testing/reader/ScreenReader.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>

// What somebody hears who does not see the screen, while the keyboard goes through all there is.

namespace desktop {
namespace {

namespace key = support::key;

using Lines = std::vector<std::string>;

struct ReadAloud : Product, testing::Test {
    ReadAloud() : Product("1280x800+0+0,1024x768+1280+16") {
        desktop.startWindowManager("openbox");
        hand.moveTo(640, 700);
    }

    void startWith(const Entries& settings, const std::string& product = "palisor") {
        spawn({.product = product, .more = settings});
        ASSERT_TRUE(isUpSoon()) << program->errors();
    }

    /// One line of what is heard after the key.
    testing::AssertionResult says(xcb_keysym_t pressed, const std::string& line) {
        hand.type(pressed);
        return reads(line);
    }
    testing::AssertionResult reads(const std::string& line) {
        if (reader.reads(line)) return testing::AssertionSuccess();
        const auto now = reader.focus();
        return testing::AssertionFailure()
               << "not heard: " << line << "\nbut: " << (now ? now->line() : "nothing");
    }
    /// Goes down to the entry and opens what it leads to.
    void openSubmenu(int steps) {
        for (int step = 0; step < steps; ++step)
            hand.type(key::down);
        hand.type(key::right);
        ASSERT_TRUE(waitForMenus(2));
    }
    static Lines linesOf(const std::vector<support::Heard>& all) {
        Lines lines;
        for (const support::Heard& each : all)
            lines.push_back(each.line());
        return lines;
    }
    /// Without anybody who asks for it.
    bool isTold(const std::string& line) {
        return reader.waitUntil([this, &line, told = Lines()]() mutable {
            std::ranges::move(reader.takeTold(), std::back_inserter(told));
            return has(told, line);
        });
    }
    static bool has(const Lines& lines, const std::string& line) {
        return std::ranges::find(lines, line) != lines.end();
    }
    static std::string joined(const Lines& lines) {
        std::string all;
        for (const std::string& line : lines)
            all += line + "\n";
        return all;
    }

    support::ScreenReader reader{desktop};
};

TEST_F(ReadAloud, TellsEachEntryOfTheMenuWithItsStateAndItsShortcut) {
    startWith({{"VELOCITY_OPTION", flag(true)}, {"CTRLALTCMD", flag(false)}});
    openMenu();
    EXPECT_TRUE(reads("popup menu \"Palisor: on\" [active, focused]"));
    EXPECT_TRUE(says(key::down, "menu item \"Switch Off\" by Ctrl+Super+K [focused]"));
    EXPECT_TRUE(says(key::down, "menu item \"Keyboard Shortcut…\" [focused]"));
    EXPECT_TRUE(says(key::down, "menu item \"Darken Other Monitors\" [collapsed, focused]"));
    EXPECT_TRUE(says(key::down, "check box \"Push Hard to Cross\" "
                                "[checked, collapsed, focused]"));
    EXPECT_TRUE(says(key::down, "check box \"Hold Left Ctrl+Alt+Super to Lift the Barrier\" "
                                "[focused]"));
    EXPECT_TRUE(has(linesOf(reader.aroundFocus()), "menu item \"Product Page\" [greyed]"))
        << joined(linesOf(reader.aroundFocus()));
}

TEST_F(ReadAloud, TellsASliderInTheUnitsOfItsLabelAndEachNewValue) {
    startWith({{"OTHERS_DARK", number(16)}});
    openMenu();
    openSubmenu(3);
    EXPECT_TRUE(reads("slider \"Darken Other Monitors\" (80%) 80 of 0 to 100 "
                      "[focused]"));
    reader.takeTold();
    const std::string next = "slider \"Darken Other Monitors\" (85%) 85 of 0 to 100 "
                             "[focused]";
    EXPECT_TRUE(says(key::right, next));
    EXPECT_TRUE(isTold(next));
    EXPECT_TRUE(stores(entry("OTHERS_DARK", number(17))));
}

TEST_F(ReadAloud, TellsThePushAndTheTimeAlike) {
    startWith({{"VELOCITY_OPTION", flag(true)}, {"VELOCITY", number(50)}});
    openMenu();
    openSubmenu(4);
    EXPECT_TRUE(reads("slider \"Push Hard to Cross\" (50%) 50 of 1 to 100 [focused]"));
    program->end();
    startWith({{"SCHEDULE", text("1")}, {"TIME_MODE", flag(true)}}, "vellumor");
    openMenu();
    openSubmenu(5);
    EXPECT_TRUE(reads("slider \"Hide When the Mouse Rests\" (1 s) 1 of 0 to 30 "
                      "[focused]"));
    EXPECT_TRUE(says(key::left, "slider \"Hide When the Mouse Rests\" (At once) 0 of 0 to 30 "
                                "[focused]"));
}

TEST_F(ReadAloud, TellsTheBoxesOfTheBordersByTheirPlaces) {
    startWith({{"BUTLATO2", flag(false)}}, "orbisant");
    openMenu();
    openSubmenu(3);
    EXPECT_TRUE(reads("check box \"Top left corner\" [focused]"));
    EXPECT_TRUE(says(key::right, "check box \"Top side\" [focused]"));
    reader.takeTold();
    const std::string ticked = "check box \"Top side\" [checked, focused]";
    EXPECT_TRUE(says(key::space, ticked));
    EXPECT_TRUE(isTold(ticked));
    EXPECT_TRUE(stores(entry("BUTLATO2", flag(true))));
    const Lines all = linesOf(reader.aroundFocus());
    EXPECT_TRUE(all.front().starts_with("panel \"Active Borders\" (Tick the sides")) << joined(all);
    EXPECT_EQ(std::ranges::count_if(
                  all, [](const std::string& line) { return line.starts_with("check box \""); }),
              8)
        << joined(all);
}

TEST_F(ReadAloud, TellsTheRecorderAsAButtonWithWhatItSays) {
    spawn({.more = {{"customShortcut", ""}}});
    const std::string hint =
        "(Hold Ctrl, Alt or Super and press a key. Esc cancels, Backspace clears.)";
    ASSERT_TRUE(reader.waitUntil([&] {
        return std::ranges::any_of(linesOf(reader.windows()), [&](const std::string& line) {
            return line.starts_with("push button \"Press the keys…\" " + hint);
        });
    })) << joined(linesOf(reader.windows()));
    const Lines all = linesOf(reader.windows());
    EXPECT_TRUE(all.front().starts_with("dialog \"Palisor\"")) << joined(all);
    EXPECT_TRUE(has(all, "label \"Keyboard Shortcut\"")) << joined(all);
    hand.type('b');
    EXPECT_TRUE(reader.waitUntil([&] {
        return std::ranges::any_of(linesOf(reader.windows()), [](const std::string& line) {
            return line.starts_with("push button \"Press the keys…\" (A key alone");
        });
    })) << joined(linesOf(reader.windows()));
}

TEST_F(ReadAloud, TellsTheInformationWindowByWhatItsPartsDo) {
    spawn({.product = "orbisant",
           .active = false,
           .more = {{"CHECK_0", text("0")}, {"CHECK_1", text("1")}, {"RECOMMENDAUTOLOGIN", ""}}});
    ASSERT_TRUE(reads("push button \"Done\" [default, focused]"));
    const Lines all = linesOf(reader.windows());
    EXPECT_TRUE(all.front().starts_with("dialog \"Orbisant ")) << joined(all);
    EXPECT_TRUE(has(all, "check box \"Do not show this window at start\"")) << joined(all);
    EXPECT_EQ(std::ranges::count(all, "push button \"Open the makers’ page\" [greyed]"), 2)
        << "the pictures\n"
        << joined(all);
    EXPECT_TRUE(has(all, "push button \"Recommend\" [greyed]")) << joined(all);
}

} // namespace
} // namespace desktop
