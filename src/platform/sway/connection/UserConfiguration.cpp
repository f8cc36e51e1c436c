#include "platform/sway/connection/UserConfiguration.h"

#include <vector>

namespace platform::sway {

namespace {

using Words = std::vector<std::string_view>;

constexpr std::string_view blanks = " \t\r";

Words wordsOf(std::string_view line) {
    Words words;
    for (;;) {
        const auto begin = line.find_first_not_of(blanks);
        if (begin == std::string_view::npos || line[begin] == '#') return words;
        line.remove_prefix(begin);
        const char quote = line[0];
        const bool isQuoted = quote == '"' || quote == '\'';
        const auto end = isQuoted ? line.find(quote, 1) : line.find_first_of(blanks);
        if (end == std::string_view::npos) {
            words.push_back(isQuoted ? line.substr(1) : line);
            return words;
        }
        words.push_back(isQuoted ? line.substr(1, end - 1) : line.substr(0, end));
        line.remove_prefix(isQuoted ? end + 1 : end);
    }
}

/// Calls `take(subject, words)` for each command of a block with that name: "input SUBJECT
/// COMMAND...", or the lines between its braces.
void eachOf(std::string_view text, std::string_view block, auto&& take) {
    std::string_view subject; // of the block that is open
    int depth = 0;            // of other blocks
    while (!text.empty()) {
        const auto end = text.find('\n');
        const Words words = wordsOf(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (words.empty()) continue;
        if (words[0] == "}") {
            if (depth > 0)
                --depth;
            else
                subject = {};
        } else if (!subject.empty()) {
            take(subject, words);
        } else if (depth == 0 && words[0] == block && words.size() > 2) {
            if (words[2] == "{")
                subject = words[1];
            else
                take(words[1], Words(words.begin() + 2, words.end()));
        } else if (words.back() == "{") {
            ++depth;
        }
    }
}

std::string joined(const Words& words) {
    std::string text;
    for (const std::string_view word : words) {
        if (!text.empty()) text += ' ';
        const bool isPlain = word.find_first_of(" \t;,") == std::string_view::npos;
        text += isPlain ? std::string(word) : '"' + std::string(word) + '"';
    }
    return text;
}

} // namespace

std::optional<std::string> mappingOf(std::string_view configuration, std::string_view kind) {
    std::optional<std::string> own, everybodys;
    eachOf(configuration, "input", [&](std::string_view subject, const Words& words) {
        if (words[0] != "map_to_output" && words[0] != "map_to_region") return;
        if (subject == kind)
            own = joined(words);
        else if (subject == "*")
            everybodys = joined(words);
    });
    return own ? own : everybodys;
}

std::string cursorTimeout(std::string_view configuration) {
    std::string timeout = "0";
    eachOf(configuration, "seat", [&](std::string_view subject, const Words& words) {
        if (subject == "*" && words.size() == 2 && words[0] == "hide_cursor") timeout = words[1];
    });
    return timeout;
}

} // namespace platform::sway
