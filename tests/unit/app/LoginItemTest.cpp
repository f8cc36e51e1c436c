#include "unit/MenuEntries.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* helperOn =
    R"(loginItem {"identifier":"com.tamberlo.palisorHelper","enabled":true})";
constexpr const char* helperOff =
    R"(loginItem {"identifier":"com.tamberlo.palisorHelper","enabled":false})";

TEST(LoginHelper, IsNamedAfterTheProduct) {
    Program program(variants::barrier);
    program.launched();
    EXPECT_EQ(program.app.helperAppBundleIdentifier, "com.tamberlo.palisorHelper");
}

TEST(LoginHelper, IsToldToEndOnceThatTheProgramRuns) {
    Program program(variants::wrapAround);
    program.platform.workspace.setRunningApplications(
        {"org.example.other", "com.tamberlo.palisorHelper", "com.tamberlo.palisorHelper"});
    program.app.applicationDidFinishLaunching();
    EXPECT_THAT(
        program.effects({"distributed"}),
        ElementsAre(R"(distributed {"name":"TERMINATEHELPER","object":"com.tamberlo.palisor"})"));
}

TEST(LoginHelper, ThatDoesNotRunIsToldNothing) {
    Program program(variants::wrapAround);
    program.platform.workspace.setRunningApplications({"com.tamberlo.palisor"});
    program.app.applicationDidFinishLaunching();
    EXPECT_THAT(program.effects({"distributed"}), IsEmpty());
}

TEST(StartAtLogin, ToggledTwiceIsAsItWasAndTheHelperFollowsEachTime) {
    Program program(variants::barrier);
    program.launched();
    program.effects();
    program.app.pressAvviaAlLogin();
    EXPECT_EQ(program.app.mainMenu->items.at(program.app.mainMenu->items.size() - 2)->state, 1);
    program.app.pressAvviaAlLogin();
    EXPECT_THAT(program.effects({"write", "loginItem", "synchronize"}),
                testing::IsSupersetOf({R"(write {"key":"CHECK_1","value":"1"})", helperOn,
                                       R"(write {"key":"CHECK_1","value":"0"})", helperOff}));
}

TEST(StartAtLogin, OfTheDesktopSwitcherIsInTheSessionsListToo) {
    Program program(variants::desktopSwitcher);
    program.launched();
    program.effects();
    program.platform.bundle.set("CFBundleDisplayName", Value{"Quenlow"});
    program.app.autoLogin(true);
    program.app.autoLogin(true);
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(loginListInsert {"path":"/memory/Quenlow.app"})", helperOn,
                            R"(loginListInsert {"path":"/memory/Quenlow.app"})", helperOn));
    program.platform.loginItems.put("/memory/Quenlow.app/Contents/Helper");
    program.platform.loginItems.put(std::nullopt);
    program.platform.loginItems.put("/memory/Other.app");
    program.app.autoLogin(false);
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(loginListRemove {"path":"/memory/Quenlow.app"})",
                            R"(loginListRemove {"path":"/memory/Quenlow.app"})",
                            R"(loginListRemove {"path":"/memory/Quenlow.app/Contents/Helper"})",
                            helperOff));
    EXPECT_THAT(program.platform.loginItems.sessionList(), testing::SizeIs(2));
}

TEST(StartAtLogin, WithoutASessionListStillSwitchesTheHelper) {
    Program program(variants::desktopSwitcher);
    program.launched();
    program.effects();
    program.platform.loginItems.loseSessionList();
    program.app.autoLogin(true);
    program.app.autoLogin(false);
    EXPECT_THAT(program.effects(), ElementsAre(helperOn, helperOff));
}

TEST(StartAtLogin, IsReadAsABooleanWhateverIsStored) {
    struct {
        std::optional<Value> stored;
        bool on;
    } const cases[] = {
        {Value{"1"}, true},    {Value{"0"}, false},
        {Value{"2"}, true},    {Value{"YES"}, true},
        {Value{"no"}, false},  {Value{true}, true},
        {Value{false}, false}, {Value{std::int64_t{2}}, true},
        {std::nullopt, false},
    };
    for (const auto& [stored, on] : cases) {
        Program program(variants::barrier);
        program.launched();
        program.platform.settings.edit(keys::CHECK_1, stored);
        program.app.updateMenuItems();
        EXPECT_EQ(entry(program, "AVVIA_AL_LOGIN").state, on ? 1 : 0);
        choose(program, "AVVIA_AL_LOGIN");
        EXPECT_EQ(program.platform.settings.stringForKey(keys::CHECK_1), on ? "0" : "1");
        EXPECT_THAT(program.effects({"loginItem"}), ElementsAre(on ? helperOff : helperOn));
    }
}

struct Recommendation : Program {
    explicit Recommendation(const char* startAtLogin) : Program(variants::barrier) {
        launched();
        setting(keys::CHECK_1, Value{std::string(startAtLogin)});
        effects();
    }
    Lines close(int answer) {
        platform.alerts.setAnswers({answer});
        app.recommendAutologinOnAtFirstCloseInfo();
        return effects({"alert", "loginItem"});
    }
    bool isShown() const { return platform.settings.stringForKey(keys::RECOMMENDAUTOLOGIN) == "1"; }
};

TEST(LoginRecommendation, AskedOnceAndDeclinedLeavesStartAtLoginOff) {
    Recommendation program("0");
    EXPECT_THAT(program.close(0), testing::SizeIs(1));
    EXPECT_TRUE(program.isShown());
    EXPECT_EQ(program.platform.settings.stringForKey(keys::CHECK_1), "0");
    EXPECT_THAT(program.close(0), IsEmpty());
}

TEST(LoginRecommendation, AcceptedSwitchesStartAtLoginOn) {
    Recommendation program("0");
    EXPECT_THAT(program.close(1),
                ElementsAre(testing::HasSubstr("RECOMMEND_STARTATLOGIN"), helperOn));
    EXPECT_EQ(program.platform.settings.stringForKey(keys::CHECK_1), "1");
    EXPECT_TRUE(program.isShown());
    EXPECT_EQ(program.app.butautologin.state, 1);
    EXPECT_EQ(entry(program, "AVVIA_AL_LOGIN").state, 1) << "the menu is built anew";
}

TEST(LoginRecommendation, IsMadeOnlyWhileStartAtLoginIsTheTextNought) {
    for (const auto& stored : {std::optional(Value{"2"}), std::optional(Value{"YES"}),
                               std::optional(Value{false}), std::optional(Value{std::int64_t{0}}),
                               std::optional(Value{""}), std::optional<Value>()}) {
        Recommendation program("0");
        program.platform.settings.edit(keys::CHECK_1, stored);
        EXPECT_THAT(program.close(1), IsEmpty());
        EXPECT_FALSE(program.isShown());
    }
}

TEST(LoginRecommendation, IsPendingWhileStartAtLoginIsOn) {
    Recommendation program("1");
    EXPECT_THAT(program.close(1), IsEmpty());
    EXPECT_FALSE(program.isShown());
    program.setting(keys::CHECK_1, Value{"0"});
    EXPECT_THAT(program.close(0), testing::SizeIs(1));
}

} // namespace
} // namespace palisor
