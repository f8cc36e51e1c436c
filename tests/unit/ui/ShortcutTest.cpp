#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Shortcut;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

const Lines hotKeyEffects(Program& program) {
    return program.effects(
        {"hotKeyRegister", "hotKeyUnregister", "hotKeyBind", "hotKeyUnbind", "timer", "register"});
}

constexpr Shortcut commandF2{120, 0x100000};

constexpr const char* refresh =
    R"(timer {"selector":"updateMenuItems","interval":0.1,"repeats":false})";

TEST(ShortcutSetUp, RegistersItsDefaultsBindsClaimsAndRefreshesTheMenuThreeTimes) {
    Program program(variants::wrapAround);
    program.app.initGlobalShortCutForEnableDisable();
    EXPECT_THAT(hotKeyEffects(program),
                ElementsAre(R"(register {"key":"hardcodedShortcutEnabled","value":true})",
                            R"(register {"key":"customShortcutEnabled","value":true})", refresh,
                            "hotKeyBind {}", refresh, "hotKeyRegister {}", refresh));
}

TEST(ShortcutSetUp, FollowsWhatTheUserHasSwitchedOff) {
    Program program(variants::wrapAround);
    program.setting(keys::customShortcutEnabled, Value{false});
    program.setting(keys::hardcodedShortcutEnabled, Value{false});
    program.app.initGlobalShortCutForEnableDisable();
    EXPECT_THAT(
        program.effects({"hotKeyBind", "hotKeyUnbind", "hotKeyRegister", "hotKeyUnregister"}),
        ElementsAre("hotKeyUnbind {}", "hotKeyUnregister {}"));
}

TEST(CustomShortcut, TogglesEachTimeItIsPressed) {
    Program program(variants::wrapAround);
    program.launched();
    program.platform.hotKeys.press(Program::shortcut);
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::ATTIVO));
    program.platform.hotKeys.press(Program::shortcut);
    EXPECT_TRUE(program.platform.settings.boolForKey(keys::ATTIVO));
}

TEST(CustomShortcut, WithNothingStoredIsBoundAndNothingFires) {
    Program program(variants::wrapAround);
    program.platform.settings.edit(keys::customShortcut, std::nullopt);
    program.launched();
    program.platform.hotKeys.press(Program::shortcut);
    program.platform.hotKeys.press(Shortcut{});
    EXPECT_TRUE(program.platform.settings.boolForKey(keys::ATTIVO));
}

TEST(CustomShortcut, RecordedAnewRefreshesTheMenuATenthLaterAndIsNotBoundAgain) {
    Program program(variants::wrapAround);
    program.launched();
    program.platform.advance(1);
    program.effects();
    const Shortcut recorded{46, Shortcut::option | Shortcut::shift};
    program.setting(keys::customShortcut, recorded.toValue());
    EXPECT_THAT(hotKeyEffects(program), ElementsAre(refresh));
    const MenuItem& first = *program.app.mainMenu->items.front();
    EXPECT_EQ(first.text, "DISABILITA" + std::string(32, ' ') + "⌃⌘K");
    program.platform.advance(0.1);
    EXPECT_EQ(program.app.mainMenu->items.front()->text,
              "DISABILITA" + std::string(32, ' ') + "⌥⇧M");
    program.platform.hotKeys.press(recorded);
    EXPECT_FALSE(program.platform.settings.boolForKey(keys::ATTIVO));
}

TEST(CustomShortcut, SwitchedOffOutsideIsUnboundAndLeavesTheMenu) {
    Program program(variants::wrapAround);
    program.launched();
    program.platform.advance(1);
    program.effects();
    program.setting(keys::customShortcutEnabled, Value{false});
    EXPECT_THAT(hotKeyEffects(program), ElementsAre("hotKeyUnbind {}", refresh));
    program.platform.advance(0.1);
    EXPECT_EQ(program.app.mainMenu->items.front()->text, "DISABILITA");
    program.platform.hotKeys.press(Program::shortcut);
    EXPECT_TRUE(program.platform.settings.boolForKey(keys::ATTIVO));
}

