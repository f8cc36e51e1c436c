#pragma once

#include "platform/calendar/Recurrence.h"

#include <ctime>
#include <string>
#include <vector>

// When events are, and where a recurring one can be cut in two.

namespace platform::calendar {

/// An event, or a recurring one with the occurrences that were changed by themselves.
struct Series {
    Component master; ///< may be missing where only a changed occurrence was sent
    std::vector<Component> detached;
    std::time_t savedFrom = 0; ///< of a recurring one: what begins then or later is saved already
};

struct Occurrence {
    ICalComponent* component = nullptr; ///< the series'
    std::string id{};                   ///< empty for a single event
    std::time_t start = 0;
    std::time_t end = 0;
    bool detached = false;
    Ref<ICalTime> when{}; ///< as the component writes its start
};

std::string uidOf(ICalComponent* event);
bool isRecurring(ICalComponent* event);
bool isDetached(ICalComponent* event);
/// Whether it is an invitation, or others are invited to it.
bool hasOtherPeople(ICalComponent* event);

/// The lines of the event's properties of those kinds, each ended.
std::string propertyText(ICalComponent* event, const std::vector<ICalPropertyKind>& kinds);
/// Of those that tell which days it recurs on: RRULE, RDATE, EXDATE and EXRULE.
std::string rulesOf(ICalComponent* event);

/// An event without length has its part where it begins.
bool hasPartIn(const Occurrence& occurrence, std::time_t from, std::time_t to);

struct Expansion {
    std::vector<Occurrence> occurrences; ///< in the order of their start; none of an odd series
    Oddity oddity = Oddity::none;
};

/// What has a part in the span. The series must outlive the result. Bounded as `unrolled` is.
Expansion occurrencesBetween(const Series& series, const Zones& zones, std::time_t from,
                             std::time_t to, GCancellable* stop);

/// Whether to change it and what follows is to change its whole component: nothing comes before.
bool isWhole(const Occurrence& occurrence, const Zones& zones);

struct Halves {
    Component before; ///< what ends ahead of the occurrence, under the old UID
    Component after;  ///< what begins with it, under a new one
    std::vector<ICalComponent*> movedDetached; ///< those of the later half; they keep the old UID
};

Halves cutAt(const Series& series, const Occurrence& occurrence, const Zones& zones);

} // namespace platform::calendar
