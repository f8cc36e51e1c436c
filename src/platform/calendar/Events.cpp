#include "platform/calendar/Events.h"

#include "platform/calendar/Alarms.h"

namespace platform::calendar {

const char* nameOf(Oddity oddity) {
    switch (oddity) {
    case Oddity::tooOften:
        return "it recurs too often";
    case Oddity::tooHard:
        return "it recurs by a rule that is too hard to follow";
    case Oddity::none:
    case Oddity::stopped:
        break;
    }
    return nullptr;
}

bool mayBeSaved(const Occurrence& occurrence, const Zones& zones) {
    return occurrence.detached || !hasOtherPeople(occurrence.component) ||
           isWhole(occurrence, zones);
}

CalendarEvent eventOf(const Occurrence& occurrence, const std::string& where, std::time_t now) {
    return {.id = uidOf(occurrence.component),
            .calendar = where,
            .occurrence = occurrence.id,
            .start = static_cast<double>(occurrence.start - now),
            .recurring = occurrence.detached || isRecurring(occurrence.component),
            .detached = occurrence.detached,
            .alarms = alarmsOf(occurrence.component, occurrence.start, occurrence.end)};
}

bool isCovered(const Series& series, const CalendarEvent& event, std::time_t now) {
    return series.savedFrom != 0 && !event.detached &&
           now + static_cast<std::time_t>(event.start) >= series.savedFrom;
}

} // namespace platform::calendar