TEST(CustomShortcut, IsShownInTheMenuOnlyWhenItIsUsable) {
    for (const auto& [stored, shown] :
         {std::pair{Program::shortcut.toValue(), true}, std::pair{Shortcut{40, 0}.toValue(), false},
          std::pair{Value{"⌘K"}, false},
          std::pair{Value{platform::Dictionary{{"keyCode", Value{"40"}}}}, false}}) {
        Program program(variants::wrapAround);
        program.setting(keys::customShortcut, stored);
        program.launched();
        EXPECT_EQ(program.app.mainMenu->items.front()->text != "DISABILITA", shown);
    }
}

TEST(HardcodedShortcut, IsClaimedAndDoesNothing) {
    Program program(variants::wrapAround);
    program.launched();
    EXPECT_THAT(program.platform.hotKeys.claimed(), ElementsAre(commandF2));
    program.platform.advance(1);
    program.effects();
    program.platform.hotKeys.press(commandF2);
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(HardcodedShortcut, SwitchedOffAndOnOutsideIsGivenBackAndClaimedAgain) {
    Program program(variants::wrapAround);
    program.launched();
    program.effects();
    program.setting(keys::hardcodedShortcutEnabled, Value{false});
    EXPECT_THAT(program.platform.hotKeys.claimed(), IsEmpty());
    program.setting(keys::hardcodedShortcutEnabled, Value{true});
    EXPECT_THAT(program.platform.hotKeys.claimed(), ElementsAre(commandF2));
    EXPECT_THAT(hotKeyEffects(program),
                ElementsAre("hotKeyUnregister {}", refresh, "hotKeyRegister {}", refresh));
}

// ---- popup --------------------------------------------------------------------------------------

TEST(ShortcutPopup, HasInstructionsInTheTwoProductsThatNeedAWayBack) {
    for (const auto& [variant, informative] :
         {std::pair{8, "SHORTCUT_INSTRUCTIONS_PALISOR"}, std::pair{1, "SHORTCUT_INSTRUCTIONS"},
          std::pair{2, ""}, std::pair{5, ""}, std::pair{0, ""}}) {
        Program program(variant);
        program.launched();
        program.effects();
        program.app.showShortcutPopup();
        EXPECT_THAT(
            program.effects(),
            ElementsAre("applicationActivated {}",
                        R"(alert {"message":"SHORTCUT","informative":")" +
                            std::string(informative) +
                            R"(","buttons":["DONE"],"accessory":"customShortcutView","code":1})"))
            << variant;
        EXPECT_EQ(program.app.alertShortCut.message, "SHORTCUT") << "the one shown last is kept";
    }
}

/// Stores, at the nth showing of the popup, the nth of `recorded`.
void record(Program& program, std::vector<std::optional<Shortcut>> recorded) {
    program.platform.alerts.setWhileOpen(
        [&program, recorded, showing = std::size_t{0}](const platform::Alert&) mutable {
            const auto shortcut = recorded.at(showing++);
            if (shortcut)
                program.platform.settings.set(keys::customShortcut, shortcut->toValue());
            else
                program.platform.settings.remove(keys::customShortcut);
        });
}

TEST(ShortcutPopup, OfTheBarrierComesBackUntilAUsableShortcutIsRecorded) {
    Program program(variants::barrier);
    program.launched();
    record(program, {std::nullopt, Shortcut{40, 0}, Program::shortcut});
    program.effects();
    program.app.showShortcutPopup();
    EXPECT_THAT(program.effects({"alert"}), testing::SizeIs(3));
}

TEST(ShortcutPopup, OfTheOtherProductsClosesWhateverWasRecorded) {
    for (const int variant : {0, 1, 2, 5}) {
        Program program(variant);
        program.launched();
        record(program, {std::nullopt});
        program.effects();
        program.app.showShortcutPopup();
        EXPECT_THAT(program.effects({"alert"}), testing::SizeIs(1)) << variant;
    }
}

TEST(ShortcutPopup, OpensAtTheStartOfABarrierWithoutAUsableShortcut) {
    Program program(variants::barrier);
    program.platform.settings.edit(keys::customShortcut, std::nullopt);
    record(program, {Program::shortcut});
    program.app.applicationDidFinishLaunching();
    EXPECT_THAT(program.effects({"alert"}), testing::SizeIs(1));

    Program other(variants::cursorHider);
    other.platform.settings.edit(keys::customShortcut, std::nullopt);
    other.app.applicationDidFinishLaunching();
    EXPECT_THAT(other.effects({"alert"}), IsEmpty());
}

} // namespace
} // namespace palisor
