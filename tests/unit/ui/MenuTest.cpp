#include "unit/MenuEntries.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

/// One entry in a line: "TITLE action", "[x]" before a marked one, "(...)" round a greyed one, and
/// what hangs from it behind ">".
std::string lineOf(const MenuItem& item) {
    if (item.separator) return "---";
    if (std::holds_alternative<platform::BoundsView>(item.view)) return "bounds";
    if (const auto* view = std::get_if<platform::SliderView>(&item.view)) {
        const Slider& slider = view->slider;
        return std::to_string(static_cast<int>(slider.minimum)) + ".." +
               std::to_string(static_cast<int>(slider.maximum)) + " at " +
               std::to_string(static_cast<int>(slider.value)) + ", " +
               std::to_string(slider.tickMarks) + " ticks";
    }
    std::string line = item.title;
    if (!item.action.empty()) line += " " + item.action;
    if (item.state != 0) line = "[x]" + line;
    if (item.greyed()) line = "(" + line + ")";
    if (!item.submenu) return line;
    for (const auto& inside : item.submenu->items)
        line += " > " + lineOf(*inside);
    return line;
}

Lines menuOf(const Program& program) {
    Lines lines;
    for (const auto& item : program.app.mainMenu->items)
        lines.push_back(lineOf(*item));
    return lines;
}

/// With "help" standing for the entries that every product has there.
Lines spelledOut(const Lines& lines) {
    Lines all;
    for (const std::string& line : lines)
        if (line == "help")
            all.insert(all.end(), {"MAC_APP_STORE_PAGE openMacAppStorePage", "FACEBOOK_PAGE openFB",
                                   "SUPPORT openSupport"});
        else
            all.push_back(line);
    return all;
}

struct Shown {
    std::string name;
    int variant;
    platform::Dictionary settings;
    Lines menu;
};

const Value one{std::string("1")};

