#pragma once

#include "platform/calendar/Glib.h"

#include <ctime>
#include <string>
#include <vector>

// When events are, and where a recurring one can be cut in two.

namespace platform::calendar {

/// What resolves the names of time zones. `local` is for days and for times without a zone.
struct Zones {
    ECalRecurResolveTimezoneCb lookUp = nullptr;
    void* data = nullptr;
    ICalTimezone* local = nullptr;
};

/// The zone of the session: of TZ where it names one, else of the system. Owned by the library.
ICalTimezone* localZone();

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

/// What has a part in the span; an event without length has one where it begins. The series must
/// outlive the result. In the order of their start.
std::vector<Occurrence> occurrencesBetween(const Series& series, const Zones& zones,
                                           std::time_t from, std::time_t to);

/// Whether to change it and what follows is to change its whole component: nothing comes before.
bool isWhole(const Occurrence& occurrence, const Zones& zones);

struct Halves {
    Component before; ///< what ends ahead of the occurrence, under the old UID
    Component after;  ///< what begins with it, under a new one
    std::vector<ICalComponent*> movedDetached; ///< those of the later half; they keep the old UID
};

Halves cutAt(const Series& series, const Occurrence& occurrence, const Zones& zones);

} // namespace platform::calendar
