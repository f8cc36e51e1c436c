#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

// Options of command lines as tables. Parsing looks each word up in one, and help, the manual and
// the completions are made from it, so that they tell of the same options.

/// What is told of an option.
struct OptionWords {
    std::string_view name;      ///< "--help"
    std::string_view shortName; ///< "-h", empty for none
    std::string_view value;     ///< "NAME" of a product, "FILE", "DIR", "on|off"; empty for none
    std::string_view help;      ///< one sentence, without a full stop
};

/// One that without a value sets a flag of `Options`.
template <class Options>
struct OptionRow : OptionWords {
    bool Options::*flag = nullptr;
};

/// The row of an option as it is typed, alone or with "=value" where it takes one; null for none.
template <class Table>
constexpr const typename Table::value_type* findOption(const Table& table, std::string_view word) {
    const auto means = [word](const OptionWords& option) {
        if (word == option.name || (!option.shortName.empty() && word == option.shortName))
            return true;
        return !option.value.empty() && word.starts_with(option.name) &&
               word[option.name.size()] == '=';
    };
    const auto found = std::ranges::find_if(table, means);
    return found == table.end() ? nullptr : &*found;
}

/// The value behind "=", or the next word, which `index` then moves on to; nothing where the line
/// ends. For an option that takes one.
inline std::optional<std::string_view> optionValue(const OptionWords& option, int count,
                                                   const char* const* words, int& index) {
    const std::string_view word = words[index];
    if (word != option.name) return word.substr(option.name.size() + 1);
    if (index + 1 >= count) return std::nullopt;
    return words[++index];
}

/// "-h, --help" or "--hold on|off".
inline std::string optionSynopsis(const OptionWords& option) {
    std::string text(option.shortName);
    if (!text.empty()) text += ", ";
    text += option.name;
    if (!option.value.empty()) text += " " + std::string(option.value);
    return text;
}

/// What the option does; of one that chooses a product with the list of them behind it.
inline std::string optionHelp(const OptionWords& option, std::string_view products) {
    return std::string(option.help) +
           (option.value == "NAME" ? ": " + std::string(products) : std::string());
}

inline constexpr std::size_t terminalColumns = 79; ///< some terminals wrap behind the 80th

/// `left`, and `text` beside it from a column on, in lines of a terminal that break between words.
inline std::string helpLines(std::string left, std::string_view text, std::size_t column) {
    if (!left.empty()) left.resize(std::max(column, left.size() + 1), ' ');
    std::string lines, line = std::move(left);
    while (line.size() + text.size() > terminalColumns) {
        const std::size_t blank = text.rfind(' ', terminalColumns - line.size());
        if (blank == std::string_view::npos) break;
        lines += line + std::string(text.substr(0, blank)) + "\n";
        text.remove_prefix(blank + 1);
        line.assign(column, ' ');
    }
    return lines + line + std::string(text) + "\n";
}

/// "Usage: palisor [--product NAME] ...", in lines that break between options.
template <class Table>
std::string usageLines(const std::string& command, const Table& table) {
    const std::string indent(std::string("Usage: ").size() + command.size(), ' ');
    std::string lines, line = "Usage: " + command;
    for (const OptionWords& option : table) {
        const std::string piece = " [" + std::string(option.name) +
                                  (option.value.empty() ? "" : " " + std::string(option.value)) +
                                  "]";
        if (line.size() + piece.size() > terminalColumns) {
            lines += line + "\n";
            line = indent;
        }
        line += piece;
    }
    return lines + line + "\n";
}

/// The options as help lists them.
template <class Table>
std::string optionLines(const Table& table, std::string_view products) {
    std::string lines;
    for (const OptionWords& option : table)
        lines += helpLines("  " + optionSynopsis(option), optionHelp(option, products), 19);
    return lines;
}
