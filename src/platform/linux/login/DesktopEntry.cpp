#include "platform/linux/login/DesktopEntry.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace platform::linux {

namespace {

constexpr std::string_view groupLine = "[Desktop Entry]";
constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Empty for a line that is no "key=value".
std::string_view keyOf(std::string_view line) {
    const auto assignment = line.find('=');
    if (assignment == std::string_view::npos || trimmed(line).starts_with('#')) return {};
    return trimmed(line.substr(0, assignment));
}

std::string_view valueOf(std::string_view line) {
    return trimmed(line.substr(line.find('=') + 1));
}

bool isGroup(std::string_view line) {
    return line.starts_with('[');
}

// A letter, and what stands for it behind a backslash.
constexpr std::pair<char, char> escapes[] = {
    {'\\', '\\'}, {'\n', 'n'}, {'\t', 't'}, {'\r', 'r'}, {' ', 's'}};

// A reader trims a blank at either end, so the first one is escaped; the last one cannot be kept.
std::string escaped(std::string_view value) {
    std::string result;
    for (const char letter : value) {
        const auto* escape = std::ranges::find(escapes, letter, &std::pair<char, char>::first);
        if (escape == std::end(escapes) || (letter == ' ' && !result.empty()))
            result += letter;
        else
            result += {'\\', escape->second};
    }
    return result;
}

std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] != '\\' || index + 1 == value.size()) {
            result += value[index];
            continue;
        }
        const char letter = value[++index];
        const auto* escape = std::ranges::find(escapes, letter, &std::pair<char, char>::second);
        if (escape == std::end(escapes))
            result += {'\\', letter};
        else
            result += escape->first;
    }
    return result;
}

std::string quoted(std::string_view argument) {
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    const bool plain =
        !argument.empty() && argument.find_first_of(reserved) == std::string_view::npos;
    std::string result;
    for (const char letter : argument) {
        if (letter == '"' || letter == '`' || letter == '$' || letter == '\\') result += '\\';
        if (letter == '%') result += '%';
        result += letter;
    }
    return plain ? result : '"' + result + '"';
}

} // namespace

DesktopEntry::DesktopEntry(std::string_view text) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        fileLines.emplace_back(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    }
    for (std::size_t index = 0; index < fileLines.size() && !header; ++index)
        if (trimmed(fileLines[index]) == groupLine) header = index;
}

std::size_t DesktopEntry::endOfGroup() const {
    std::size_t end = *header + 1;
    while (end < fileLines.size() && !isGroup(fileLines[end]))
        ++end;
    return end;
}

std::optional<std::size_t> DesktopEntry::find(std::string_view key) const {
    if (!header) return std::nullopt;
    for (std::size_t index = endOfGroup() - 1; index > *header; --index)
        if (keyOf(fileLines[index]) == key) return index;
    return std::nullopt;
}

std::optional<std::string_view> DesktopEntry::raw(std::string_view key) const {
    const auto line = find(key);
    if (!line) return std::nullopt;
    return valueOf(fileLines[*line]);
}

std::string DesktopEntry::string(std::string_view key) const {
    return unescaped(raw(key).value_or(std::string_view{}));
}

bool DesktopEntry::isTrue(std::string_view key) const {
    const auto value = raw(key);
    return value == "true" || value == "1";
}

bool DesktopEntry::isFalse(std::string_view key) const {
    const auto value = raw(key);
    return value == "false" || value == "0";
}

void DesktopEntry::setRaw(std::string_view key, std::string_view value) {
    if (!header) {
        header = fileLines.size();
        fileLines.emplace_back(groupLine);
    }
    std::string line = std::string(key) + "=" + std::string(value);
    if (const auto known = find(key)) {
        fileLines[*known] = std::move(line);
        return;
    }
    std::size_t end = endOfGroup();
    while (end > *header + 1 && trimmed(fileLines[end - 1]).empty())
        --end;
    fileLines.insert(fileLines.begin() + static_cast<std::ptrdiff_t>(end), std::move(line));
}

void DesktopEntry::setString(std::string_view key, std::string_view value) {
    setRaw(key, escaped(value));
}

void DesktopEntry::erase(std::string_view key) {
    while (const auto line = find(key))
        fileLines.erase(fileLines.begin() + static_cast<std::ptrdiff_t>(*line));
}

std::vector<std::string> DesktopEntry::lines() const {
    std::vector<std::string> result;
    if (!header) return result;
    for (std::size_t index = *header + 1; index < endOfGroup(); ++index) {
        const std::string& line = fileLines[index];
        if (const auto key = keyOf(line); !key.empty())
            result.push_back(std::string(key) + "=" + std::string(valueOf(line)));
    }
    return result;
}

std::string DesktopEntry::text() const {
    std::string result;
    for (const std::string& line : fileLines)
        result += line + '\n';
    return result;
}

std::string execValue(const std::vector<std::string>& command) {
    std::string value;
    for (const std::string& argument : command) {
        if (!value.empty()) value += ' ';
        value += quoted(argument);
    }
    return escaped(value);
}

std::optional<std::vector<std::string>> execArguments(std::string_view value) {
    std::vector<std::string> arguments;
    std::string argument;
    bool open = false;  // inside an argument
    bool quote = false; // inside its quotes
    for (std::size_t index = 0; index < value.size(); ++index) {
        const char letter = value[index];
        const bool isLast = index + 1 == value.size();
        if (!quote && (letter == ' ' || letter == '\t' || letter == '\n')) {
            if (open) arguments.push_back(std::exchange(argument, {}));
            open = false;
        } else if (letter == '"') {
            quote = !quote;
            open = true;
        } else if (letter == '\\' && !isLast) {
            argument += value[++index];
            open = true;
        } else if (letter == '%' && !isLast) {
            // "%%" stands for one; other codes are for files and icons, which nothing is started
            // with here.
            if (value[++index] == '%') argument += '%';
            open = open || !argument.empty();
        } else {
            argument += letter;
            open = true;
        }
    }
    if (quote) return std::nullopt;
    if (open) arguments.push_back(std::move(argument));
    return arguments;
}

} // namespace platform::linux
