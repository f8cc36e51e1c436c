#pragma once

#include "platform/Calendar.h"
#include "platform/calendar/Occurrences.h"

#include <functional>

// Between the library's events and the service's.

namespace platform::calendar {

using Now = std::function<std::time_t()>;

// Why an event is not saved.
constexpr const char* changedMeanwhile = "the event was changed meanwhile";
constexpr const char* noSuchEvent = "there is no such event";
constexpr const char* cannotBeCut = "the event cannot be cut in two";

constexpr const char* cannotBeJournalled = "that the event is cut in two cannot be written down";

/// Behind the name of a series that `mayBeSaved` refuses.
constexpr const char* keepsItsAlarms =
    " keeps its alarms: others take part in it, and for them it would become two events";

/// For the log; null for none that is worth a word.
const char* nameOf(Oddity oddity);

/// Others are never told of a second event.
bool mayBeSaved(const Occurrence& occurrence, const Zones& zones);

/// `now` is what the event's start is counted from.
CalendarEvent eventOf(const Occurrence& occurrence, const std::string& where, std::time_t now);

/// Whether an earlier occurrence was saved, and this one with it.
bool isCovered(const Series& series, const CalendarEvent& event, std::time_t now);

} // namespace platform::calendar
