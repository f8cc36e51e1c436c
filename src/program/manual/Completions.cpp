#include "program/manual/Completions.h"

#include "app/SettingsTable.h"
#include "doctor/Options.h"
#include "program/Options.h"
#include "program/Products.h"
#include "program/client/Words.h"

#include <stdexcept>

namespace manual {

namespace {

using palisor::Setting;

/// A word that is offered. Capitals stand for what the shell finds out: FILE, DIR, MONITOR.
struct Offered {
    std::string word, meaning;
};

struct List {
    std::string name;
    std::vector<Offered> words;
};

std::vector<Offered> valuesOf(const OptionWords& option, const std::vector<Member>& family) {
    std::vector<Offered> values;
    if (option.value == "NAME") {
        for (const Member& one : family)
            values.push_back({one.name, one.summary});
    } else if (option.value == "on|off") {
        values = {{"on", {}}, {"off", {}}};
    } else {
        values = {{std::string(option.value), {}}};
    }
    return values;
}

/// The names of options, and for each that takes a value what may follow it.
template <class Table>
void addOptions(std::vector<List>& lists, std::string_view name, const Table& table,
                const std::vector<Member>& family) {
    List options{.name = std::string(name), .words = {}};
    for (const OptionWords& option : table) {
        const std::string help(option.help);
        if (!option.shortName.empty())
            options.words.push_back({std::string(option.shortName), help});
        options.words.push_back({std::string(option.name), help});
        const std::string after = "after " + std::string(option.name);
        const bool isThere = std::ranges::count(lists, after, &List::name) > 0;
        if (!option.value.empty() && !isThere) lists.push_back({after, valuesOf(option, family)});
    }
    lists.push_back(std::move(options));
}

/// What may follow a command; nothing for one that takes no word, or words that it knows itself.
std::vector<Offered> wordsAfter(const client::Command& command) {
    if (command.name == "free")
        return {{"0", "end that"},
                {std::to_string(client::usualFreeing), "seconds, as without a number"}};
    if (command.name == "setup") return {{"gnome", std::string(command.help)}};
    if (command.name == "cross") return {{"MONITOR", {}}};
    std::vector<Offered> words;
    if (command.name == "settings")
        for (const client::SettingsWord& word : client::settingsWords)
            words.push_back({std::string(word.name), {}});
    return words;
}

void addCommands(std::vector<List>& lists) {
    List names{.name = "commands", .words = {}};
    for (const client::Command& command : client::commands) {
        names.words.push_back({std::string(command.name), std::string(command.help)});
        auto words = wordsAfter(command);
        if (!words.empty()) lists.push_back({"after " + std::string(command.name), words});
    }
    lists.push_back(std::move(names));
}

/// Of numbers the ends of their range.
std::vector<Offered> valuesOf(const Setting& setting) {
    const auto [least, most] = setting.range();
    switch (setting.kind) {
    case Setting::Kind::flag:
        return {{"on", {}}, {"off", {}}};
    case Setting::Kind::number:
        return {{std::to_string(least), "the least"}, {std::to_string(most), "the most"}};
    case Setting::Kind::text:
        return {{std::string(setting.standard), "unless changed"}};
    case Setting::Kind::shortcut:
        return {{"none", "or keys, as Ctrl+Super+K"}};
    }
    return {};
}

void addSettings(std::vector<List>& lists, const std::vector<Member>& family) {
    for (const Member& one : family) {
        List names{.name = "settings " + one.name, .words = {}};
        for (const Setting& setting : palisor::settingsTable())
            if (setting.products.contains(one.variant))
                names.words.push_back({std::string(setting.name), std::string(setting.meaning)});
        lists.push_back(std::move(names));
    }
    for (const Setting& setting : palisor::settingsTable())
        lists.push_back({"value " + std::string(setting.name), valuesOf(setting)});
}

std::vector<List> allLists(const std::vector<Member>& family) {
    std::vector<List> lists;
    addCommands(lists);
    addOptions(lists, "options", client::options, family);
    addOptions(lists, "start", programOptions, family);
    addOptions(lists, "doctor", doctor::optionTable, family);
    addSettings(lists, family);
    return lists;
}

/// A word that the shell leaves as it is.
std::string quoted(Shell shell, std::string_view text) {
    std::string whole = "'";
    for (const char letter : text) {
        if (letter == '\'')
            whole += shell == Shell::fish ? "\\'" : "'\\''";
        else
            whole += letter;
    }
    return whole + "'";
}

/// One branch that prints the words a line each, with what they mean as that shell wants it.
std::string branch(Shell shell, const List& list) {
    std::string text = shell == Shell::fish ? "        case " : "    ";
    text += quoted(shell, list.name) + (shell == Shell::fish ? "\n            " : ") ");
    text += shell == Shell::fish ? "printf '%s\\t%s\\n'" : "printf '%s\\n'";
    for (const auto& [word, meaning] : list.words) {
        text += " \\\n            ";
        if (shell == Shell::bash)
            text += quoted(shell, word);
        else if (shell == Shell::zsh)
            text += quoted(shell, meaning.empty() ? word : word + ":" + meaning);
        else
            text += quoted(shell, word) + " " + quoted(shell, meaning);
    }
    return text + (shell == Shell::fish ? "\n" : " ;;\n");
}

std::string replaced(std::string_view text, std::string_view mark, const std::string& with) {
    const auto at = text.find(mark);
    if (at == text.npos) throw std::runtime_error("there is no " + std::string(mark));
    return std::string(text.substr(0, at)) + with + std::string(text.substr(at + mark.size()));
}

} // namespace

std::vector<std::string> programs(const std::vector<Member>& family) {
    std::vector<std::string> names;
    for (const Member& one : family)
        names.push_back(one.name);
    names.emplace_back("palisor-doctor");
    return names;
}

std::string completions(Shell shell, std::string_view frame, const std::vector<Member>& family) {
    std::string branches, names;
    for (const List& list : allLists(family))
        branches += branch(shell, list);
    for (const std::string& name : programs(family))
        names += (names.empty() ? "" : " ") + name;
    return replaced(replaced(frame, "@lists@\n", branches), "@programs@", names);
}

} // namespace manual
