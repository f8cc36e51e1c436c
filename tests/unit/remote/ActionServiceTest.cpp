#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

/// A launch that is answered with `reply`; nothing for an error.
struct Asked : Program {
    explicit Asked(std::optional<std::string> reply, std::deque<int> answers = {})
        : Program(variants::barrier) {
        platform.bundle.set("CFBundleDisplayName", Value{"Palisor"});
        platform.bundle.set("CFBundleShortVersionString", Value{"1.0"});
        platform.http.setReply(std::move(reply));
        platform.alerts.setAnswers(std::move(answers));
    }

    void launch() {
        try {
            app.applicationDidFinishLaunching();
        } catch (const platform::memory::ProgramEnded&) {
            ended = true;
        }
        all = effects();
    }

    Lines named(std::string_view name) const {
        Lines found = all;
        std::erase_if(
            found, [name](const auto& line) { return !line.starts_with(std::string(name) + " "); });
        return found;
    }
    /// How many times `start` has run.
    std::size_t starts() const { return named("monitor").size(); }

    bool ended = false;
    Lines all;
};

std::string questionWith(const std::string& more) {
    return R"({"question":"Well?","answer_1":"Yes","answer_2":"No")" + more + "}";
}

TEST(ActionService, ThatCannotBeReachedLeavesOneStart) {
    Asked program(std::nullopt);
    program.launch();
    EXPECT_EQ(program.starts(), 1U);
    EXPECT_THAT(program.named("log"), ElementsAre(R"(log {"text":"macOS 10.14 or high"})"));
    EXPECT_THAT(program.named("alert"), IsEmpty());
    EXPECT_FALSE(program.app.otherApps);
    EXPECT_EQ(program.app.allowRate, 0);
}

TEST(ActionService, IsAskedOnceBeforeTheStartWithTheValuesAsTheyAre) {
    Asked program(std::nullopt);
    program.platform.bundle.set("MakerHost", Value{"a.invalid"});
    program.platform.system.setMachineModel("Model & 9%");
    program.platform.system.setLanguages({"it-CH", "en"});
    program.platform.system.setCountryCode("CH");
    program.launch();
    EXPECT_THAT(
        program.named("request"),
        ElementsAre(R"(request {"url":"https://a.invalid/app/mac_utilities/action.php?app=8)"
                    R"(&ver=1.0&device=Model & 9%&lingua=it-CH&uniqueID=00000000-0000-0000)"
                    R"(-0000-000000000000&univoke=2026/01/02-03:04:05&OS=10.15.7&monitors=)"
                    R"(2&locale=CH","timeout":10,"cachePolicy":4})"));
    EXPECT_EQ(program.all.front(), program.named("request").front());
}

TEST(ActionService, IsToldNullOfWhatNobodyKnows) {
    Asked program(std::nullopt);
    program.platform.system.setMachineModel("");
    program.platform.system.setLanguages({});
    program.platform.system.setCountryCode(std::nullopt);
    program.platform.system.setMachineIdentifier(std::nullopt);
    program.launch();
    EXPECT_THAT(
        program.named("request").front(),
        testing::AllOf(testing::HasSubstr("&device=notFound&lingua=(null)&uniqueID=(null)&"),
                       testing::HasSubstr("&locale=(null)\"")));
}

TEST(ActionService, TrustsTheAuthorityThatTheInformationDictionaryNames) {
    Asked program(std::nullopt);
    program.launch();
    EXPECT_EQ(program.platform.http.lastRequest().authority, "");
    Asked own(std::nullopt);
    own.platform.bundle.set("MakerAuthority", Value{"/authority.pem"});
    own.launch();
    EXPECT_EQ(own.platform.http.lastRequest().authority, "/authority.pem");
}

TEST(ActionService, MaySwitchOnTheOtherProductsAndTheRatingWithoutAQuestion) {
    Asked program(R"({"otherApps":"1","allowRate":"1"})");
    program.launch();
    EXPECT_TRUE(program.app.otherApps);
    EXPECT_EQ(program.app.allowRate, 1);
    EXPECT_EQ(program.starts(), 1U);
    EXPECT_THAT(program.named("alert"), IsEmpty());
}

struct FlagRow {
    const char* value; ///< as JSON
    bool otherApps;
    int allowRate;
};

