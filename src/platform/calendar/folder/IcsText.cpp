#include "platform/calendar/folder/IcsText.h"

#include <algorithm>

namespace platform::calendar {

namespace {

/// The end of the logical line that begins at `at`: the next ones that begin with a blank belong to
/// it.
std::size_t endOfLine(std::string_view text, std::size_t at) {
    do {
        const auto newline = text.find('\n', at);
        if (newline == std::string_view::npos) return text.size();
        at = newline + 1;
    } while (at < text.size() && (text[at] == ' ' || text[at] == '\t'));
    return at;
}

std::string capitals(std::string_view text) {
    std::string result(text);
    for (char& letter : result)
        if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    return result;
}

/// The line as one, without its folds, which may stand anywhere.
std::string unfolded(std::string_view line) {
    std::string result;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == '\r') continue;
        if (line[at] == '\n')
            ++at; // with the blank that follows
        else
            result += line[at];
    }
    return result;
}

/// What stands before the first colon or semicolon.
std::string nameOf(std::string_view line) {
    return capitals(line.substr(0, line.find_first_of(":;\r\n")));
}

/// What stands after the colon of a line BEGIN or END.
std::string componentOf(std::string_view line) {
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) return {};
    line.remove_prefix(colon + 1);
    const auto last = line.find_last_not_of(" \t\r\n");
    return capitals(line.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

} // namespace

std::optional<IcsText> IcsText::parse(std::string text, std::string& reason) {
    IcsText result;
    result.whole = std::move(text);
    result.lineEnd = result.whole.find("\r\n") == std::string::npos ? "\n" : "\r\n";
    const std::string_view whole = result.whole;
    std::vector<std::string> open;
    std::vector<std::size_t> linesOf; // of the components that are open
    std::size_t calendars = 0;
    std::size_t lines = 0;
    std::size_t end = 0;
    if (whole.size() > longest) {
        reason = "it is too long";
        return std::nullopt;
    }
    for (std::size_t begin = whole.starts_with("\xEF\xBB\xBF") ? 3 : 0; begin < whole.size();
         begin = end) {
        end = endOfLine(whole, begin);
        const std::string line = unfolded(whole.substr(begin, end - begin));
        const std::string name = nameOf(line);
        if (++lines > mostLines || (!linesOf.empty() && ++linesOf.back() > mostLinesOfOne)) {
            reason = "it has too many lines";
            return std::nullopt;
        }
        const bool inEvent = open.size() == 2 && open.back() == "VEVENT";
        if (name == "BEGIN") {
            const std::string component = componentOf(line);
            if (open.empty()) {
                if (component != "VCALENDAR" || ++calendars > 1) {
                    reason = "it is not one calendar";
                    return std::nullopt;
                }
            } else if (open.size() == 1 && component == "VEVENT") {
                result.parts.push_back(
                    {.all = {begin, end}, .endLine = {}, .properties = {}, .alarms = {}});
            } else if (inEvent && component == "VALARM") {
                result.parts.back().alarms.push_back({begin, end});
            }
            open.push_back(component);
            linesOf.push_back(0);
            if (open.size() > deepest) {
                reason = "its parts are nested too deep";
                return std::nullopt;
            }
        } else if (name == "END") {
            if (open.empty() || open.back() != componentOf(line)) {
                reason = "END:" + componentOf(line) + " has no beginning";
                return std::nullopt;
            }
            open.pop_back();
            linesOf.pop_back();
            if (inEvent) {
                result.parts.back().all.end = end;
                result.parts.back().endLine = {begin, end};
            } else if (open.size() == 2 && open.back() == "VEVENT" &&
                       componentOf(line) == "VALARM") {
                result.parts.back().alarms.back().end = end;
            }
        } else if (inEvent) {
            result.parts.back().properties.push_back({name, {begin, end}});
        }
    }
    if (!open.empty()) {
        reason = "BEGIN:" + open.back() + " has no end";
        return std::nullopt;
    }
    if (calendars == 0) {
        reason = "it is not one calendar";
        return std::nullopt;
    }
    return result;
}

std::string IcsText::withLineEnds(std::string_view lines) const {
    std::string text;
    for (const char letter : lines) {
        if (letter == '\r') continue;
        if (letter == '\n')
            text += lineEnd;
        else
            text += letter;
    }
    return text;
}

void IcsText::setAlarms(std::size_t event, std::string_view alarms) {
    const Event& part = parts[event];
    const std::size_t place = part.alarms.empty() ? part.endLine.begin : part.alarms.front().begin;
    edits.push_back({{place, place}, withLineEnds(alarms)});
    for (const Part& alarm : part.alarms)
        edits.push_back({alarm, {}});
}

void IcsText::setProperties(std::size_t event, const std::vector<std::string_view>& names,
                            std::string_view lines) {
    const Event& part = parts[event];
    std::optional<std::size_t> place;
    for (const Property& property : part.properties) {
        if (std::ranges::find(names, property.name) == names.end()) continue;
        if (!place) place = property.lines.begin;
        edits.push_back({property.lines, {}});
    }
    const std::size_t last =
        part.properties.empty() ? part.endLine.begin : part.properties.back().lines.end;
    const std::size_t at = place.value_or(last);
    edits.push_back({{at, at}, withLineEnds(lines)});
}

void IcsText::removeEvent(std::size_t event) {
    edits.push_back({parts[event].all, {}});
}

std::string IcsText::changed() const {
    auto sorted = edits;
    // What is put in at a place comes before what is taken out there.
    std::ranges::stable_sort(sorted, [](const Edit& a, const Edit& b) {
        return std::pair(a.part.begin, a.part.end) < std::pair(b.part.begin, b.part.end);
    });
    std::string text;
    std::size_t at = 0;
    for (const Edit& edit : sorted) {
        if (edit.part.begin < at) continue; // inside what has been taken out
        text.append(whole, at, edit.part.begin - at);
        text += edit.text;
        at = edit.part.end;
    }
    return text.append(whole, at);
}

} // namespace platform::calendar
