#include "platform/calendar/Events.h"

#include "platform/calendar/Alarms.h"

namespace platform::calendar {

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
