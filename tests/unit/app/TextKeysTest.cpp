#include "strings/Strings.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <map>
#include <regex>
#include <set>

// The sources say which texts the program asks for; the tables must have these and no others.

namespace {

using testing::IsEmpty;
using Keys = std::set<std::string>;

/// Names of settings and of fields are written like the keys of texts, and so is much of what the
/// command line and the manual say, which are English everywhere.
bool holdsOtherNames(const std::string& path) {
    return path == "core/app/Keys.h" || path == "core/app/Fields.h" ||
           path.starts_with("doctor/") || path.starts_with("program/client/") ||
           path.starts_with("program/manual/") || path.starts_with("program/Option");
}

/// Written like the key of a text, and none.
const Keys otherWords = {"BUTANGOLO",
                         "BUTLATO",
                         "CHECK_",
                         "DBUS_SESSION_BUS_ADDRESS",
                         "DISPLAY",
                         "HOME",
                         "KORVADIN",
                         "NULL",
                         "OSX",
                         "QT_NO_GLIB",
                         "QT_PLUGIN_PATH",
                         "QT_QPA_PLATFORM",
                         "QT_QPA_PLATFORM_PLUGIN_PATH",
                         "QT_XCB_GL_INTEGRATION",
                         "RATE_",
                         "SWAYSOCK",
                         "TERMINATEHELPER",
                         "WAYLAND_DISPLAY",
                         "XDG_DATA_DIRS",
                         "XDG_DATA_HOME",
                         "XDG_RUNTIME_DIR",
                         "YES"};

std::string withoutComments(const std::string& source) {
    return std::regex_replace(source, std::regex(R"((^|\n)\s*//[^\n]*|\s//[^\n"]*(?=\n))"), "$1");
}

/// Everything outside the platform's folders, which know no text, and the tools for scenarios.
const std::map<std::string, std::string>& sources() {
    static const auto read = [] {
        std::map<std::string, std::string> files;
        const std::string root = SOURCES;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
            const std::string path = entry.path().string().substr(root.size() + 1);
            if (!entry.is_regular_file() || path.starts_with("platform/") ||
                path.starts_with("scenario/"))
                continue;
            if (!path.ends_with(".cpp") && !path.ends_with(".h")) continue;
            std::ifstream file(entry.path());
            files[path] = withoutComments({std::istreambuf_iterator<char>(file), {}});
        }
        return files;
    }();
    return read;
}

Keys literalsIn(const std::string& source) {
    Keys found;
    const std::regex literal(R"re("((?:[^"\\\n]|\\.)*)")re");
    for (std::sregex_iterator at(source.begin(), source.end(), literal), end; at != end; ++at)
        found.insert((*at)[1]);
    return found;
}

/// The literals in the argument that names the text, one or two where a condition chooses.
Keys askedFor(const std::string& source) {
    Keys found;
    const std::regex call(
        R"re(\b(?:localizedString|localizedItem|switchItem)\(([^,;]*?"[^,;]*?)[,;)])re");
    for (std::sregex_iterator at(source.begin(), source.end(), call), end; at != end; ++at)
        found.merge(literalsIn((*at)[1]));
    return found;
}

bool isWrittenLikeAKey(const std::string& word) {
    static const std::regex key("[A-Z0-9]+(_[A-Z0-9]*)*(Text[A-Za-z]*)?");
    return word.size() > 1 && std::regex_match(word, key) &&
           word.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") != std::string::npos;
}

Keys keysOf(std::string_view language) {
    Keys keys;
    for (const strings::Text& text : strings::table(language))
        keys.emplace(text.key);
    return keys;
}

Keys without(Keys keys, const Keys& others) {
    for (const std::string& other : others)
        keys.erase(other);
    return keys;
}

TEST(TextKeys, ThatTheProgramAsksForAreInBothTables) {
    Keys asked;
    for (const auto& [path, source] : sources()) {
        asked.merge(askedFor(source));
        if (holdsOtherNames(path)) continue;
        for (const std::string& literal : literalsIn(source))
            if (isWrittenLikeAKey(literal) && !otherWords.contains(literal)) asked.insert(literal);
    }
    EXPECT_GT(asked.size(), 35u);
    EXPECT_TRUE(asked.contains("DISABILITA"));
    EXPECT_TRUE(asked.contains("Hot Borders Mode"));
    for (const auto* language : {"en", "it"})
        EXPECT_THAT(without(asked, keysOf(language)), IsEmpty()) << language;
}

TEST(TextKeys, ThatNobodyAsksForAreNotKept) {
    Keys used;
    for (const auto& [path, source] : sources())
        if (!holdsOtherNames(path)) used.merge(literalsIn(source));
    EXPECT_THAT(without(keysOf("en"), used), IsEmpty());
}

TEST(TextKeys, HaveTheSamePlaceholdersInEveryLanguage) {
    const std::regex placeholder("%[@a-z]");
    const auto placeholders = [&placeholder](std::string_view text) {
        const std::string all(text);
        std::vector<std::string> found;
        for (std::sregex_iterator at(all.begin(), all.end(), placeholder), end; at != end; ++at)
            found.push_back(at->str());
        return found;
    };
    for (const strings::Text& text : strings::table("en"))
        EXPECT_EQ(placeholders(text.text), placeholders(strings::lookUp("it", text.key)))
            << text.key;
}

// It follows another text directly.
TEST(TextKeys, OfTheAppendedTextBeginWithItsOwnLineBreaks) {
    for (const auto* language : {"en", "it"})
        EXPECT_TRUE(strings::lookUp(language, "TESTO_AGGIUNTO").starts_with("\n\n"));
}

} // namespace
