#include "unit/MenuEntries.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

void click(Program& program, int button) {
    program.platform.application.setCurrentEvent(
        {.type = platform::EventType::leftMouseDown, .buttonNumber = button});
    program.app.menuWillOpen(*program.app.mainMenu);
    program.platform.application.setCurrentEvent({});
}

TEST(LeftClick, LeavesTheMenuToOpenByItselfOrOpensItOnOlderServices) {
    for (const auto& [version, opens] :
         {std::pair{platform::Version{10, 11, 6}, 1}, std::pair{platform::Version{10, 12, 0}, 0},
          std::pair{platform::Version{10, 15, 7}, 0}, std::pair{platform::Version{11, 2, 0}, 1}}) {
        Program program(variants::wrapAround);
        program.platform.system.setVersion(version);
        program.launched();
        click(program, 0);
        EXPECT_THAT(program.effects(), testing::SizeIs(opens)) << version.major;
        EXPECT_FALSE(program.app.mainMenu->items.empty());
    }
}

TEST(RightClick, TogglesAndOpensAnEmptyMenuThatIsFullAgainAfterThreeTenths) {
    for (const int button : {1, 2}) {
        Program program(variants::wrapAround);
        program.launched();
        program.platform.advance(1);
        click(program, button);
        EXPECT_THAT(
            program.effects({"timer"}),
            ElementsAre(R"(timer {"selector":"enableMainMenu","interval":0.3,"repeats":false})"));
        EXPECT_FALSE(program.platform.settings.boolForKey(keys::ATTIVO));
        EXPECT_THAT(program.app.mainMenu->items, IsEmpty());
        program.platform.advance(0.29);
        EXPECT_THAT(program.app.mainMenu->items, IsEmpty());
        program.platform.advance(0.01);
        EXPECT_EQ(entry(program, "ABILITA").action, "enableDisable");
    }
}

TEST(OpenMenu, FlashesTheBordersOfACursorHiderWithHotBordersAfterwards) {
    for (const auto& [variant, stored, windows] :
         {std::tuple{1, "1", 2U}, std::tuple{1, "0", 0U}, std::tuple{5, "1", 0U}}) {
        Program program(variant);
        program.launched();
        program.setting(keys::HOT_BOUNDS, Value{std::string(stored)});
        program.app.openMenu();
        const Lines effects = program.effects({"popUpMenu", "window"});
        ASSERT_THAT(effects, testing::SizeIs(1 + windows));
        EXPECT_EQ(effects.front(), "popUpMenu {}");
    }
}

TEST(DismissFocus, GivesTheKeyboardAwayHalfASecondAfterTheStart) {
    Program program(variants::barrier);
    program.launched();
    program.platform.advance(0.49);
    EXPECT_THAT(program.effects({"openFile"}), IsEmpty());
    program.platform.advance(0.01);
    EXPECT_THAT(program.effects({"openFile"}),
                ElementsAre(R"(openFile {"path":"","application":"Dock"})"));
    program.platform.system.setVersion({10, 13, 6});
    program.app.dismissFocus();
    EXPECT_THAT(program.effects({"openFile"}), IsEmpty());
}

// ---- actions ------------------------------------------------------------------------------------

TEST(MenuAction, OfAModeFlipsItRebuildsTheMenuAndReopensItWhenItIsOn) {
    struct {
        int variant;
        const char* title;
        std::string_view key;
        const char* flips[2];
    } const cases[] = {
        {1, "TEMPO", keys::TIME_MODE, {"false", "true"}},
        {1, "Hot Borders Mode", keys::HOT_BOUNDS, {R"("1")", R"("0")"}},
        {8, "VELOCITYText", keys::VELOCITY_OPTION, {"true", "false"}},
    };
    for (const auto& [variant, title, key, flips] : cases) {
        Program program(variant);
        program.launched();
        program.platform.advance(1);
        for (const char* flipped : flips) {
            program.effects();
            choose(program, title);
            EXPECT_THAT(program.writesOf(key), ElementsAre(R"(write {"key":")" + std::string(key) +
                                                           R"(","value":)" + flipped + "}"));
            const bool isOn = std::string(flipped) == "true" || std::string(flipped) == R"("1")";
            program.platform.advance(0.01);
            EXPECT_THAT(program.effects({"popUpMenu"}), testing::SizeIs(isOn ? 1 : 0)) << title;
            program.platform.advance(1);
        }
    }
}

