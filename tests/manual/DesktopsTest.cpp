#include "manual/Pages.h"
#include "program/Limits.h"
#include "program/Products.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <regex>

// The page about desktops says what each session says of itself.

namespace manual {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// The sources of the sessions, with the headings of their sections.
std::map<fs::path, std::string> sessions() {
    const std::map<std::string, std::string> headings{
        {"sway", "sway"},
        {"layershell", "Other compositors with layers"},
        {"kwin", "KWin"},
        {"gnome", "GNOME Shell"}};
    const fs::path sources = fs::path(DOCUMENTS).parent_path() / "src";
    std::map<fs::path, std::string> found{{sources / "program/session/x11/X11Session.cpp", "X11"}};
    for (const auto& folder : fs::directory_iterator(sources / "platform"))
        if (folder.is_directory())
            for (const auto& file : fs::directory_iterator(folder))
                if (file.is_regular_file() &&
                    textOf(file).find("Capabilities capabilities() const override {") !=
                        std::string::npos)
                    found[file] = headings.contains(folder.path().filename())
                                      ? headings.at(folder.path().filename())
                                      : "(none is known for this folder)";
    return found;
}

/// What the session's answer is made of: its source, with literals in pieces put together.
std::string answerOf(const fs::path& source) {
    const std::string text = textOf(source);
    const std::size_t start = text.find("capabilities() const");
    const std::size_t end = std::min(text.find("\n    }\n", start), text.find("\n}\n", start));
    return std::regex_replace(text.substr(start, end - start), std::regex("\"\\s*\\n\\s*\""), "");
}

std::string sectionOf(const std::string& heading) {
    const std::string page = textOf(fs::path(DOCUMENTS) / "desktops.md");
    const std::size_t start = page.find("\n## " + heading + "\n");
    if (start == std::string::npos) return {};
    return page.substr(start, page.find("\n## ", start + 1) - start);
}

TEST(Desktops, HaveTheirSections) {
    EXPECT_GE(sessions().size(), 5u);
    for (const auto& [source, heading] : sessions())
        EXPECT_FALSE(sectionOf(heading).empty()) << source << ": " << heading;
}

TEST(Desktops, HaveARowForEachThingThatTheirSessionsTellOf) {
    for (const auto& [source, heading] : sessions()) {
        const auto ids = allOf(answerOf(source), "\\{(?:\\.id = )?\"([a-z]+)\", ");
        EXPECT_GE(ids.size(), 2u) << source;
        for (const std::string& id : ids)
            EXPECT_THAT(sectionOf(heading), HasSubstr("\n| " + id + " | ")) << source;
    }
}

TEST(Desktops, AreDescribedInTheWordsOfTheirSessions) {
    for (const auto& [source, heading] : sessions()) {
        int sentences = 0;
        for (std::string words : allOf(answerOf(source), "\"([^\"]*)\"")) {
            const std::size_t first = words.find_first_not_of(' ');
            if (first == std::string::npos || words.find(' ', first) == std::string::npos) continue;
            words = words.substr(first, words.find_last_not_of(' ') + 1 - first);
            EXPECT_THAT(sectionOf(heading), HasSubstr(words)) << source;
            ++sentences;
        }
        EXPECT_GE(sentences, 1) << source;
    }
}

/// What the tables of a section say that can be done and cannot.
platform::Capabilities capabilitiesIn(const std::string& heading) {
    platform::Capabilities found;
    const std::string section = sectionOf(heading);
    const std::regex row("\\n\\| ([a-z]+) \\| (yes|no) \\| ([^|]*)\\|");
    for (std::sregex_iterator at(section.begin(), section.end(), row), end; at != end; ++at)
        found.push_back({(*at)[1], (*at)[2] == "yes", (*at)[3]});
    return found;
}

/// As the program sees it, which tells a user where a product is nothing without something.
std::string answerFor(int variant, const platform::Capabilities& capabilities) {
    if (!limitsOf(variant, capabilities).empty()) return "no";
    return std::ranges::any_of(capabilities,
                               [&](const platform::Capability& each) {
                                   return !each.available && concerns(variant, each);
                               })
               ? "partly"
               : "yes";
}

/// "Stay Awake" of "stay-awake".
std::string titleOf(std::string_view command) {
    std::string title;
    for (const char letter : command) {
        const bool begins = title.empty() || title.back() == ' ';
        title += letter == '-' ? ' ' : begins ? static_cast<char>(std::toupper(letter)) : letter;
    }
    return title;
}

TEST(Desktops, HaveThePlaceInTheTableThatFollowsFromTheirSections) {
    const std::string page = textOf(fs::path(DOCUMENTS) / "desktops.md");
    for (const auto product : products::names) {
        const int variant = variantOf(product);
        std::string row = "\n| " + titleOf(product) + " |";
        for (const char* heading :
             {"X11", "sway", "Other compositors with layers", "KWin", "GNOME Shell"}) {
            const auto capabilities = capabilitiesIn(heading);
            EXPECT_GE(capabilities.size(), 2u) << heading;
            row += " " + answerFor(variant, capabilities) + " |";
        }
        EXPECT_NE(page.find(row), std::string::npos) << row;
    }
}

} // namespace
} // namespace manual
