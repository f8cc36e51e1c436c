#include "testing/Child.h"
#include "testing/desktop/Product.h"

#include <gtest/gtest.h>
#include <sstream>

// What a person types into a terminal. It needs no display.

namespace desktop {
namespace {

/// What a command prints as it ends with that status, errors behind the rest.
std::string answer(const std::vector<std::string>& command, int status = 0) {
    support::ChildProcess::Start start{.command = command, .environment = {}};
    start.command.front() = programs() + "/" + start.command.front();
    support::ChildProcess program(start);
    EXPECT_EQ(program.wait(), status) << command.back();
    return program.output() + program.errors();
}

TEST(Options, HaveTheShortFormsThatEveryProgramHas) {
    EXPECT_EQ(answer({"palisor", "-V"}), answer({"palisor", "--version"}));
    EXPECT_EQ(answer({"palisor", "-h"}), answer({"palisor", "--help"}));
    const std::string help = answer({"palisor-tray", "-h"});
    EXPECT_EQ(help, answer({"palisor-tray", "--help"}));
    for (const char* option : {"-h, --help", "-V, --version"})
        EXPECT_NE(help.find(option), help.npos) << help;
}

TEST(Options, TakeAProductsNameInAnyCase) {
    for (const char* name : {"orbisant", "Orbisant", "ORBISANT"})
        EXPECT_EQ(answer({"palisor", "--product", name, "--version"}), "Orbisant 1.0\n");
    EXPECT_EQ(answer({"palisor", "--product=Stay-Awake", "-V"}), "Stay Awake 1.0\n");
    EXPECT_NE(answer({"palisor", "--product", "Nonesuch"}, 2).find("unknown product nonesuch"),
              std::string::npos);
}

TEST(Options, AreExplainedUnderTheNameThatTheProgramIsCalledBy) {
    EXPECT_TRUE(answer({"orbisant", "--help"}).starts_with("Usage: orbisant [--product NAME]"));
    EXPECT_TRUE(answer({"palisor", "--help"}).starts_with("Usage: palisor [--product NAME]"));
    // The second line stands under the first.
    EXPECT_NE(answer({"palisor-tray", "-h"}).find("\n                    [--calendar DIR]"),
              std::string::npos);
}

TEST(Options, AreExplainedOnAScreenOf80By24) {
    for (const auto& command :
         std::vector<std::vector<std::string>>{{"palisor", "--help"},
                                               {"calendar-alerts", "-h"},
                                               {"palisor-tray", "--help"},
                                               {"palisor-doctor", "--help"}}) {
        std::istringstream lines(answer(command));
        int count = 0;
        for (std::string line; std::getline(lines, line); ++count)
            EXPECT_LE(line.size(), 80U) << command.front() << ": " << line;
        EXPECT_GT(count, 10) << command.front();
        EXPECT_LE(count, 24) << command.front();
    }
}

} // namespace
} // namespace desktop
