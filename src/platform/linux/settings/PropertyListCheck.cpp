#include "platform/linux/settings/PropertyListCheck.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>

namespace platform::linux {

namespace {

constexpr std::string_view blanks = " \t\r\n";
// The reader of the list frees nested values recursively.
constexpr int deepest = 100;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool allDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, isDigit);
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool isInteger(std::string_view text) {
    text = trimmed(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    if (!allDigits(text) || (text.size() > 1 && text[0] == '0')) return false;
    errno = 0;
    const unsigned long long number = std::strtoull(std::string(text).c_str(), nullptr, 10);
    return errno == 0 && (!negative || number <= std::uint64_t{1} << 63);
}

bool isReal(std::string_view text) {
    const std::string number(trimmed(text));
    if (number.empty()) return false;
    char* end = nullptr;
    (void)std::strtod(number.c_str(), &end);
    return end == number.c_str() + number.size();
}

/// libplist writes a year without leading zeros, and a month or a day out of range as another date,
/// whose year may be none.
bool isDate(std::string_view text) {
    text = trimmed(text);
    const auto yearLength = std::min(text.find('-'), text.size());
    if (yearLength > 4 || !allDigits(text.substr(0, yearLength))) return false;
    text.remove_prefix(yearLength);
    constexpr std::string_view shape = "-00-00T00:00:00Z";
    const auto fits = [](char c, char s) { return s == '0' ? isDigit(c) : c == s; };
    if (!std::ranges::equal(text, shape, fits)) return false;
    const auto isWithin = [text](std::size_t at, int least, int most) {
        const int number = 10 * (text[at] - '0') + (text[at + 1] - '0');
        return number >= least && number <= most;
    };
    return isWithin(1, 1, 12) && isWithin(4, 1, 31) && isWithin(7, 0, 23) && isWithin(10, 0, 59) &&
           isWithin(13, 0, 59);
}

bool isBase64(std::string_view text) {
    std::size_t letters = 0;
    std::size_t padding = 0;
    for (const char c : text) {
        if (blanks.find(c) != std::string_view::npos) continue;
        if (c == '=') {
            ++padding;
        } else if (padding > 0 ||
                   !(std::isalnum(static_cast<unsigned char>(c)) || c == '+' || c == '/')) {
            return false;
        } else {
            ++letters;
        }
    }
    return padding <= 2 && (letters + padding) % 4 == 0;
}

/// A number behind "#", whose character a text may hold.
bool isCharacterNumber(std::string_view digits) {
    int base = 10;
    if (digits.starts_with('x')) {
        digits.remove_prefix(1);
        base = 16;
    }
    std::uint32_t code = 0;
    const char* const end = digits.data() + digits.size();
    const auto [read, error] = std::from_chars(digits.data(), end, code, base);
    const bool isSurrogate = code >= 0xd800 && code < 0xe000;
    return error == std::errc{} && read == end && code > 0 && code <= 0x10ffff && !isSurrogate;
}

bool isEntity(std::string_view name) {
    constexpr std::string_view named[] = {"amp", "lt", "gt", "quot", "apos"};
    if (std::ranges::find(named, name) != std::end(named)) return true;
    return name.starts_with('#') && isCharacterNumber(name.substr(1));
}

struct Tag {
    enum class Kind { open, close, empty };
    std::string_view name;
    Kind kind = Kind::open;
};

class Scanner {
  public:
    explicit Scanner(std::string_view text) : left(text) {}

    Wholeness scan() {
        if (!document()) return Wholeness::damaged;
        return repeated ? Wholeness::repeatsKeys : Wholeness::whole;
    }

  private:
    bool take(std::string_view start) {
        if (!left.starts_with(start)) return false;
        left.remove_prefix(start.size());
        return true;
    }

    /// Goes behind the next `end`.
    bool skipPast(std::string_view end) {
        const auto at = left.find(end);
        if (at == std::string_view::npos) return false;
        left.remove_prefix(at + end.size());
        return true;
    }

    bool skipBetweenElements() {
        for (;;) {
            const auto next = left.find_first_not_of(blanks);
            left.remove_prefix(std::min(next, left.size()));
            if (take("<!--")) {
                if (!skipPast("-->")) return false;
            } else if (take("<?")) {
                if (!skipPast("?>")) return false;
            } else if (take("<!DOCTYPE")) {
                if (!skipPast(">")) return false;
            } else {
                return true;
            }
        }
    }

    std::optional<Tag> tag() {
        if (!skipBetweenElements() || !take("<")) return std::nullopt;
        const auto end = left.find('>');
        if (end == std::string_view::npos) return std::nullopt;
        auto inside = left.substr(0, end);
        left.remove_prefix(end + 1);
        Tag result;
        if (inside.starts_with('/')) {
            result.kind = Tag::Kind::close;
            inside.remove_prefix(1);
        } else if (inside.ends_with('/')) {
            result.kind = Tag::Kind::empty;
            inside.remove_suffix(1);
        }
        result.name = inside.substr(0, inside.find_first_of(blanks));
        return result;
    }

    bool closes(std::string_view name) {
        const auto next = tag();
        return next && next->kind == Tag::Kind::close && next->name == name;
    }

    /// The text up to the closing tag of `name`; entities stay as they are written.
    std::optional<std::string_view> text(std::string_view name) {
        const auto start = left;
        for (;;) {
            const auto at = left.find_first_of("<&");
            if (at == std::string_view::npos) return std::nullopt;
            left.remove_prefix(at);
            const auto length = static_cast<std::size_t>(left.data() - start.data());
            if (take("&")) {
                const auto entity = left.substr(0, left.find(';'));
                if (entity.size() == left.size() || !isEntity(entity)) return std::nullopt;
            } else if (take("<![CDATA[")) {
                if (!skipPast("]]>")) return std::nullopt;
            } else if (take("<!--")) {
                if (!skipPast("-->")) return std::nullopt;
            } else {
                if (!closes(name)) return std::nullopt;
                return start.substr(0, length);
            }
        }
    }

    bool dictionary(int depth) {
        std::set<std::string_view> keys;
        for (;;) {
            const auto next = tag();
            if (!next) return false;
            if (next->kind == Tag::Kind::close) return next->name == "dict";
            if (next->kind != Tag::Kind::open || next->name != "key") return false;
            const auto key = text("key");
            if (!key) return false;
            if (!keys.insert(*key).second) repeated = true;
            const auto following = tag();
            if (!following || !value(*following, depth)) return false;
        }
    }

    bool array(int depth) {
        for (;;) {
            const auto next = tag();
            if (!next) return false;
            if (next->kind == Tag::Kind::close) return next->name == "array";
            if (!value(*next, depth)) return false;
        }
    }

    bool value(const Tag& opening, int depth) {
        if (opening.kind == Tag::Kind::close || depth > deepest) return false;
        const bool empty = opening.kind == Tag::Kind::empty;
        const auto name = opening.name;
        if (name == "true" || name == "false") return empty || closes(name);
        if (name == "dict") return empty || dictionary(depth + 1);
        if (name == "array") return empty || array(depth + 1);
        if (name == "string" || name == "data") {
            if (empty) return true;
            const auto content = text(name);
            return content && (name == "string" || isBase64(*content));
        }
        if (name != "integer" && name != "real" && name != "date") return false;
        const auto content = empty ? std::nullopt : text(name);
        if (!content) return false;
        if (name == "integer") return isInteger(*content);
        return name == "real" ? isReal(*content) : isDate(*content);
    }

    bool document() {
        take("\xEF\xBB\xBF");
        const auto list = tag();
        if (!list || list->kind != Tag::Kind::open || list->name != "plist") return false;
        const auto root = tag();
        if (!root || root->name != "dict" || !value(*root, 0) || !closes("plist")) return false;
        return skipBetweenElements() && left.empty();
    }

    std::string_view left;
    bool repeated = false;
};

} // namespace

Wholeness checkPropertyList(std::string_view text) {
    // libplist ends the process when it meets a zero byte in a text.
    if (text.find('\0') != std::string_view::npos) return Wholeness::damaged;
    return Scanner(text).scan();
}

} // namespace platform::linux
