#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* question = R"(alert {"message":"A Name","informative":"RATE_THIS_APP",)"
                                 R"("buttons":["MI_PIACE","NON_MI_PIACE"],"accessory":null,)";
constexpr const char* rated = R"(write {"key":"RATE_2.5","value":true})";

struct Rating : Program {
    explicit Rating(int variant, int minutes = 3) : Program(variant) {
        settled();
        platform.bundle.set("CFBundleDisplayName", Value{"A Name"});
        platform.bundle.set("CFBundleShortVersionString", Value{"2.5"});
        platform.bundle.set("StoreWebPage", Value{"https://store.invalid/%@"});
        platform.bundle.set("StorePage", Value{"store:%@"});
        app.allowRate = static_cast<std::int8_t>(minutes);
    }

    Lines timers() {
        app.applicationDidFinishLaunching();
        Lines lines = effects({"timer"});
        std::erase_if(
            lines, [](const auto& line) { return line.find("\"ratefunc\"") == std::string::npos; });
        return lines;
    }
    Lines answered(int code) {
        platform.alerts.setAnswers({code});
        effects();
        app.ratefunc();
        return effects();
    }
};

TEST(Rating, IsAskedForAsManyMinutesAfterTheStartAsWereAllowed) {
    Rating program(variants::barrier);
    EXPECT_THAT(program.timers(),
                ElementsAre(R"(timer {"selector":"ratefunc","interval":180,"repeats":false})"));
    program.platform.advance(179.9);
    EXPECT_THAT(program.effects({"alert"}), IsEmpty());
    program.platform.advance(0.1);
    EXPECT_THAT(program.effects({"alert"}), SizeIs(1));
    program.platform.advance(100'000);
    EXPECT_THAT(program.effects({"alert"}), IsEmpty()) << "once a launch";
}

TEST(Rating, IsNeverAskedForByTheDesktopSwitcher) {
    for (const int minutes : {-128, -1, 1, 127})
        EXPECT_THAT(Rating(variants::desktopSwitcher, minutes).timers(), IsEmpty());
}

TEST(Rating, IsNotAskedForWhereNoMinutesWereAllowed) {
    EXPECT_THAT(Rating(variants::barrier, 0).timers(), IsEmpty());
}

TEST(Rating, IsAskedForAtOnceAfterMinutesThatHaveBecomeNegative) {
    Rating program(variants::barrier, 200);
    EXPECT_THAT(program.timers(), ElementsAre(HasSubstr(R"("interval":-3360,)")));
    program.platform.advance(0);
    EXPECT_THAT(program.effects({"alert"}), SizeIs(1));
}

TEST(Rating, IsAskedForOnceAVersion) {
    Rating program(variants::barrier);
    program.setting("RATE_2.5", Value{true});
    EXPECT_THAT(program.timers(), IsEmpty());
    Rating newer(variants::barrier);
    newer.setting("RATE_2.5", Value{true});
    newer.platform.bundle.set("CFBundleShortVersionString", Value{"2.6"});
    EXPECT_EQ(newer.app.getCurrentRateString(), "RATE_2.6");
    EXPECT_THAT(newer.timers(), SizeIs(1));
}

TEST(Rating, IsAskedForInEveryOtherProduct) {
    for (const int variant : {0, 1, 3, 5, 7, 8, 9})
        EXPECT_THAT(Rating(variant).timers(), SizeIs(1)) << variant;
}

TEST(Rating, ThatIsPositiveOpensThePageOfTheProductAndIsRecorded) {
    for (const auto& [variant, id] :
         {std::pair{1, "611203457"}, {5, "611203458"}, {8, "1200000417"}}) {
        Rating program(variant);
        const std::string number = id;
        EXPECT_THAT(program.answered(1),
                    ElementsAre(question + std::string(R"("code":1})"),
                                R"(log {"text":"stringID: )" + number + R"( osx: 1"})",
                                R"(openURL {"url":"https://store.invalid/)" + number + "\"}",
                                R"(openURL {"url":"store:)" + number + "\"}", rated,
                                "synchronize {}"));
    }
}

TEST(Rating, ThatIsPositiveIsOnlyRecordedInAProductWithoutAPage) {
    for (const int variant : {0, 2, 3, 7, 9})
        EXPECT_THAT(Rating(variant).answered(1),
                    ElementsAre(HasSubstr("RATE_THIS_APP"), rated, "synchronize {}"))
            << variant;
}

TEST(Rating, ThatIsNotPositiveIsRecordedTheSameAndOpensNothing) {
    for (const int variant : {1, 5, 8})
        EXPECT_THAT(Rating(variant).answered(0),
                    ElementsAre(question + std::string(R"("code":0})"), rated, "synchronize {}"));
}

TEST(Rating, KeepsTheQuestionThatItAsked) {
    Rating program(variants::barrier);
    program.answered(0);
    EXPECT_EQ(program.app.alertrate.informative, "RATE_THIS_APP");
}

TEST(Rating, HidesTheInformationWindowForTheQuestionAndShowsItAgain) {
    Rating program(variants::wrapAround);
    program.setting(keys::CHECK_0, Value{"0"});
    program.timers();
    ASSERT_TRUE(program.app.windowInfo->isVisible());
    bool wasHidden = false;
    program.platform.alerts.setWhileOpen([&](const auto&) {
        wasHidden = !program.app.windowInfo->isVisible() && program.app.flagriopenInfo;
    });
    program.platform.advance(179);
    program.effects();
    program.platform.advance(1);
    EXPECT_TRUE(wasHidden);
    EXPECT_THAT(program.effects({"window", "windowOut", "alert", "write", "applicationActivated"}),
                ElementsAre(R"(windowOut {"id":1})", HasSubstr("RATE_THIS_APP"), rated,
                            HasSubstr(R"("id":1,"kind":"info")"), "applicationActivated {}"));
    EXPECT_FALSE(program.app.flagriopenInfo);
    EXPECT_TRUE(program.app.windowInfo->isVisible());
}

TEST(Rating, LeavesAnInformationWindowAloneThatIsNotSeen) {
    Rating program(variants::wrapAround);
    program.timers();
    program.platform.advance(180);
    EXPECT_THAT(program.effects({"window", "windowOut"}), IsEmpty());
    EXPECT_FALSE(program.app.windowInfo->isVisible());
}

// The window goes out by the operation that also recommends.
TEST(Rating, ThatHidesTheInformationWindowMayRecommendStartingAtLoginFirst) {
    Rating program(variants::wrapAround);
    program.setting(keys::CHECK_0, Value{"0"});
    program.setting(keys::CHECK_1, Value{"0"});
    program.timers();
    program.platform.alerts.setAnswers({0, 0});
    program.platform.advance(180);
    EXPECT_THAT(program.effects({"alert"}),
                ElementsAre(HasSubstr("RECOMMEND_STARTATLOGIN"), HasSubstr("RATE_THIS_APP")));
    EXPECT_TRUE(program.app.windowInfo->isVisible());
}

} // namespace
} // namespace palisor