TEST(MenuAction, OfHotBordersMakesOneOfAnyTextThatIsNoNumber) {
    Program program(variants::cursorHider);
    program.launched();
    program.setting(keys::HOT_BOUNDS, Value{"yes"});
    program.app.pressHotBorders();
    EXPECT_EQ(program.platform.settings.stringForKey(keys::HOT_BOUNDS), "1");
}

TEST(MenuAction, OfTheModesOfTheCursorHiderShowsTheCursorAndForgetsThePendingHide) {
    for (const auto press : {&AppDelegate::pressTimeMode, &AppDelegate::pressHotBorders}) {
        Program program(variants::cursorHider);
        program.launched();
        program.pointer({100, 100});
        program.app.hidecursor();
        (program.app.*press)();
        EXPECT_TRUE(program.platform.cursor.isVisible());
        EXPECT_FALSE(program.platform.runLoop.isRunning(program.app.timerSchedule));
    }
}

TEST(MenuAction, OfAnOptionFlipsItWithoutReopening) {
    struct {
        int variant;
        const char* title;
        std::string_view key;
    } const cases[] = {
        {1, "SHOW_ON_SCROLL", keys::SHOW_ON_SCROLL},
        {8, "CTRLALTCMDText", keys::CTRLALTCMD},
        {5, "BREAK_AFTER_SWITCHText", keys::BREAK_AFTER_SWITCH},
    };
    for (const auto& [variant, title, key] : cases) {
        Program program(variant);
        program.launched();
        program.platform.advance(1);
        program.effects();
        const bool before = program.platform.settings.boolForKey(key);
        choose(program, title);
        EXPECT_EQ(program.platform.settings.boolForKey(key), !before) << title;
        EXPECT_EQ(entry(program, title).state, before ? 0 : 1) << title;
        program.platform.advance(1);
        EXPECT_THAT(program.effects({"popUpMenu"}), IsEmpty()) << title;
    }
}

TEST(MenuAction, OfStayHiddenNeedsAWayBackFirst) {
    const auto shortcut = [](std::int64_t flags) {
        return Value{platform::Dictionary{{"keyCode", Value{std::int64_t{40}}},
                                          {"modifierFlags", Value{flags}}}};
    };
    constexpr std::int64_t controlCommand = 1310720;
    Program program(variants::cursorHider);
    program.platform.settings.edit(keys::customShortcut, std::nullopt);
    program.launched();
    choose(program, "STAY_HIDDEN");
    EXPECT_THAT(program.effects({"applicationActivated", "alert"}),
                ElementsAre("applicationActivated {}", testing::HasSubstr("STAY_HIDDEN_WARNING"),
                            "applicationActivated {}", testing::HasSubstr("customShortcutView")));
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::STAY_HIDDEN));

    program.setting(keys::customShortcut, shortcut(0));
    choose(program, "STAY_HIDDEN");
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::STAY_HIDDEN)) << "no modifier";

    program.setting(keys::customShortcut, shortcut(controlCommand));
    program.setting(keys::customShortcutEnabled, off);
    choose(program, "STAY_HIDDEN");
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::STAY_HIDDEN)) << "switched off";

    program.setting(keys::customShortcutEnabled, on);
    choose(program, "STAY_HIDDEN");
    EXPECT_TRUE(program.platform.settings.boolForKey(keys::STAY_HIDDEN));
    EXPECT_FALSE(program.platform.cursor.isVisible());

    program.setting(keys::customShortcut, shortcut(0));
    choose(program, "STAY_HIDDEN");
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::STAY_HIDDEN)) << "off needs none";
    EXPECT_TRUE(program.platform.cursor.isVisible());
}

