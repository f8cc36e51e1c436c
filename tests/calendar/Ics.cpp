#include "calendar/Ics.h"

namespace calendartests {

std::string stamp(std::time_t time, bool utc) {
    std::tm parts{};
    if (utc)
        ::gmtime_r(&time, &parts);
    else
        ::localtime_r(&time, &parts);
    char text[32];
    const auto length =
        std::strftime(text, sizeof text, utc ? "%Y%m%dT%H%M%SZ" : "%Y%m%dT%H%M%S", &parts);
    return {text, length};
}

namespace {

std::string withWindowsEnds(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        if (letter == '\n') result += '\r';
        result += letter;
    }
    return result;
}

} // namespace

std::string valarm(const Alarm& alarm) {
    const bool acts = alarm.more.find("ACTION:") != std::string::npos;
    return "BEGIN:VALARM\n" + std::string(acts ? "" : "ACTION:DISPLAY\n") +
           "DESCRIPTION:Soon\nTRIGGER" + (alarm.trigger[0] == ';' ? "" : ":") + alarm.trigger +
           "\n" + alarm.more + "END:VALARM\n";
}

std::string vevent(const std::string& uid, const std::string& lines,
                   const std::vector<Alarm>& alarms) {
    std::string text = "BEGIN:VEVENT\nUID:" + uid + "\nDTSTAMP:20260901T100000Z\n" + lines +
                       "SUMMARY:A meeting\nX-KEPT;X-ODD=\"a,b\":as it is\n";
    for (const Alarm& alarm : alarms)
        text += valarm(alarm);
    return text + "END:VEVENT\n";
}

std::string vcalendar(const std::string& components) {
    return withWindowsEnds("BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//Tests//EN\n" + components +
                           "END:VCALENDAR\n");
}

std::string partOf(const std::string& text, const std::string& begin, const std::string& end) {
    const auto from = text.find(begin);
    if (from == std::string::npos) return {};
    const auto to = text.find(end, from);
    if (to == std::string::npos) return {};
    return text.substr(from, to + end.size() - from);
}

std::string withoutAlarms(std::string text) {
    const std::string begin = "BEGIN:VALARM", end = "END:VALARM\r\n";
    for (auto from = text.find(begin); from != std::string::npos; from = text.find(begin))
        text.erase(from, text.find(end, from) + end.size() - from);
    return text;
}

std::size_t count(const std::string& text, const std::string& what) {
    std::size_t found = 0;
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
        ++found;
    return found;
}

std::string valueOf(const std::string& text, const std::string& property) {
    std::string joined = text;
    for (auto at = joined.find("\r\n "); at != std::string::npos; at = joined.find("\r\n "))
        joined.erase(at, 3);
    for (const char after : {':', ';'}) {
        const auto name = "\n" + property + after;
        const auto from = joined.find(name);
        if (from == std::string::npos) continue;
        const auto begin = from + name.size();
        return joined.substr(begin, joined.find_first_of("\r\n", begin) - begin);
    }
    return {};
}

} // namespace calendartests
