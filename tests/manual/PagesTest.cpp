#include "manual/Pages.h"

#include "app/Control.h"
#include "doctor/Options.h"
#include "program/Options.h"
#include "program/client/Words.h"
#include "testing/Child.h"
#include "unit/Program.h"

#include <gmock/gmock.h>

// The pages of the manual tell of all that the programs take, and of nothing else.

namespace manual {
namespace {

using testing::HasSubstr;

template <class Table>
Names namesOf(const Table& table) {
    Names names;
    for (const auto& one : table)
        names.emplace(one.name);
    return names;
}

template <class Table>
Names optionsOf(const Table& table) {
    Names names = namesOf(table);
    for (const OptionWords& one : table)
        if (!one.shortName.empty()) names.emplace(one.shortName);
    return names;
}

TEST(Manual, IsReadByManWithoutAWarning) {
    auto pages = std::vector<std::string>(products::names.begin(), products::names.end());
    pages.emplace_back("palisor-doctor");
    for (const std::string& page : pages) {
        support::ChildProcess groff(
            {.command = {"groff", "-man", "-ww", "-Tascii", "-P-cbou", pageFile(page)},
             .environment = {{"PATH", std::getenv("PATH")}}});
        EXPECT_EQ(groff.wait(), 0) << page;
        EXPECT_EQ(groff.errors(), "") << page;
        EXPECT_THAT(groff.output(), testing::ContainsRegex("\n +" + page + " +- +[a-z]")) << page;
    }
}

TEST(Manual, HasTheCommandsOptionsAndStatusesOfTheCommandLine) {
    Names statuses;
    for (const client::ExitMeaning& exit : client::exits)
        statuses.insert(std::to_string(static_cast<int>(exit.status)));
    for (const auto name : products::names) {
        const std::string page(name);
        EXPECT_EQ(termsOf(page, "COMMANDS"), namesOf(client::commands)) << page;
        EXPECT_EQ(termsOf(page, "With a command"), optionsOf(client::options)) << page;
        EXPECT_EQ(termsOf(page, "At the start"), optionsOf(programOptions)) << page;
        EXPECT_EQ(termsOf(page, "EXIT STATUS"), statuses) << page;
    }
    EXPECT_EQ(termsOf("palisor-doctor", "OPTIONS"), optionsOf(doctor::optionTable));
}

TEST(Manual, HasCommandsAndOptionsThatAreTaken) {
    for (const auto& [term, text] : entries("palisor", "COMMANDS")) {
        std::istringstream words(term);
        std::vector<std::string> line{"palisor"};
        for (std::string word; words >> word;)
            if (!word.starts_with('[')) line.push_back(word);
        std::vector<const char*> given;
        for (const std::string& word : line)
            given.push_back(word.c_str());
        EXPECT_NO_THROW(
            EXPECT_NE(client::parse(static_cast<int>(given.size()), given.data()).command, nullptr))
            << term;
    }
    const std::map<std::string, std::string> examples = {
        {"NAME", "orbisant"}, {"on|off", "off"}, {"FILE", "a"}, {"DIR", "a"}};
    for (const auto& [term, text] : entries("palisor", "At the start")) {
        const std::string name = term.substr(term.rfind("--"));
        std::string option = name.substr(0, name.find(' '));
        std::string value = option == name ? "" : examples.at(name.substr(option.size() + 1));
        char program[] = "palisor-tray";
        char* line[] = {program, option.data(), value.data()};
        EXPECT_FALSE(parseOptions(value.empty() ? 2 : 3, line).error) << term;
        char* alone[] = {program, option.data()};
        EXPECT_EQ(parseOptions(2, alone).error.has_value(), !value.empty()) << term;
    }
}

TEST(Manual, HasTheSettingsOfEachProductAsAFreshOneListsThem) {
    for (const auto name : products::names) {
        palisor::Program fresh(variantOf(name));
        fresh.app.applicationDidFinishLaunching();
        std::map<std::string, std::string> expected;
        for (const auto& state : palisor::control::settings(fresh.app)) {
            // Without one the barrier would go on asking for it.
            const bool isShortcut = state.setting->kind == palisor::Setting::Kind::shortcut;
            expected[std::string(state.setting->name)] =
                std::string(state.setting->meaning) + " (" + (isShortcut ? "none" : state.value) +
                " unless changed).";
        }
        std::map<std::string, std::string> told;
        for (const auto& [term, text] : entries(std::string(name), "SETTINGS"))
            told[term.substr(0, term.find(' '))] = text;
        EXPECT_EQ(told, expected) << name;
    }
}

} // namespace
} // namespace manual