TEST(ActionService, ReadsItsFlagsAsABooleanAndAsOneSignedByte) {
    const FlagRow rows[] = {{R"("YES")", true, 0},
                            {R"("true")", true, 0},
                            {R"("1")", true, 1},
                            {R"(" 12abc")", true, 12},
                            {R"("-3")", true, -3},
                            {R"("0")", false, 0},
                            {R"("NO")", false, 0},
                            {R"("abc")", false, 0},
                            {"0", false, 0},
                            {"5", true, 5},
                            {"127", true, 127},
                            {"128", true, -128},
                            {"200", true, -56},
                            {"256", true, 0},
                            {"-1", true, -1},
                            {"0.5", true, 0},
                            {"2.9", true, 2},
                            {"-2.9", true, -2},
                            {"1e300", true, -1}, // the largest number, of which a byte is left
                            {"99999999999999999999", true, -1},
                            // Not present: nothing is stored.
                            {R"("")", false, 0},
                            {R"(" ")", false, 0},
                            {R"("NULL")", false, 0},
                            {"\"(null)\"", false, 0},
                            {"null", false, 0},
                            {"true", false, 0},
                            {"[1]", false, 0},
                            {R"({"a":1})", false, 0}};
    for (const auto& [value, otherApps, allowRate] : rows) {
        Asked program(R"({"otherApps":)" + std::string(value) + R"(,"allowRate":)" + value + "}");
        program.launch();
        EXPECT_EQ(program.app.otherApps, otherApps) << value;
        EXPECT_EQ(program.app.allowRate, allowRate) << value;
        EXPECT_EQ(program.starts(), 1U) << value;
    }
}

TEST(ActionService, AsksWithTheProductsNameAndVersion) {
    Asked program(questionWith(R"(,"active_1":1)"));
    program.launch();
    EXPECT_THAT(program.named("alert"),
                ElementsAre(R"(alert {"message":"Palisor 1.0","informative":"Well?",)"
                            R"("buttons":["Yes","No"],"accessory":null,"code":1})"));
    EXPECT_EQ(program.starts(), 1U);
}

struct QuestionRow {
    const char* question; ///< as JSON
    const char* shown;    ///< as JSON text without its quotes; null where nothing is asked
};

