#pragma once

#include <ctime>
#include <string>
#include <vector>

// Calendar text for tests.

namespace calendartests {

/// "20261025T030000Z", or without the Z and in local time.
std::string stamp(std::time_t time, bool utc = true);

struct Alarm {
    std::string trigger = "-PT15M";
    std::string more{}; ///< further lines, each ended
};
std::string valarm(const Alarm& alarm);

/// One event; `lines` holds its times and rules, each line ended.
std::string vevent(const std::string& uid, const std::string& lines,
                   const std::vector<Alarm>& alarms = {});
/// A whole calendar with Windows line ends, as the format asks for.
std::string vcalendar(const std::string& components);

/// The part of a text from `begin` to `end`, both included; empty where they are not there.
std::string partOf(const std::string& text, const std::string& begin, const std::string& end);
std::string withoutAlarms(std::string text);
std::size_t count(const std::string& text, const std::string& what);

/// The value of the one property of that name, with folded lines joined; "" for none.
std::string valueOf(const std::string& text, const std::string& property);

} // namespace calendartests
