#pragma once

#include "platform/calendar/Glib.h"

#include <cstddef>
#include <ctime>
#include <limits>

// What the rules of an event come to, within bounds: an event may have been made by anybody.

namespace platform::calendar {

/// What resolves the names of time zones. `local` is for days and for times without a zone.
struct Zones {
    ECalRecurResolveTimezoneCb lookUp = nullptr;
    void* data = nullptr;
    ICalTimezone* local = nullptr;
};

/// The zone of the session: of TZ where it names one, else of the system. Owned by the library.
ICalTimezone* localZone();

/// The zone of a property's time.
ICalTimezone* zoneOf(ICalProperty* property, const Zones& zones);

/// A time without a zone of its own is one of `zone`.
std::time_t secondsOf(ICalTime* time, ICalTimezone* zone);

/// The time of a property that the event has once, and what was read of it.
struct Moment {
    Ref<ICalTime> time;
    std::time_t seconds = 0;
};
Moment startOf(ICalComponent* event, const Zones& zones);
Moment recurrenceIdOf(ICalComponent* event, const Zones& zones);

struct Span {
    std::time_t from = 0;
    std::time_t to = 0;
    std::size_t enough = std::numeric_limits<std::size_t>::max(); ///< occurrences of a rule
};

/// Why it is not known when an event is.
enum class Oddity { none, tooOften, tooHard, stopped };

struct Unrolled {
    Component event;
    Oddity oddity = Oddity::none;
};

/// A copy of the event with the days in its rules' place that they come to in the span, as far as
/// any part of them may lie in it. Rules are looked at from the span's beginning on, unless they
/// count. Ends within half a second, and soon after `stop` is cancelled from another thread.
Unrolled unrolled(ICalComponent* event, const Zones& zones, const Span& span, GCancellable* stop);

} // namespace platform::calendar
