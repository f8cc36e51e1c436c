#pragma once

#include "platform/Calendar.h"
#include "platform/calendar/Glib.h"

#include <ctime>
#include <vector>

// The alarms of one event component. An alarm's id is its place in the list.

namespace platform::calendar {

/// `start` and `end` are those of the occurrence: alarms may be counted from the end, or be at a
/// time of their own.
std::vector<CalendarAlarm> alarmsOf(ICalComponent* event, std::time_t start, std::time_t end);

/// Whether the component has just these alarms already, whatever they are written like.
bool hasAlarms(ICalComponent* event, const std::vector<CalendarAlarm>& wanted);

/// Makes the component's alarms these. One whose id is there keeps the properties that nobody asks
/// to change; it shows and sounds from then on, once, whatever it did.
void setAlarms(ICalComponent* event, const std::vector<CalendarAlarm>& wanted);

/// The text of all alarms, each line ended as the format asks for.
std::string alarmsText(ICalComponent* event);

} // namespace platform::calendar
