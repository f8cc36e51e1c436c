#include "program/client/Words.h"

#include "program/Options.h"
#include "program/Products.h"

#include <numeric>
#include <utility>

namespace client {

namespace {

constexpr std::string_view productOption = "--product";

template <class Table>
std::vector<std::string_view> namesOf(const Table& table) {
    std::vector<std::string_view> names;
    for (const auto& entry : table)
        names.push_back(entry.name);
    return names;
}

template <class Table>
Failure unknown(const std::string& kind, std::string_view word, const Table& table) {
    return {Exit::wrongUsage, "there is no " + kind + " \"" + std::string(word) + "\"" +
                                  advice(word, namesOf(table), "--help lists them")};
}

void setProduct(Words& words, std::string_view name) {
    words.product = products::named(name);
    if (!products::contain(words.product))
        throw Failure{Exit::wrongUsage, "unknown product " + words.product + "; the products are " +
                                            products::list()};
}

void checkSettings(const Words& words) {
    if (words.arguments.empty()) return;
    const auto* const word = find(settingsWords, words.arguments[0]);
    if (!word) throw unknown("word for settings", words.arguments[0], settingsWords);
    if (static_cast<int>(words.arguments.size()) != word->arguments + 1)
        throw Failure{Exit::wrongUsage, "settings " + std::string(word->name) + " takes " +
                                            std::to_string(word->arguments) +
                                            " further words (--help)"};
}

void check(const Words& words) {
    const Command& command = *words.command;
    const int count = static_cast<int>(words.arguments.size());
    if (count < command.least || count > command.most)
        throw Failure{Exit::wrongUsage,
                      std::string(command.name) +
                          (command.arguments.empty() ? " takes no further word"
                                                     : " takes " + std::string(command.arguments)) +
                          " (--help)"};
    if (words.json && !command.prints)
        throw Failure{Exit::wrongUsage, std::string(command.name) + " prints nothing: no --json"};
    if (command.name == "settings") checkSettings(words);
}

/// How many letters have to be changed, added or left out, or neighbours to change places.
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> before, above, row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < from.size(); ++i) {
        before = std::exchange(above, row);
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t changed = above[j] + (from[i] == to[j] ? 0 : 1);
            row[j + 1] = std::min({changed, row[j] + 1, above[j + 1] + 1});
            if (i > 0 && j > 0 && from[i] == to[j - 1] && from[i - 1] == to[j])
                row[j + 1] = std::min(row[j + 1], before[j - 1] + 1);
        }
    }
    return row.back();
}

/// More than a third of its letters wrong, and a word is another one.
bool isNear(std::string_view word, std::string_view right) {
    return distance(word, right) <= std::max(word.size(), right.size()) / 3;
}

} // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& right) {
    const std::string small = products::named(word);
    // Of those that are as far, the one that begins alike: "of" is meant for "off", not for "on".
    const auto far = [&](std::string_view one) {
        const std::string other = products::named(one);
        const auto alike = std::ranges::mismatch(small, other).in1 - small.begin();
        return std::pair(distance(small, other), -alike);
    };
    const auto found = std::ranges::min_element(right, {}, far);
    const bool isMeant = found != right.end() && isNear(small, products::named(*found));
    return isMeant ? *found : std::string_view();
}

std::string advice(std::string_view word, const std::vector<std::string_view>& right,
                   std::string_view otherwise) {
    const std::string_view meant = nearest(word, right);
    if (meant.empty()) return " (" + std::string(otherwise) + ")";
    return "; did you mean \"" + std::string(meant) + "\"?";
}

Words parse(int argc, const char* const* argv) {
    Words words;
    words.product = products::calledBy(argc > 0 ? argv[0] : "", "palisor");
    bool forTheProgram = false;
    for (int index = 1; index < argc; ++index) {
        const std::string_view word = argv[index];
        if (words.command && words.command->name == "doctor" && word != productOption) {
            words.arguments.emplace_back(word);
        } else if (const auto* const own = findOption(options, word)) {
            if (own->flag != nullptr) {
                words.*own->flag = true;
                continue;
            }
            const auto name = optionValue(*own, argc, argv, index);
            if (!name)
                throw Failure{Exit::wrongUsage, "--product needs one of " + products::list()};
            setProduct(words, *name);
        } else if (word.starts_with('-') && word.size() > 1 && !words.command) {
            forTheProgram = true;
            const auto* const option = findOption(programOptions, word);
            if (option && option->flag == nullptr && word == option->name) ++index;
        } else if (!words.command) {
            words.command = find(commands, word);
            if (!words.command) throw unknown("command", word, commands);
        } else {
            words.arguments.emplace_back(word);
        }
    }
    if (words.help) return words;
    if (words.command && forTheProgram)
        throw Failure{Exit::wrongUsage, "that option is for the start of the program, and \"" +
                                            std::string(words.command->name) + "\" starts none"};
    if (!words.command && words.json) throw Failure{Exit::wrongUsage, "--json goes with a command"};
    if (words.command) check(words);
    return words;
}

std::string usage(std::string_view calledBy) {
    const std::string name(calledBy);
    std::string text = "Usage: " + name + " [--product NAME] [--json] COMMAND\n       " + name +
                       " [OPTIONS]   start it; palisor-tray --help lists them\n\n";
    for (const Command& command : commands)
        text += helpLines("  " + synopsis(command), command.help, 19);
    text += "\n" + optionLines(options, products::list()) + "\n";
    std::string statuses;
    for (const ExitMeaning& exit : exits)
        statuses += (statuses.empty() ? "" : "; ") + std::to_string(static_cast<int>(exit.status)) +
                    " " + std::string(exit.meaning);
    return text + helpLines("Exit status:", statuses + ".", 2);
}

} // namespace client
