#include "manual/Pages.h"
#include "program/Products.h"
#include "strings/Strings.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <regex>
#include <set>
#include <sstream>

// The page about messages has all that the program says, each with what to do.

namespace manual {
namespace {

namespace fs = std::filesystem;

using Texts = std::set<std::string>;

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \n");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \n") + 1 - first);
}

/// With "…" in the place of what the program puts in.
std::string asTold(std::string_view text) {
    return trimmed(std::regex_replace(std::string(text), std::regex("%[@d]%?"), "…"));
}

bool isSentence(const std::string& text) {
    return text.ends_with('.') || text.ends_with('?');
}

/// What stands above a sentence in a notice or a question.
bool isTitle(std::string_view key) {
    const auto has = [](const std::string& other) { return strings::lookUp("en", other) != other; };
    return has(std::string(key) + "_TEXT") || key.ends_with("_TITLE") || key == "WARNING" ||
           key == "CALENDAR_UNAVAILABLE";
}

/// What a product is for: the window at the start says it, and the page about the products.
bool isDescription(std::string_view key) {
    return key.starts_with("TESTO_");
}

/// Words that nobody has to look up: of buttons, boxes, sliders and names.
bool isPlain(std::string_view key) {
    static const std::set<std::string_view> plain{
        "0_SECONDI",     "CONSIGLIA",      "DONE", "LESS",         "LOGIN_HELPER", "MAIL_BOTTOM",
        "MI_PIACE",      "MORE",           "NO",   "NON_MI_PIACE", "N_SECONDI",    "OK",
        "N_SENSIBILITY", "RECORDER_CLEAR", "SI",   "STATE_OFF",    "STATE_ON"};
    return plain.contains(key) || key.starts_with("CORNER_") || key.starts_with("SIDE_");
}

/// The texts that any of the products shows, as far as `wanted` takes their keys and texts.
template <class Wanted>
Texts shown(const Wanted& wanted) {
    Texts all;
    for (const auto product : products::names) {
        for (const strings::Text& each : strings::table("en"))
            if (const auto text = asTold(strings::wordingOf(product, "en", each.key));
                wanted(each.key, text))
                all.insert(text);
        for (const strings::Wording& each : strings::wordings("en"))
            if (const auto text = asTold(each.text.text); wanted(each.text.key, text))
                all.insert(text);
    }
    // Each product has words of its own for it, but the hider, which has another entry.
    all.erase("Hold Left Ctrl+Alt+Super to Override");
    return all;
}

std::string page() {
    return textOf(fs::path(DOCUMENTS) / "guide/messages.md");
}

/// The first cells of the rows, in one, of those that say something in the second one.
std::string explained() {
    std::istringstream lines(page());
    std::string cells;
    const std::regex row("\\| (.*\\S) \\| (.*\\S) \\|");
    std::smatch found;
    for (std::string line; std::getline(lines, line);)
        if (std::regex_match(line, found, row)) cells += found[1].str() + "\n";
    return std::regex_replace(cells, std::regex("\\*\\*"), "");
}

TEST(Messages, OfTheProgramHaveTheirRows) {
    const std::string rows = explained();
    const Texts all = shown([](std::string_view key, const std::string& text) {
        return !isDescription(key) && (isSentence(text) || isTitle(key));
    });
    EXPECT_GT(all.size(), 30u);
    for (const std::string& text : all)
        EXPECT_NE(rows.find(text), std::string::npos) << "no row says what to do: " << text;
}

TEST(Messages, AreAllThatHasToBeExplainedButTheEntries) {
    std::string guide;
    for (const auto& entry : fs::directory_iterator(fs::path(DOCUMENTS) / "guide"))
        if (entry.path().extension() == ".md") guide += textOf(entry.path());
    const Texts entries = shown([](std::string_view key, const std::string& text) {
        return text != "…" && !isDescription(key) && !isSentence(text) && !isTitle(key) &&
               !isPlain(key);
    });
    EXPECT_GT(entries.size(), 15u);
    for (const std::string& text : entries)
        EXPECT_NE(guide.find("*" + text + "*"), std::string::npos)
            << "no page of the guide has: " << text;
}

/// The beginnings of what is written to the log, or told by a command, in the sources below.
Texts literalsIn(const std::vector<fs::path>& folders, const std::regex& told) {
    Texts found;
    for (const fs::path& folder : folders)
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            const std::string extension = entry.path().extension();
            if (extension != ".cpp" && extension != ".h") continue;
            const std::string source =
                std::regex_replace(textOf(entry.path()), std::regex("\"\\s*\\n\\s*\""), "");
            for (std::sregex_iterator at(source.begin(), source.end(), told), end; at != end; ++at)
                found.insert(
                    trimmed(std::regex_replace((*at)[1].str(), std::regex("\\\\\""), "\"")));
        }
    // The name of a key, and what is no beginning.
    std::erase_if(found, [](const std::string& text) {
        return text.size() < 4 || std::ranges::all_of(text, [](unsigned char letter) {
                   return std::isupper(letter) != 0 || letter == '_';
               });
    });
    return found;
}

const fs::path sources = fs::path(DOCUMENTS).parent_path() / "src";

TEST(Messages, OfTheLogHaveTheirRows) {
    std::vector<fs::path> folders{sources / "program/bus", sources / "program/session"};
    for (const auto& entry : fs::directory_iterator(sources / "platform"))
        if (entry.is_directory() && entry.path().filename() != "memory" &&
            entry.path().filename() != "calendar")
            folders.push_back(entry.path());
    const Texts all = literalsIn(
        folders,
        std::regex("\\b(?:write|tell)\\(\\s*(?:std::string\\()?\"((?:[^\"\\\\]|\\\\.)*)\""));
    EXPECT_GT(all.size(), 30u);
    const std::string rows = explained();
    for (const std::string& text : all)
        EXPECT_NE(rows.find(text), std::string::npos) << "no row says what to do: " << text;
}

TEST(Messages, OfTheCommandLineHaveTheirRows) {
    const Texts all =
        literalsIn({sources / "program/client"},
                   std::regex("Failure\\{\\s*Exit::\\w+,\\s*\"((?:[^\"\\\\]|\\\\.)*)\""));
    EXPECT_GT(all.size(), 15u);
    const std::string rows = explained();
    for (const std::string& text : all)
        EXPECT_NE(rows.find(text), std::string::npos) << "no row says what to do: " << text;
}

TEST(Messages, ThatTheProgramRefusesWithHaveTheirRows) {
    const std::string rows = explained();
    const Texts all = literalsIn({sources / "bus"}, std::regex("\"([A-Z][^\"\\n]*\\.)\""));
    EXPECT_GE(all.size(), 5u);
    for (const std::string& text : all)
        EXPECT_NE(rows.find(std::regex_replace(text, std::regex("%u"), "…")), std::string::npos)
            << "no row says what to do: " << text;
}

TEST(Messages, SayWhatToDoInEachRow) {
    std::istringstream lines(page());
    const std::regex row("\\| .*\\S \\| .*\\S \\|");
    int rows = 0;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("| ")) continue;
        EXPECT_TRUE(std::regex_match(line, row)) << line;
        ++rows;
    }
    EXPECT_GT(rows, 50);
}

} // namespace
} // namespace manual
