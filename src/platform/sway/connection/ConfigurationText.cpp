#include "platform/sway/connection/ConfigurationText.h"

#include <algorithm>
#include <cctype>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <wordexp.h>

namespace platform::sway {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view blanks = " \t\r\v\f";
constexpr std::size_t longestCommand = 1U << 14, largestFile = 1U << 20;
constexpr std::size_t mostFiles = 200, mostBytes = 4U << 20, mostVariables = 1000;
constexpr int deepestInclude = 20;

std::string_view stripped(std::string_view text) {
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// Quotes and what is in them belong to the word.
Words split(std::string_view line) {
    Words words;
    std::string word;
    char quote = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char letter = line[i];
        if (!quote && blanks.find(letter) != std::string_view::npos) {
            if (!word.empty()) words.push_back(std::move(word));
            word.clear();
            continue;
        }
        word += letter;
        if (letter == '\\' && i + 1 < line.size())
            word += line[++i];
        else if (quote == letter)
            quote = 0;
        else if (!quote && (letter == '"' || letter == '\''))
            quote = letter;
    }
    if (!word.empty()) words.push_back(std::move(word));
    return words;
}

std::string joined(const Words& words, std::size_t begin, std::size_t end) {
    std::string text;
    for (std::size_t i = begin; i < end; ++i)
        text += (i > begin ? " " : "") + words[i];
    return text;
}

std::string unquoted(const std::string& word) {
    std::string text;
    char quote = 0;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char letter = word[i];
        if (letter == '\\' && i + 1 < word.size())
            text += word[++i];
        else if (quote ? letter == quote : letter == '"' || letter == '\'')
            quote = quote ? 0 : letter;
        else
            text += letter;
    }
    return text;
}

std::string lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    return text;
}

class Reader {
  public:
    Reader(const FindIncluded& finder, const std::function<void(const Words&)>& taker)
        : find(finder), take(taker) {}

    void read(const ConfigurationFile& file);

  private:
    void command(const std::string& line, std::vector<std::string>& blocks);
    void set(const Words& words);
    void include(const std::string& pattern);
    std::string replaced(const std::string& text) const;

    struct Variable {
        std::string name, value;
    };

    const FindIncluded& find;
    const std::function<void(const Words&)>& take;
    std::vector<Variable> variables; ///< the longest name first
    std::set<std::string> known;     ///< paths
    std::string folder;              ///< of the file that is read
    std::size_t bytes = 0, includes = 0;
    int depth = 0;
};

void Reader::read(const ConfigurationFile& file) {
    bytes += file.text.size();
    if (depth >= deepestInclude || known.size() >= mostFiles || bytes > mostBytes) return;
    if (!known.insert(file.path).second) return;
    ++depth;
    const std::string outer = std::exchange(folder, fs::path(file.path).parent_path().string());

    std::vector<std::string> lines;
    bool goesOn = false;
    for (std::size_t begin = 0; begin < file.text.size();) {
        const auto end = std::min(file.text.find('\n', begin), file.text.size());
        std::string_view line = std::string_view(file.text).substr(begin, end - begin);
        begin = end + 1;
        const bool isContinued = goesOn;
        goesOn = line.ends_with('\\') && begin <= file.text.size();
        if (goesOn) line.remove_suffix(1);
        if (isContinued)
            lines.back() += line;
        else
            lines.emplace_back(line);
    }
    std::erase_if(lines, [](const std::string& line) {
        const auto text = stripped(line);
        return text.empty() || text[0] == '#';
    });

    std::vector<std::string> blocks; // that are open: the words before what is in them
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string line(stripped(lines[i]));
        // The brace may stand on the next line.
        const bool isBrace = line.ends_with('{') || line.ends_with('}');
        if (!isBrace && i + 1 < lines.size() && stripped(lines[i + 1]) == "{") {
            line += " {";
            ++i;
        }
        if (!blocks.empty()) line.insert(0, blocks.back() + " ");
        if (line.size() > longestCommand) break;
        command(line, blocks);
    }
    folder = outer;
    --depth;
}

