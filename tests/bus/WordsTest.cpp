#include "program/client/Words.h"
#include "program/Printable.h"

#include <gmock/gmock.h>

// How a command line is understood, and what help says of it.

namespace client {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

Words parsed(std::vector<const char*> words) {
    return parse(static_cast<int>(words.size()), words.data());
}

Failure refused(std::vector<const char*> words) {
    try {
        (void)parsed(words);
    } catch (const Failure& failure) {
        return failure;
    }
    return {Exit::done, "understood"};
}

TEST(Words, ChooseTheProductByTheOptionOrTheCommandsName) {
    EXPECT_EQ(parsed({"/usr/bin/palisor", "on"}).product, "palisor");
    EXPECT_EQ(parsed({"vellumor", "on"}).product, "vellumor");
    EXPECT_EQ(parsed({"vellumor", "--product", "Stay-Awake", "on"}).product, "stay-awake");
    EXPECT_EQ(parsed({"palisor", "on", "--product=orbisant"}).product, "orbisant");
    EXPECT_EQ(refused({"palisor", "--product", "nonesuch", "on"}).status, Exit::wrongUsage);
    EXPECT_EQ(refused({"palisor", "--product"}).status, Exit::wrongUsage);
}

TEST(Words, WithoutACommandAreTheProgramsAndAValueIsNoCommand) {
    for (const auto& line : std::vector<std::vector<const char*>>{
             {"palisor"},
             {"palisor", "--at-login"},
             {"palisor", "--record", "status"},
             {"palisor", "--hold", "off", "--verbose"},
             {"palisor", "--product", "quenlow", "--calendar", "watch"}})
        EXPECT_EQ(parsed(line).command, nullptr) << line.back();
    EXPECT_THAT(refused({"palisor", "--verbose", "on"}).sentence,
                HasSubstr("start of the program"));
}

TEST(Words, ThatAreMistypedNameTheNearestRightOne) {
    const std::pair<const char*, const char*> mistyped[] = {
        {"of", "\"off\""},    {"togle", "\"toggle\""}, {"stat", "\"status\""},
        {"mneu", "\"menu\""}, {"cros", "\"cross\""},   {"Settings", "\"settings\""}};
    for (const auto& [word, right] : mistyped) {
        const Failure failure = refused({"palisor", word});
        EXPECT_EQ(failure.status, Exit::wrongUsage);
        EXPECT_THAT(failure.sentence, HasSubstr(right));
    }
    EXPECT_THAT(refused({"palisor", "settings", "sett", "a", "b"}).sentence, HasSubstr("\"set\""));
}

TEST(Words, ThatAreNearNoRightOneOnlyPointToTheHelp) {
    for (const char* word : {"frobnicate", "exit", "x", "no", "", "setting-the-table"}) {
        const std::string sentence = refused({"palisor", word}).sentence;
        EXPECT_THAT(sentence, AllOf(HasSubstr("\"" + std::string(word) + "\""), HasSubstr("--help"),
                                    Not(HasSubstr("did you mean"))));
    }
    EXPECT_THAT(refused({"palisor", "settings", "abolish"}).sentence, HasSubstr("--help"));
}

TEST(Printable, IsWhatNoTerminalObeysAndIsOneLine) {
    EXPECT_EQ(printable("o\nn\x1b[2J\x7f\t"), "o?n?[2J??");
    EXPECT_EQ(printable("\xc3\xa4 \xf0"), "\xc3\xa4 \xf0");
}

TEST(Words, AreAsManyAsTheCommandTakes) {
    for (const auto& line :
         std::vector<std::vector<const char*>>{{"palisor", "cross"},
                                               {"palisor", "on", "now"},
                                               {"palisor", "free", "1", "2"},
                                               {"palisor", "settings", "get"},
                                               {"palisor", "settings", "set", "a"},
                                               {"palisor", "menu", "--json"},
                                               {"palisor", "--json"}})
        EXPECT_EQ(refused(line).status, Exit::wrongUsage) << line.back();
    EXPECT_TRUE(parsed({"palisor", "status", "--json"}).json);
    EXPECT_THAT(parsed({"palisor", "doctor", "--rescue"}).arguments,
                testing::ElementsAre("--rescue"));
}

TEST(Help, TellsForHowLongTheCursorIsFreeUnlessTold) {
    EXPECT_EQ(usualFreeing, 30U);
    EXPECT_THAT(std::string(find(commands, "free")->help),
                HasSubstr(" " + std::to_string(usualFreeing) + " s unless told"));
}

TEST(Help, FitsAScreenAndHasEveryCommandAndStatus) {
    const std::string help = usage("calendar-alerts");
    EXPECT_LE(std::ranges::count(help, '\n'), 24);
    for (std::size_t at = 0; at < help.size();) {
        const auto end = help.find('\n', at);
        EXPECT_LE(end - at, 80U) << help.substr(at, end - at);
        at = end + 1;
    }
    for (const Command& command : commands)
        EXPECT_THAT(help, HasSubstr(std::string(command.help)));
    for (const ExitMeaning& exit : exits)
        EXPECT_THAT(help, HasSubstr(std::string(exit.meaning).substr(0, 12)));
}

} // namespace
} // namespace client