TEST(ActionService, ShowsItsQuestionWithTwoPlaceholdersReplacedAndNoOtherFormat) {
    const QuestionRow rows[] = {{R"("Is %@ there?")", "Is aaaaa there?"},
                                {R"("%@ and %@")", "aaaaa and bbbbbb"},
                                {R"("%s%n%@%@%@")", "%s%naaaaabbbbbb%@"},
                                {R"("%%@@ 100%")", "%aaaaa@ 100%"},
                                {R"("%1$@ %d <b>")", "%1$@ %d <b>"},
                                {"5", "5"},
                                {"-2.5", "-2.5"},
                                {R"("")", nullptr},
                                {R"(" \n\t")", nullptr},
                                {R"("NULL")", nullptr},
                                {"\"(null)\"", nullptr},
                                {"null", nullptr},
                                {"false", nullptr},
                                {R"(["Well?"])", nullptr}};
    for (const auto& [question, shown] : rows) {
        Asked program(R"({"active_1":1,"question":)" + std::string(question) + "}");
        program.launch();
        EXPECT_EQ(program.starts(), 1U) << question;
        if (shown == nullptr) {
            EXPECT_THAT(program.named("alert"), IsEmpty()) << question;
        } else {
            ASSERT_EQ(program.named("alert").size(), 1U) << question;
            EXPECT_THAT(program.named("alert").front(),
                        testing::HasSubstr(R"("informative":")" + std::string(shown) + '"'));
        }
    }
}

TEST(ActionService, WithoutAnswersHasOneButton) {
    Asked program(R"({"question":"Well?","active_1":1,"answer_2":[]})");
    program.launch();
    EXPECT_THAT(program.named("alert").front(), testing::HasSubstr(R"("buttons":["OK"])"));
}

TEST(ActionService, WhoseAnswerSaysNothingHasNoButtonForIt) {
    for (const char* nothing : {R"("")", R"(" ")", R"("NULL")", "\"(null)\"", R"("\n\t")", "{}"}) {
        Asked program(R"({"question":"Well?","active_1":1,"answer_1":)" + std::string(nothing) +
                      R"(,"answer_2":)" + nothing + "}");
        program.launch();
        EXPECT_THAT(program.named("alert").front(), testing::HasSubstr(R"("buttons":["OK"])"))
            << nothing;
        EXPECT_EQ(program.starts(), 1U);
    }
    Asked second(R"({"question":"Well?","active_1":1,"answer_1":" ","answer_2":"Later"})");
    second.launch();
    EXPECT_THAT(second.named("alert").front(), testing::HasSubstr(R"("buttons":["OK","Later"])"));
}

TEST(ActionService, WhoseQuestionIsClosedHasNothingOpenedRemovedOrEnded) {
    using Closing = platform::Alert::Closing;
    struct Row {
        const char* more;
        Closing closing;
    };
    const Row rows[] = {
        {R"(,"active_1":1,"active_2":1)", Closing::lastButton},
        {R"(,"active_1":0,"active_2":1)", Closing::lastButton},
        {R"(,"active_1":1,"active_2":1,"event_2":"NULL")", Closing::lastButton},
        {R"(,"active_1":1)", Closing::defaultButton},
        {R"(,"active_1":1,"active_2":1,"event_2":"https://two.invalid/")", Closing::defaultButton},
        {R"(,"active_1":1,"event_1":"https://one.invalid/")", Closing::none},
        {"", Closing::none}};
    for (const auto& [more, closing] : rows) {
        Asked program(questionWith(more), {-1});
        std::optional<Closing> told;
        program.platform.alerts.setWhileOpen(
            [&told](const platform::Alert& alert) { told = alert.closing; });
        program.launch();
        EXPECT_EQ(told, closing) << more;
    }
}

TEST(ActionService, WhoseAnswerEndsTheProgramTakesItOutOfTheLoginBeforehand) {
    for (const char* active : {"0", R"("0")", R"("NO")", "null", "[]"}) {
        Asked program(
            questionWith(R"(,"event_1":"https://one.invalid/","active_1":)" + std::string(active)));
        program.launch();
        EXPECT_TRUE(program.ended);
        EXPECT_EQ(program.starts(), 0U);
        ASSERT_GE(program.all.size(), 4U);
        EXPECT_EQ(Lines(program.all.end() - 4, program.all.end()),
                  (Lines{R"(openURL {"url":"https://one.invalid/"})",
                         R"(loginItem {"identifier":"com.tamberlo.palisorHelper","enabled":false})",
                         "terminate {}", R"(exit {"status":0})"}))
            << active;
    }
}

TEST(ActionService, WhoseAnswerGoesOnOpensItsAddressAndStarts) {
    for (const char* active : {"1", "2", "0.1", R"("1")", R"("yes")", "true"}) {
        Asked program(
            questionWith(R"(,"event_2":"https://two.invalid/","active_2":)" + std::string(active)),
            {0});
        program.launch();
        EXPECT_FALSE(program.ended) << active;
        EXPECT_EQ(program.starts(), 1U) << active;
        EXPECT_THAT(program.named("openURL"),
                    ElementsAre(R"(openURL {"url":"https://two.invalid/"})"));
        EXPECT_THAT(program.named("loginItem"), IsEmpty());
    }
}

TEST(ActionService, OpensNothingForAnAddressThatSaysNothing) {
    for (const char* event : {R"("NULL")", R"("")", R"(" ")", "null", "true", "{}"}) {
        Asked program(questionWith(R"(,"active_2":1,"event_1":"https://one.invalid/","event_2":)" +
                                   std::string(event)),
                      {0});
        program.launch();
        EXPECT_THAT(program.named("openURL"), IsEmpty()) << event;
        EXPECT_EQ(program.app.event_2, std::nullopt) << event;
        EXPECT_EQ(program.app.event_1, "https://one.invalid/");
        EXPECT_EQ(program.starts(), 1U) << event;
    }
}

TEST(ActionService, DoesNothingAfterAnAnswerThatIsNeitherOfTheTwo) {
    Asked program(questionWith(R"(,"active_1":1,"active_2":0,"event_1":"https://one.invalid/")"),
                  {-1});
    program.launch();
    EXPECT_FALSE(program.ended);
    EXPECT_EQ(program.starts(), 0U);
    EXPECT_THAT(program.named("openURL"), IsEmpty());
}

TEST(ActionService, WhoseReplyIsNoObjectLeavesOneStart) {
    for (const char* reply : {"", " ", "NULL", "(null)", "text", "[]", "[{\"otherApps\":1}]", "5",
                              "\"x\"", "{\"otherApps\":\"1\"", "{\"otherApps\":\"\xff\"}"}) {
        Asked program(reply);
        program.launch();
        EXPECT_EQ(program.starts(), 1U) << reply;
        EXPECT_FALSE(program.app.otherApps) << reply;
        EXPECT_THAT(program.named("log"), ElementsAre(R"(log {"text":"macOS 10.14 or high"})"));
    }
}

TEST(ActionService, OfTheCalendarProductComesBeforeAnyLookAtTheScreens) {
    Asked program(R"({"question":"Well?"})", {-1});
    program.platform.bundle.set("IDApp", Value{std::int64_t{variants::calendarAlerts}});
    program.launch();
    EXPECT_EQ(program.app.MAX_W, 0);
    Asked other(R"({"question":"Well?"})", {-1});
    other.launch();
    EXPECT_EQ(other.app.MAX_W, 3200);
}

TEST(AppDelegateValidInfo, RefusesNoneAndTheWordsForNothing) {
    const Program program(variants::barrier);
    EXPECT_FALSE(program.app.isValidInfo(std::nullopt));
    for (const char* text : {"", " ", "NULL", "(null)", "\n\t "})
        EXPECT_FALSE(program.app.isValidInfo(text)) << text;
    for (const char* text : {"0", "null", " x "})
        EXPECT_TRUE(program.app.isValidInfo(text)) << text;
}

} // namespace
} // namespace palisor