void Reader::command(const std::string& line, std::vector<std::string>& blocks) {
    Words words = split(line);
    if (words.empty()) return;
    if (words.size() > 1 && words.back() == "{") {
        blocks.push_back(joined(words, 0, words.size() - 1));
        return;
    }
    if (words.back() == "}") {
        if (!blocks.empty()) blocks.pop_back();
        return;
    }
    if (words[0][0] == '$')
        words = split(replaced(words[0]) + " " + joined(words, 1, words.size()));
    if (words.empty()) return;
    if (lower(words[0]) == "set") {
        set(words);
        return;
    }
    const std::string whole = replaced(joined(words, 0, words.size()));
    if (whole.size() > longestCommand) return;
    words = split(whole);
    for (std::string& word : words)
        word = unquoted(word);
    words[0] = lower(words[0]);
    if (words[0] != "include")
        take(words);
    else if (words.size() == 2)
        include(words[1]);
}

void Reader::set(const Words& words) {
    if (words.size() < 3 || words[1][0] != '$') return;
    const std::string& name = words[1];
    std::string value = replaced(joined(words, 2, words.size()));
    if (value.size() > longestCommand || variables.size() >= mostVariables) return;
    const auto found = std::ranges::find(variables, name, &Variable::name);
    if (found != variables.end()) {
        found->value = std::move(value);
        return;
    }
    variables.push_back({name, std::move(value)});
    std::ranges::stable_sort(
        variables, [](const auto& a, const auto& b) { return a.name.size() > b.name.size(); });
}

/// A value is not looked through again.
std::string Reader::replaced(const std::string& text) const {
    std::string done;
    for (std::size_t i = 0; i < text.size() && done.size() <= longestCommand;) {
        const std::string_view rest = std::string_view(text).substr(i);
        const bool isEscaped = i > 0 && text[i - 1] == '\\' && (i < 2 || text[i - 2] != '\\');
        if (rest[0] != '$' || isEscaped) {
            done += rest[0];
            ++i;
            continue;
        }
        const auto found = std::ranges::find_if(
            variables, [rest](const Variable& one) { return rest.starts_with(one.name); });
        if (rest.starts_with("$$")) {
            done += '$';
            i += 2;
        } else if (found != variables.end()) {
            done += found->value;
            i += found->name.size();
        } else {
            done += '$';
            ++i;
        }
    }
    return done;
}

void Reader::include(const std::string& pattern) {
    if (++includes > mostFiles) return;
    for (const ConfigurationFile& file : find(pattern, folder))
        read(file);
}

} // namespace

void eachCommand(const ConfigurationFile& main, const FindIncluded& find,
                 const std::function<void(const Words&)>& take) {
    Reader(find, take).read(main);
}

std::vector<ConfigurationFile> includedFrom(const std::string& pattern, const std::string& folder) {
    // What is no path from the root on or from a home is one from the folder on, whose own name is
    // nothing that the shell should look through.
    std::string whole;
    if (pattern.find_first_of("/~$") != 0) {
        for (const char letter : folder + "/")
            whole += std::isalnum(static_cast<unsigned char>(letter)) || letter == '/'
                         ? std::string(1, letter)
                         : std::string("\\") + letter;
    }
    wordexp_t words{};
    if (::wordexp((whole + pattern).c_str(), &words, WRDE_NOCMD) != 0) return {};
    std::vector<ConfigurationFile> files;
    for (std::size_t i = 0; i < words.we_wordc && i < mostFiles; ++i) {
        std::error_code missing;
        const fs::path path = fs::canonical(words.we_wordv[i], missing);
        if (missing) continue;
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
        struct stat is {};
        if (file >= 0 && ::fstat(file, &is) == 0 && S_ISREG(is.st_mode) &&
            is.st_size <= static_cast<off_t>(largestFile)) {
            std::string text(static_cast<std::size_t>(is.st_size), '\0');
            const ssize_t got = ::read(file, text.data(), text.size());
            text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
            files.push_back({path, std::move(text)});
        }
        if (file >= 0) ::close(file);
    }
    ::wordfree(&words);
    return files;
}

} // namespace platform::sway
