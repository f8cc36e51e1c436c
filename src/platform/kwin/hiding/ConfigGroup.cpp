#include "platform/kwin/hiding/ConfigGroup.h"

#include <algorithm>
#include <vector>

namespace platform::kwin {

namespace {

/// From the group's heading up to the next one; both are the end of a text without it.
struct Span {
    std::size_t from, to;
};

Span find(std::string_view text, std::string_view group) {
    const std::string heading = "[" + std::string(group) + "]";
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (text.substr(at, end - at) == heading) {
            const std::size_t next = text.find("\n[", end);
            return {at, next == std::string_view::npos ? text.size() : next + 1};
        }
        at = end + 1;
    }
    return {text.size(), text.size()};
}

/// Of "Key=value", also where it is marked ("Key[$i]=value").
std::string_view keyOf(std::string_view line) {
    const std::size_t end = std::min(line.find('='), line.find('['));
    return end == std::string_view::npos ? std::string_view() : line.substr(0, end);
}

} // namespace

std::string withValues(std::string_view text, std::string_view group,
                       const std::map<std::string, std::string>& values) {
    const Span span = find(text, group);
    const std::string_view old = text.substr(span.from, span.to - span.from);
    std::string made(text.substr(0, span.from)), rest;
    if (old.empty()) {
        if (!made.empty()) made += made.back() == '\n' ? "\n" : "\n\n";
        made += "[" + std::string(group) + "]\n";
    }
    for (std::size_t at = 0; at < old.size();) {
        const std::size_t end = std::min(old.find('\n', at), old.size() - 1) + 1;
        const std::string_view line = old.substr(at, end - at);
        if (at == 0) {
            made += line;
            if (!line.ends_with('\n')) made += '\n';
        } else if (!values.contains(std::string(keyOf(line)))) {
            rest += line;
        }
        at = end;
    }
    for (const auto& [key, value] : values)
        made.append(key).append("=").append(value).append("\n");
    return made.append(rest).append(text.substr(span.to));
}

std::string withGroupOf(std::string_view text, std::string_view group, std::string_view other) {
    const Span here = find(text, group), there = find(other, group);
    std::string made(text.substr(0, here.from));
    made += other.substr(there.from, there.to - there.from);
    return made.append(text.substr(here.to));
}

} // namespace platform::kwin
