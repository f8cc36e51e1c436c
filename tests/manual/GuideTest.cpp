#include "app/SettingsTable.h"
#include "program/Options.h"
#include "program/Products.h"
#include "program/client/Words.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <sstream>

// The pages for users lead somewhere, and tell of what there is.

namespace manual {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

std::string textOf(const fs::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<fs::path> pages() {
    std::vector<fs::path> found{fs::path(DOCUMENTS).parent_path() / "README.md"};
    for (const auto& entry : fs::recursive_directory_iterator(DOCUMENTS))
        if (entry.path().extension() == ".md") found.push_back(entry.path());
    return found;
}

/// All that a pattern's first group finds.
std::vector<std::string> allOf(const std::string& text, const char* pattern) {
    std::vector<std::string> found;
    const std::regex expression(pattern);
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

TEST(Guide, HasNoLinkThatLeadsNowhere) {
    int links = 0;
    for (const fs::path& page : pages())
        for (const std::string& link : allOf(textOf(page), "\\]\\(([^)#\\s]+)")) {
            if (link.starts_with("https://")) continue;
            EXPECT_TRUE(fs::exists(page.parent_path() / link)) << page << ": " << link;
            ++links;
        }
    EXPECT_GT(links, 15);
}

TEST(Guide, ListsEverySettingWithWhatItMeans) {
    const std::string page = textOf(fs::path(DOCUMENTS) / "guide/settings.md");
    std::size_t rows = 0;
    for (const palisor::Setting& setting : palisor::settingsTable()) {
        const std::string row =
            "\n| " + std::string(setting.name) + " | " + std::string(setting.meaning) + " | ";
        const std::size_t at = page.find(row);
        ASSERT_NE(at, std::string::npos) << row;
        const std::string rest = page.substr(at + row.size(), page.find('\n', at + 1) - at);
        EXPECT_THAT(rest, HasSubstr("| `" + std::string(setting.key) + "` |")) << row;
        ++rows;
    }
    EXPECT_EQ(allOf(page, "\n(\\| [a-z-]+ \\|.*`)").size(), rows) << "a row of no setting";
}

/// The words of a command of one of the products; empty where the text is none, or a pattern.
std::vector<std::string> commandIn(const std::string& code) {
    std::istringstream in(code);
    std::vector<std::string> words{std::istream_iterator<std::string>(in), {}};
    const bool isOurs =
        !words.empty() && std::ranges::find(products::names, words[0]) != products::names.end();
    const bool isPattern = code.find_first_of("*\"$…|;") != std::string::npos;
    return isOurs && !isPattern ? words : std::vector<std::string>();
}

// What commands do is proved where the document on scripting is typed; here each must be one that
// is typed there, or an option of the program.
TEST(Guide, NamesNoCommandThatIsNotTypedByATest) {
    const std::string typed = textOf(fs::path(DOCUMENTS) / "scripting.md");
    int commands = 0;
    for (const fs::path& page : pages()) {
        if (page.filename() == "scripting.md") continue;
        std::vector<std::string> codes = allOf(textOf(page), "`([a-z][^`\n]*)`");
        for (const std::string& line : allOf(textOf(page), "\n\\s*([a-z][^\n]*)"))
            if (!commandIn(line).empty() && textOf(page).find("```sh") != std::string::npos)
                codes.push_back(line);
        for (const std::string& code : codes) {
            const auto words = commandIn(code);
            if (words.size() < 2) continue;
            std::vector<const char*> line;
            for (const std::string& word : words)
                line.push_back(word.c_str());
            ++commands;
            try {
                const auto parsed = client::parse(static_cast<int>(line.size()), line.data());
                if (parsed.command != nullptr)
                    EXPECT_THAT(typed, HasSubstr(" " + std::string(parsed.command->name)));
                else
                    EXPECT_EQ(
                        parseOptions(static_cast<int>(line.size()), const_cast<char**>(line.data()))
                            .error.value_or(""),
                        "")
                        << code;
            } catch (const client::Failure& failure) {
                ADD_FAILURE() << page << ": " << code << ": " << failure.sentence;
            }
        }
    }
    EXPECT_GT(commands, 15);
}

} // namespace
} // namespace manual
