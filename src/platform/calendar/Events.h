#pragma once

#include "platform/Calendar.h"
#include "platform/calendar/Occurrences.h"

// Between the library's events and the service's.

namespace platform::calendar {

/// `now` is what the event's start is counted from.
CalendarEvent eventOf(const Occurrence& occurrence, const std::string& where, std::time_t now);

/// Whether an earlier occurrence was saved, and this one with it.
bool isCovered(const Series& series, const CalendarEvent& event, std::time_t now);

} // namespace platform::calendar