const Shown menus[] = {
    {"BarrierOn",
     8,
     {},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "DARK_LEVEL > 0..20 at 15, 21 ticks",
      "VELOCITYText pressVelocity:", "[x]CTRLALTCMDText CTRLALTCMDDidChanged:", "---", "help",
      "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"BarrierOff",
     8,
     {{"ATTIVO", off}},
     {"ABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "DARK_LEVEL > 0..20 at 15, 21 ticks", "(VELOCITYText)", "([x]CTRLALTCMDText)", "---", "help",
      "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"BarrierWithPush",
     8,
     {{"VELOCITY_OPTION", on}},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "DARK_LEVEL > 0..20 at 15, 21 ticks",
      "[x]VELOCITYText pressVelocity: > 1..100 at 50, 11 ticks",
      "[x]CTRLALTCMDText CTRLALTCMDDidChanged:", "---", "help", "---",
      "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"BarrierWithPushOff",
     8,
     {{"VELOCITY_OPTION", on}, {"ATTIVO", off}, {"CTRLALTCMD", off}},
     {"ABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "DARK_LEVEL > 0..20 at 15, 21 ticks", "([x]VELOCITYText) > 1..100 at 50, 11 ticks",
      "(CTRLALTCMDText)", "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"DesktopSwitcher",
     2,
     {},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---", "BORDI_ATTIVI > bounds",
      "VELOCITYText pressVelocity:", "[x]CTRLALTCMDText CTRLALTCMDDidChanged:", "---", "help",
      "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"WrapAround",
     5,
     {{"BREAK_AFTER_SWITCH", on}},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---", "BORDI_ATTIVI > bounds",
      "VELOCITYText pressVelocity:", "[x]BREAK_AFTER_SWITCHText freezeCursorAfterSwitch:",
      "[x]CTRLALTCMDText CTRLALTCMDDidChanged:", "---", "help", "---",
      "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"WrapAroundOff",
     5,
     {{"ATTIVO", off}},
     {"ABILITA enableDisable", "SHORTCUT showShortcutPopup", "---", "BORDI_ATTIVI > bounds",
      "(VELOCITYText)", "(BREAK_AFTER_SWITCHText)", "([x]CTRLALTCMDText)", "---", "help", "---",
      "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHider",
     1,
     {},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "STAY_HIDDEN stayHiddenDidChanged:", "Hot Borders Mode pressHotBorders:",
      "[x]TEMPO pressTimeMode: > 0..30 at 5, 31 ticks",
      "[x]CTRLALTCMDTextVellumor CTRLALTCMDDidChanged:", "[x]SHOW_ON_SCROLL pressShowOnScroll",
      "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHiderWithoutTimeMode",
     1,
     {{"TIME_MODE", off}},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "STAY_HIDDEN stayHiddenDidChanged:", "Hot Borders Mode pressHotBorders:",
      "TEMPO pressTimeMode:", "[x]CTRLALTCMDTextVellumor CTRLALTCMDDidChanged:",
      "[x]SHOW_ON_SCROLL pressShowOnScroll", "---", "help", "---",
      "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHiderWithHotBorders",
     1,
     {{"HOT_BOUNDS", one}},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "STAY_HIDDEN stayHiddenDidChanged:", "[x]Hot Borders Mode pressHotBorders: > bounds",
      "([x]TEMPO pressTimeMode:) > 0..30 at 5, 31 ticks",
      "[x]CTRLALTCMDTextVellumor CTRLALTCMDDidChanged:", "[x]SHOW_ON_SCROLL pressShowOnScroll",
      "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHiderThatStaysHidden",
     1,
     {{"STAY_HIDDEN", on}},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "[x]STAY_HIDDEN stayHiddenDidChanged:", "(Hot Borders Mode)",
      "([x]TEMPO) > 0..30 at 5, 31 ticks", "([x]CTRLALTCMDTextVellumor)", "([x]SHOW_ON_SCROLL)",
      "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHiderOff",
     1,
     {{"ATTIVO", off}},
     {"ABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "STAY_HIDDEN stayHiddenDidChanged:", "(Hot Borders Mode)",
      "([x]TEMPO) > 0..30 at 5, 31 ticks", "([x]CTRLALTCMDTextVellumor)", "([x]SHOW_ON_SCROLL)",
      "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHiderWithHotBordersOff",
     1,
     {{"HOT_BOUNDS", one}, {"ATTIVO", off}},
     {"ABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "STAY_HIDDEN stayHiddenDidChanged:", "([x]Hot Borders Mode) > bounds",
      "([x]TEMPO) > 0..30 at 5, 31 ticks", "([x]CTRLALTCMDTextVellumor)", "([x]SHOW_ON_SCROLL)",
      "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"CursorHiderThatWouldStayHiddenOff",
     1,
     {{"STAY_HIDDEN", on}, {"ATTIVO", off}, {"TIME_MODE", off}, {"SHOW_ON_SCROLL", off}},
     {"ABILITA enableDisable", "SHORTCUT showShortcutPopup", "---",
      "[x]STAY_HIDDEN stayHiddenDidChanged:", "(Hot Borders Mode)", "(TEMPO)",
      "([x]CTRLALTCMDTextVellumor)", "(SHOW_ON_SCROLL)", "---", "help", "---",
      "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
    {"WrapAroundWithSettingsOfTheCursorHider",
     5,
     {{"STAY_HIDDEN", on}, {"HOT_BOUNDS", one}, {"CHECK_1", one}},
     {"DISABILITA enableDisable", "SHORTCUT showShortcutPopup", "---", "BORDI_ATTIVI > bounds",
      "VELOCITYText pressVelocity:", "BREAK_AFTER_SWITCHText freezeCursorAfterSwitch:",
      "[x]CTRLALTCMDText CTRLALTCMDDidChanged:", "---", "help", "---",
      "[x]AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}},
};

class StatusMenu : public testing::TestWithParam<Shown> {};

TEST_P(StatusMenu, HasItsEntriesInOrder) {
    Program program(GetParam().variant);
    for (const auto& [key, value] : GetParam().settings)
        program.setting(key, value);
    program.launched();
    EXPECT_EQ(menuOf(program), spelledOut(GetParam().menu));
}

INSTANTIATE_TEST_SUITE_P(Products, StatusMenu, testing::ValuesIn(menus),
                         [](const auto& shown) { return shown.param.name; });

TEST(StatusMenu, OfTheOtherProductsHasTheCommonEntriesOnly) {
    for (const int variant : {0, 3, 4, 6, 7, 9}) {
        for (const bool active : {true, false}) {
            Program program(variant);
            program.setting(keys::ATTIVO, Value{active});
            program.launched();
            EXPECT_EQ(
                menuOf(program),
                spelledOut(
                    {active ? "DISABILITA enableDisable" : "ABILITA enableDisable",
                     "SHORTCUT showShortcutPopup", "---",
                     active ? "[x]CTRLALTCMDText CTRLALTCMDDidChanged:" : "([x]CTRLALTCMDText)",
                     "---", "help", "---", "AVVIA_AL_LOGIN pressAvviaAlLogin", "QUIT quit"}))
                << variant;
        }
    }
}

TEST(StatusMenu, DisablesWhatFollowsTheStateAndNothingElse) {
    struct {
        int variant;
        std::vector<std::string> followers; ///< enabled while the product is on
    } const cases[] = {
        {1, {"Hot Borders Mode", "TEMPO", "CTRLALTCMDTextVellumor"}},
        {2, {"BORDI_ATTIVI", "VELOCITYText", "CTRLALTCMDText"}},
        {5, {"BORDI_ATTIVI", "VELOCITYText", "BREAK_AFTER_SWITCHText", "CTRLALTCMDText"}},
        {8, {"DARK_LEVEL", "VELOCITYText", "CTRLALTCMDText"}},
        {0, {"CTRLALTCMDText"}},
    };
    for (const auto& [variant, followers] : cases) {
        for (const bool active : {true, false}) {
            for (const bool hot : {false, true}) {
                Program program(variant);
                program.setting(keys::ATTIVO, Value{active});
                if (hot) program.setting(keys::HOT_BOUNDS, one);
                program.launched();
                std::vector<std::string> enabled, expected;
                for (const auto& item : program.app.mainMenu->items) {
                    if (item->separator) continue;
                    const auto& title = item->title;
                    if (item->enabled) enabled.push_back(title);
                    const bool follows = std::ranges::count(followers, title) == 1;
                    const bool excluded = hot && title == "TEMPO";
                    if (!excluded && (active || !follows)) expected.push_back(title);
                }
                EXPECT_EQ(enabled, expected) << variant << (active ? " on" : " off");
            }
        }
    }
}

TEST(StatusMenu, KeepsSubmenusOpenableWhileTheProductIsOff) {
    for (const auto& [variant, title] :
         {std::pair{8, "DARK_LEVEL"}, std::pair{2, "BORDI_ATTIVI"}, std::pair{5, "BORDI_ATTIVI"}}) {
        Program program(variant);
        program.setting(keys::ATTIVO, off);
        program.launched();
        EXPECT_FALSE(entry(program, title).enabled) << variant;
        EXPECT_FALSE(entry(program, title).greyed()) << variant;
    }
}

TEST(StatusMenu, TakesSillyStoredValuesIntoTheRangesOfItsSliders) {
    struct {
        int variant;
        const char* key;
        Value stored;
        const char* menu;
        std::size_t at;
    } const cases[] = {
        {8, "OTHERS_DARK", Value{std::int64_t{-7}}, "DARK_LEVEL > 0..20 at 0, 21 ticks", 3},
        {8, "OTHERS_DARK", Value{std::int64_t{4000}}, "DARK_LEVEL > 0..20 at 20, 21 ticks", 3},
        {8, "OTHERS_DARK", Value{"x"}, "DARK_LEVEL > 0..20 at 0, 21 ticks", 3},
        {8, "VELOCITY", Value{std::int64_t{0}},
         "[x]VELOCITYText pressVelocity: > 1..100 at 1, 11 ticks", 4},
        {8, "VELOCITY", Value{"900"}, "[x]VELOCITYText pressVelocity: > 1..100 at 100, 11 ticks",
         4},
        {1, "SCHEDULE", Value{"99"}, "[x]TEMPO pressTimeMode: > 0..30 at 30, 31 ticks", 5},
        {1, "SCHEDULE", Value{"abc"}, "[x]TEMPO pressTimeMode: > 0..30 at 0, 31 ticks", 5},
    };
    for (const auto& [variant, key, stored, menu, at] : cases) {
        Program program(variant);
        program.setting(keys::VELOCITY_OPTION, on);
        program.launched();
        program.setting(key, stored);
        program.app.updateMenuItems();
        EXPECT_EQ(menuOf(program).at(at), menu);
    }
}

TEST(BoundsPanel, HasTheEightBoxesUnderTheirNamesAndItsExplanation) {
    for (const int variant : {1, 2, 5}) {
        Program program(variant);
        program.launched();
        auto& app = program.app;
        const auto& panel = std::get<platform::BoundsView>(app.boundsSubMenu->items.at(0)->view);
        EXPECT_THAT(panel.corners,
                    ElementsAre(testing::FieldsAre("butangolo1", &app.butangolo1, testing::_),
                                testing::FieldsAre("butangolo2", &app.butangolo2, testing::_),
                                testing::FieldsAre("butangolo3", &app.butangolo3, testing::_),
                                testing::FieldsAre("butangolo4", &app.butangolo4, testing::_)));
        EXPECT_THAT(panel.sides,
                    ElementsAre(testing::FieldsAre("butlato1", &app.butlato1, testing::_),
                                testing::FieldsAre("butlato2", &app.butlato2, testing::_),
                                testing::FieldsAre("butlato3", &app.butlato3, testing::_),
                                testing::FieldsAre("butlato4", &app.butlato4, testing::_)));
        EXPECT_EQ(panel.explanation, app.TFBounds);
    }
}

TEST(StatusImage, FollowsTheStateAndTheProductAndIsATemplate) {
    for (const auto& [variant, shown, hidden] :
         {std::tuple{8, "icon_statusbar_on8", "icon_statusbar_off8"},
          std::tuple{0, "icon_statusbar_on0", "icon_statusbar_off0"},
          std::tuple{1, "statusIconVellumor", "statusIconVellumorOff"}}) {
        Program program(variant);
        program.app.applicationDidFinishLaunching();
        program.app.enableDisable();
        const auto image = [](const char* name) {
            return R"(statusImage {"name":")" + std::string(name) + R"(","template":true})";
        };
        EXPECT_THAT(program.effects({"statusImage"}), ElementsAre(image(shown), image(hidden)));
        EXPECT_EQ(program.app.mainMenu->items.front()->image, "OnOff");
    }
}

TEST(StatusItem, SaysInWordsWhetherTheProductIsOn) {
    Program program(variants::barrier);
    program.launched();
    EXPECT_THAT(program.platform.statusItem.shownToolTip(), testing::EndsWith(": STATE_ON"));
    program.app.enableDisable();
    EXPECT_THAT(program.platform.statusItem.shownToolTip(), testing::EndsWith(": STATE_OFF"));
}

TEST(StatusMenu, OpensByItselfOnTheVeryFirstRunAndNeverAgain) {
    Program program(variants::cursorHider);
    program.app.applicationDidFinishLaunching();
    program.platform.advance(0.19);
    EXPECT_THAT(program.effects({"popUpMenu"}), IsEmpty());
    program.platform.advance(0.01);
    EXPECT_THAT(program.effects({"popUpMenu"}), ElementsAre("popUpMenu {}"));
    program.app.initiailValuesForUserDefaults();
    program.platform.advance(5);
    EXPECT_THAT(program.effects({"popUpMenu"}), IsEmpty());
}

} // namespace
} // namespace palisor
