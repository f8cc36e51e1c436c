#include "unit/MenuEntries.h"
#include "unit/app/Controlled.h"

#include <gmock/gmock.h>
#include <set>

// The table of settings, and settings as text.

namespace palisor {
namespace {

using control::Refusal;
using platform::Shortcut;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

std::string valueOf(Controlled& program, std::string_view name) {
    const auto found = control::setting(program.app, name);
    return found ? found->value : "(none)";
}

const Value& storedOf(Controlled& program, std::string_view key) {
    static const Value nothing{"(nothing)"};
    const Value* stored = program.platform.settings.object(key);
    return stored == nullptr ? nothing : *stored;
}

TEST(SettingsTable, NamesEachSettingOnceAndSaysWhatItIs) {
    std::set<std::string_view> names;
    for (const Setting& setting : settingsTable()) {
        EXPECT_TRUE(names.insert(setting.key).second) << setting.key;
        EXPECT_TRUE(names.insert(setting.name).second) << setting.name;
        EXPECT_FALSE(setting.meaning.empty()) << setting.key;
        EXPECT_EQ(findSetting(setting.key), &setting);
        EXPECT_EQ(findSetting(setting.name), &setting);
    }
    EXPECT_EQ(findSetting("nothing"), nullptr);
    EXPECT_EQ(findSetting(""), nullptr);
}

TEST(SettingsTable, HasADefaultOfEachNumberInItsRange) {
    for (const Setting& setting : settingsTable()) {
        if (setting.kind != Setting::Kind::number) continue;
        const int standard = platform::intValue(setting.standardValue());
        EXPECT_GE(standard, setting.least) << setting.name;
        EXPECT_LE(standard, setting.most) << setting.name;
    }
}

TEST(SettingsList, OfAProductHasWhatItHeeds) {
    const struct {
        int variant;
        Lines names;
    } cases[] = {
        {variants::barrier,
         {"show-info", "start-at-login", "active", "override", "push", "push-strength", "darkness",
          "shortcut"}},
        {variants::wrapAround,
         {"show-info", "start-at-login", "side-left", "side-right", "side-top", "side-bottom",
          "corner-top-left", "corner-top-right", "corner-bottom-right", "corner-bottom-left",
          "active", "override", "push", "push-strength", "break-after-switch", "shortcut"}},
        {variants::cursorHider,
         {"show-info", "start-at-login", "hide-after", "hot-borders", "side-left", "side-right",
          "side-top", "side-bottom", "corner-top-left", "corner-top-right", "corner-bottom-right",
          "corner-bottom-left", "active", "show-on-scroll", "override", "time-mode", "stay-hidden",
          "shortcut"}},
        {variants::keepAwake, {"show-info", "start-at-login", "active", "override", "shortcut"}},
        {variants::calendarAlerts,
         {"show-info", "start-at-login", "active", "override", "offset", "sound", "shortcut"}},
    };
    for (const auto& [variant, names] : cases) {
        Controlled program(variant);
        Lines listed;
        for (const auto& one : control::settings(program.app))
            listed.emplace_back(one.setting->name);
        EXPECT_EQ(listed, names) << variant;
    }
}

TEST(SettingsList, SaysOfAFreshInstallationThatAllButTheShortcutAreDefaults) {
    for (const int variant : {1, 2, 3, 5, 7, 8, 9}) {
        Program program(variant);
        program.app.applicationDidFinishLaunching();
        for (const auto& one : control::settings(program.app))
            EXPECT_EQ(one.isDefault, one.setting->key != keys::customShortcut)
                << variant << ' ' << one.setting->name << ' ' << one.value;
    }
}

TEST(SettingsList, BeforeTheStartReadsWhatIsStored) {
    Program program(variants::barrier);
    EXPECT_EQ(control::setting(program.app, "darkness")->value, "0");
    EXPECT_EQ(control::setting(program.app, "active")->value, "off");
    EXPECT_EQ(control::setting(program.app, "shortcut")->value, "⌃⌘K");
}

TEST(SettingText, IsInTheUsersUnits) {
    Controlled barrier;
    EXPECT_EQ(valueOf(barrier, "darkness"), "75");
    EXPECT_EQ(valueOf(barrier, "OTHERS_DARK"), "75");
    EXPECT_EQ(valueOf(barrier, "push"), "off");
    EXPECT_EQ(valueOf(barrier, "push-strength"), "50");
    EXPECT_EQ(valueOf(barrier, "shortcut"), "⌃⌘K");
    EXPECT_EQ(valueOf(barrier, "sound"), "(none)") << "of another product";
    Controlled hider(variants::cursorHider);
    EXPECT_EQ(valueOf(hider, "hide-after"), "5");
    EXPECT_EQ(valueOf(hider, "hot-borders"), "off");
    EXPECT_EQ(valueOf(hider, "side-left"), "on");
    Controlled calendar(variants::calendarAlerts);
    EXPECT_EQ(valueOf(calendar, "sound"), "Pop");
}

TEST(SettingText, IsTakenInTheFormThatTheFileHas) {
    const struct {
        int variant;
        const char *name, *text;
        std::string_view key;
        Value stored;
        const char* shown;
    } cases[] = {
        {8, "darkness", "35", keys::OTHERS_DARK, Value{std::int64_t{7}}, "35"},
        {8, "darkness", "35%", keys::OTHERS_DARK, Value{std::int64_t{7}}, "35"},
        {8, "darkness", " 33 % ", keys::OTHERS_DARK, Value{std::int64_t{7}}, "35"},
        {8, "darkness", "100", keys::OTHERS_DARK, Value{std::int64_t{20}}, "100"},
        {8, "OTHERS_DARK", "0", keys::OTHERS_DARK, Value{std::int64_t{0}}, "0"},
        {8, "push", "on", keys::VELOCITY_OPTION, Value{true}, "on"},
        {8, "push", "YES", keys::VELOCITY_OPTION, Value{true}, "on"},
        {8, "push", "0", keys::VELOCITY_OPTION, Value{false}, "off"},
        {8, "push-strength", "1", keys::VELOCITY, Value{std::int64_t{1}}, "1"},
        {8, "override", "false", keys::CTRLALTCMD, Value{false}, "off"},
        {8, "show-info", "off", keys::CHECK_0, Value{"1"}, "off"},
        {8, "show-info", "on", keys::CHECK_0, Value{"0"}, "on"},
        {8, "shortcut", "Ctrl+Super+J", keys::customShortcut,
         Shortcut{38, Shortcut::control | Shortcut::command}.toValue(), "⌃⌘J"},
        {8, "shortcut", "shift+ctrl+f5", keys::customShortcut,
         Shortcut{96, Shortcut::control | Shortcut::shift}.toValue(), "⌃⇧F5"},
        {8, "shortcut", "⌥⌘Space", keys::customShortcut,
         Shortcut{49, Shortcut::option | Shortcut::command}.toValue(), "⌥⌘Space"},
        {8, "shortcut", "Shift+F5", keys::customShortcut, Shortcut{96, Shortcut::shift}.toValue(),
         "⇧F5"},
        {1, "hide-after", "12 s", keys::SCHEDULE, Value{"12"}, "12"},
        {1, "hot-borders", "true", keys::HOT_BOUNDS, Value{"1"}, "on"},
        {1, "side-left", "no", keys::BUTLATO1, Value{false}, "off"},
        {5, "corner-top-left", "yes", keys::BUTANGOLO1, Value{true}, "on"},
        {9, "offset", "-300s", keys::OFFSET, Value{std::int64_t{-300}}, "-300"},
        {9, "sound", "Glass", keys::ALARM_SOUND, Value{"Glass"}, "Glass"},
    };
    for (const auto& [variant, name, text, key, stored, shown] : cases) {
        Controlled program(variant);
        EXPECT_EQ(control::setSetting(program.app, name, text), Refusal::none) << name << text;
        EXPECT_EQ(storedOf(program, key), stored) << name << text;
        EXPECT_EQ(valueOf(program, name), shown) << name << text;
        EXPECT_TRUE(program.platform.settings.isSaved());
    }
}

TEST(SettingText, ThatIsShownIsTaken) {
    for (const int variant : {1, 2, 3, 5, 7, 8, 9}) {
        Controlled program(variant);
        for (const auto& one : control::settings(program.app)) {
            EXPECT_EQ(control::setSetting(program.app, one.setting->name, one.value), Refusal::none)
                << one.setting->name << ' ' << one.value;
            EXPECT_EQ(valueOf(program, one.setting->name), one.value) << one.setting->name;
        }
    }
}

TEST(SettingText, OfTheWrongKindIsRefusedAndNothingIsStored) {
    const struct {
        int variant;
        const char *name, *text;
        Refusal refusal;
    } cases[] = {
        {8, "darknes", "5", Refusal::unknownKey},
        {8, "", "5", Refusal::unknownKey},
        {8, "CHECK_7", "5", Refusal::unknownKey},
        {8, "hide-after", "5", Refusal::notOfThisProduct},
        {2, "side-top", "on", Refusal::notOfThisProduct},
        {8, "push", "2", Refusal::wrongType},
        {8, "push", "", Refusal::wrongType},
        {8, "push", "maybe", Refusal::wrongType},
        {8, "darkness", "", Refusal::wrongType},
        {8, "darkness", "%", Refusal::wrongType},
        {8, "darkness", "dark", Refusal::wrongType},
        {8, "darkness", "5x", Refusal::wrongType},
        {8, "darkness", "5s", Refusal::wrongType},
        {8, "darkness", "1.5", Refusal::wrongType},
        {8, "darkness", "+-5", Refusal::wrongType},
        {8, "darkness", "101", Refusal::outOfRange},
        {8, "darkness", "-1", Refusal::outOfRange},
        {8, "darkness", "99999999999999999999", Refusal::outOfRange},
        {8, "push-strength", "0", Refusal::outOfRange},
        {8, "push-strength", "101", Refusal::outOfRange},
        {1, "hide-after", "31", Refusal::outOfRange},
        {8, "shortcut", "K", Refusal::needsModifier},
        {8, "shortcut", "Shift+K", Refusal::needsModifier},
        {8, "shortcut", "F5", Refusal::needsModifier},
        {8, "shortcut", "Ctrl+", Refusal::wrongType},
        {8, "shortcut", "Ctrl+Nokey", Refusal::wrongType},
        {8, "shortcut", "Hyper+K", Refusal::wrongType},
        {8, "shortcut", "none", Refusal::shortcutNeeded},
        {8, "shortcut", "Super+F2", Refusal::shortcutTaken},
        {8, "shortcut", "Ctrl+Alt+D", Refusal::shortcutTaken},
    };
    for (const auto& [variant, name, text, refusal] : cases) {
        Controlled program(variant);
        program.platform.hotKeys.take({2, Shortcut::control | Shortcut::option}); // Ctrl+Alt+D
        program.effects();
        EXPECT_EQ(control::setSetting(program.app, name, text), refusal) << name << ' ' << text;
        EXPECT_THAT(program.effects(), IsEmpty()) << name << ' ' << text;
    }
}

TEST(SettingText, ThatIsTheShortcutAlreadyIsNoObstacleToItself) {
    Controlled program;
    program.platform.hotKeys.take(Program::shortcut);
    EXPECT_EQ(control::setSetting(program.app, "shortcut", "Ctrl+Super+K"), Refusal::none);
}

TEST(Reset, PutsTheDefaultBackWhereverItComesFrom) {
    const struct {
        int variant;
        const char *name, *changed, *standard;
    } cases[] = {
        {8, "darkness", "100", "75"},        {8, "push", "on", "off"},
        {8, "active", "off", "on"},          {8, "start-at-login", "on", "off"},
        {8, "show-info", "off", "on"},       {1, "hide-after", "20", "5"},
        {1, "hot-borders", "on", "off"},     {1, "side-left", "off", "on"},
        {1, "corner-top-left", "on", "off"}, {5, "shortcut", "Ctrl+J", "none"},
    };
    for (const auto& [variant, name, changed, standard] : cases) {
        Controlled program(variant);
        ASSERT_EQ(control::setSetting(program.app, name, changed), Refusal::none) << name;
        EXPECT_FALSE(control::setting(program.app, name)->isDefault) << name;
        EXPECT_EQ(control::resetSetting(program.app, name), Refusal::none) << name;
        EXPECT_EQ(valueOf(program, name), standard) << name;
        EXPECT_TRUE(control::setting(program.app, name)->isDefault) << name;
    }
}

TEST(Reset, IsRefusedAsAChangeIs) {
    Controlled program;
    program.effects();
    EXPECT_EQ(control::resetSetting(program.app, "nothing"), Refusal::unknownKey);
    EXPECT_EQ(control::resetSetting(program.app, "sound"), Refusal::notOfThisProduct);
    EXPECT_EQ(control::resetSetting(program.app, "shortcut"), Refusal::shortcutNeeded);
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(ChangedSetting, TakesEffectAtOnce) {
    Controlled program;
    program.effects();
    control::setSetting(program.app, "darkness", "100");
    EXPECT_THAT(program.effects({"write", "synchronize", "windowAlpha"}),
                ElementsAre(R"(write {"key":"OTHERS_DARK","value":20})", "synchronize {}",
                            R"(windowAlpha {"id":1,"alpha":1})"));
    control::setSetting(program.app, "active", "off");
    EXPECT_EQ(program.platform.pointer.heldInside(), std::nullopt);
    control::setSetting(program.app, "override", "off");
    program.platform.advance(0.001);
    EXPECT_EQ(entry(program, "CTRLALTCMDText").state, 0);
}

TEST(ChangedSetting, ThatIsSoAlreadyChangesNothingOnTheScreen) {
    Controlled awake(variants::keepAwake);
    awake.effects();
    EXPECT_EQ(control::setSetting(awake.app, "active", "on"), Refusal::none);
    EXPECT_EQ(control::resetSetting(awake.app, "active"), Refusal::none);
    EXPECT_THAT(awake.effects({"assertionCreate", "assertionRelease", "timer"}), IsEmpty());
}

TEST(ChangedSetting, OfTheSwitchOnOneMonitorDoesNotEndTheProgram) {
    Controlled program;
    program.plug(oneMonitor);
    EXPECT_EQ(control::setSetting(program.app, "active", "off"), Refusal::none);
    EXPECT_EQ(control::setSetting(program.app, "active", "on"), Refusal::none);
    EXPECT_THAT(program.effects({"alert"}), IsEmpty());
}

TEST(ChangedSetting, OfTheStartAtLoginMakesTheEntryAsTheMenuDoes) {
    Controlled asked, chosen;
    for (const char* value : {"on", "off"}) {
        asked.effects();
        chosen.effects();
        control::setSetting(asked.app, "start-at-login", value);
        chosen.app.pressAvviaAlLogin();
        const Lines effects = asked.effects({"loginItem"});
        EXPECT_THAT(effects, testing::SizeIs(1));
        EXPECT_EQ(effects, chosen.effects({"loginItem"}));
        EXPECT_EQ(storedOf(asked, keys::CHECK_1), storedOf(chosen, keys::CHECK_1));
    }
    control::setSetting(asked.app, "start-at-login", "on");
    asked.effects();
    control::resetSetting(asked.app, "start-at-login");
    EXPECT_THAT(asked.effects({"loginItem"}), testing::SizeIs(1));
}

TEST(ChangedSetting, ToStayHiddenAsksForAShortcutFirst) {
    Controlled program(variants::cursorHider);
    program.platform.settings.edit(keys::customShortcut, std::nullopt);
    EXPECT_EQ(control::setSetting(program.app, "stay-hidden", "on"), Refusal::shortcutNeeded);
    EXPECT_TRUE(program.platform.cursor.isVisible());
    EXPECT_EQ(control::setSetting(program.app, "stay-hidden", "off"), Refusal::none);
    EXPECT_EQ(control::setSetting(program.app, "shortcut", "Ctrl+J"), Refusal::none);
    EXPECT_EQ(control::setSetting(program.app, "stay-hidden", "on"), Refusal::none);
    EXPECT_FALSE(program.platform.cursor.isVisible());
}

TEST(ChangedSetting, OfTheShortcutIsClaimedAtOnce) {
    Controlled program;
    ASSERT_EQ(control::setSetting(program.app, "shortcut", "Ctrl+Alt+J"), Refusal::none);
    program.platform.hotKeys.press({38, Shortcut::control | Shortcut::option});
    EXPECT_FALSE(program.state().active);
    program.platform.hotKeys.press(Program::shortcut);
    EXPECT_FALSE(program.state().active) << "the old one is free";
}

} // namespace
} // namespace palisor
