#include "manual/Console.h"
#include "manual/Pages.h"
#include "program/Products.h"
#include "program/client/Words.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <sstream>

// Every command that the guide names is typed; those of the page on scripting are another test's.

namespace manual {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> pagesForUsers() {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(fs::path(DOCUMENTS) / "guide"))
        if (entry.path().extension() == ".md") found.push_back(entry.path());
    for (const char* page : {"desktops.md", "faults.md", "../README.md"})
        found.push_back(fs::path(DOCUMENTS) / page);
    return found;
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), {}};
}

/// What stands in the text between backquotes and begins with a program of ours and more.
Texts commandsIn(const std::string& page) {
    Texts found;
    const std::regex code("`([^`\n]+)`");
    for (std::sregex_iterator at(page.begin(), page.end(), code), end; at != end; ++at) {
        const auto words = wordsOf((*at)[1]);
        const bool isOurs =
            words.size() > 1 &&
            (std::ranges::count(products::names, words[0]) > 0 || words[0].starts_with("palisor-"));
        const bool isPattern = std::ranges::any_of(words, [](const std::string& word) {
            return word == "…" || std::ranges::all_of(word, ::isupper);
        });
        if (isOurs && !isPattern) found.push_back((*at)[1]);
    }
    return found;
}

struct GuideCommands : Console, testing::Test {
    GuideCommands() { fs::create_directories(desktop.home() / "events"); }

    /// Starts the product, which stays, and ends it again.
    void startAndEnd(const std::string& product, const std::string& line) {
        const auto child = shell("cd && exec " + line);
        const std::string status = product + " status >/dev/null 2>&1 && echo up";
        EXPECT_TRUE(support::waitUntil([&] { return typed(status) == "up\n"; }))
            << line << child->errors();
        EXPECT_EQ(typed(product + " quit"), "");
        EXPECT_EQ(child->wait(), 0) << line;
    }

    /// As a reader does it who has the product running.
    void tryOut(const std::string& line) {
        const auto words = wordsOf(line);
        std::vector<const char*> given;
        for (const std::string& word : words)
            given.push_back(word.c_str());
        const bool isDoctors =
            words[0] == "palisor-doctor" || (words.size() > 1 && words[1] == "doctor");
        const bool isApart = isDoctors || words[0] == "palisor-replay";
        if (!isApart) {
            const auto parsed = client::parse(static_cast<int>(given.size()), given.data());
            const bool ends = parsed.help || line.find("--list-monitors") != line.npos;
            if (parsed.command == nullptr && !ends) return startAndEnd(words[0], line);
            EXPECT_EQ(typed(words[0] + " on"), "");
        }
        const std::string seen = typed("cd; " + line + " >/dev/null; echo $?");
        // A desk without a tray is not well.
        const bool isDone = seen == "0\n" || (isDoctors && seen == "1\n");
        EXPECT_TRUE(isDone) << line << ": " << seen;
        if (!isApart) typed(words[0] + " quit");
    }
};

// "setup gnome" would ask for a GNOME Shell, which its own tests have.
TEST_F(GuideCommands, OfTheTextWork) {
    std::set<std::string> all;
    for (const fs::path& page : pagesForUsers())
        for (const std::string& command : commandsIn(textOf(page)))
            if (command != "palisor setup gnome") all.insert(command);
    EXPECT_GT(all.size(), 15u);
    // In their order: what is recorded is played.
    EXPECT_TRUE(all.contains("palisor-replay trouble.scenario"));
    for (const std::string& command : all)
        tryOut(command);
}

TEST_F(GuideCommands, OfTheBlocksPrintWhatIsShown) {
    int count = 0;
    for (const fs::path& page : pagesForUsers()) {
        if (textOf(page).find("```console") == std::string::npos) continue;
        EXPECT_EQ(typed("palisor on"), "");
        for (const std::string& block : blocks(page, "console"))
            for (const Step& step : stepsOf(block)) {
                ++count;
                const std::string seen = typed(step.command);
                EXPECT_TRUE(isAsShown(seen, step.shown)) << page << ": $ " << step.command << "\n"
                                                         << seen;
            }
        typed("palisor quit");
    }
    EXPECT_GT(count, 10);
}

TEST(GuideCommandsOfMake, AreThere) {
    const std::string makefile = textOf(fs::path(DOCUMENTS) / "../Makefile");
    int count = 0;
    const std::regex target("(?:`|\n    )make ([a-z]+)");
    for (const fs::path& page : pagesForUsers()) {
        const std::string text = textOf(page);
        for (std::sregex_iterator at(text.begin(), text.end(), target), end; at != end; ++at) {
            EXPECT_THAT(makefile, testing::HasSubstr("\n" + std::string((*at)[1]) + ":")) << page;
            ++count;
        }
    }
    EXPECT_GE(count, 3);
}

} // namespace
} // namespace manual