TEST(MenuAction, OfStayHiddenHidesAtOnceOnlyWhileTheProductIsOn) {
    for (const bool active : {true, false}) {
        Program program(variants::cursorHider);
        program.setting(keys::ATTIVO, Value{active});
        program.launched();
        choose(program, "STAY_HIDDEN");
        EXPECT_TRUE(program.platform.settings.boolForKey(keys::STAY_HIDDEN));
        EXPECT_EQ(program.platform.cursor.isVisible(), !active);
        program.app.hidecursor();
        choose(program, "STAY_HIDDEN");
        EXPECT_TRUE(program.platform.cursor.isVisible()) << "off shows it";
    }
}

TEST(MenuAction, OfASwitchBuildsTheMenuAnew) {
    struct {
        int variant;
        std::vector<const char*> titles;
    } const cases[] = {
        {1, {"TEMPO", "Hot Borders Mode", "STAY_HIDDEN"}},
        {1, {"CTRLALTCMDTextVellumor", "SHOW_ON_SCROLL", "AVVIA_AL_LOGIN"}},
        {5, {"VELOCITYText", "BREAK_AFTER_SWITCHText", "CTRLALTCMDText", "AVVIA_AL_LOGIN"}},
        {8, {"VELOCITYText", "CTRLALTCMDText", "AVVIA_AL_LOGIN"}},
    };
    for (const auto& [variant, titles] : cases) {
        for (const char* title : titles) {
            Program program(variant);
            program.launched();
            const int before = entry(program, title).state;
            choose(program, title);
            EXPECT_THAT(program.effects({"statusImage"}), testing::SizeIs(1)) << title;
            EXPECT_EQ(entry(program, title).state, 1 - before) << title;
        }
    }
}

TEST(HotBordersMode, IsReadAsATextByTheMenuAndAsANumberByItsAction) {
    struct {
        Value stored;
        int marked;
        const char* pressed;
        bool flashes; ///< when the menu was opened by itself
    } const cases[] = {
        {Value{"1"}, 1, "0", true},
        {Value{"0"}, 0, "1", false},
        {Value{"2"}, 0, "0", false},
        {Value{" 1"}, 0, "0", true},
        {Value{"YES"}, 0, "1", false},
        {Value{true}, 0, "0", true},
        {Value{false}, 0, "1", false},
        {Value{std::int64_t{1}}, 0, "0", true},
        {Value{std::int64_t{7}}, 0, "0", false},
        {Value{std::int64_t{0}}, 0, "1", false},
    };
    for (const auto& [stored, marked, pressed, flashes] : cases) {
        const auto text = platform::stringValue(stored).value_or("no text");
        Program program(variants::cursorHider);
        program.setting(keys::HOT_BOUNDS, stored);
        program.launched();
        const MenuItem& item = entry(program, "Hot Borders Mode");
        EXPECT_EQ(item.state, marked) << text;
        EXPECT_EQ(item.submenu != nullptr, marked == 1) << text;
        EXPECT_EQ(entry(program, "TEMPO").enabled, marked == 0) << text;
        program.app.openMenu();
        EXPECT_THAT(program.effects({"window"}), testing::SizeIs(flashes ? 2 : 0)) << text;
        program.app.pressHotBorders();
        EXPECT_EQ(program.platform.settings.stringForKey(keys::HOT_BOUNDS), pressed) << text;
    }
}

TEST(CheckBoxes, StoreCornersAndSidesByTheirTags) {
    struct {
        int tag;
        const char* key;
    } const cases[] = {{3, "BUTANGOLO3"}, {12, "BUTLATO2"}, {10, "BUTLATO0"}, {9, "BUTANGOLO9"}};
    for (const auto& [tag, key] : cases) {
        Program program(variants::wrapAround);
        program.app.valueChange(CheckBox{.tag = tag, .state = 1});
        EXPECT_THAT(program.effects(),
                    ElementsAre(R"(write {"key":")" + std::string(key) + R"(","value":true})",
                                "synchronize {}"));
    }
}

TEST(CheckBoxes, StoreANumberedCheckAsText) {
    Program program(variants::barrier);
    program.app.presscheck(CheckBox{.tag = 0, .state = 1});
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(write {"key":"CHECK_0","value":"1"})", "synchronize {}"));
}

} // namespace
} // namespace palisor
