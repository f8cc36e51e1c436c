#include "platform/calendar/Occurrences.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace platform::calendar {

namespace {

Ref<ICalTime> utc(std::time_t time) {
    return own(i_cal_time_new_from_timet_with_zone(time, FALSE, i_cal_timezone_get_utc_timezone()));
}

ICalTimezone* zoneOf(ICalProperty* property, const Zones& zones) {
    const auto parameter = own(i_cal_property_get_first_parameter(property, I_CAL_TZID_PARAMETER));
    if (!parameter) return zones.local;
    ICalTimezone* const found =
        zones.lookUp(i_cal_parameter_get_tzid(parameter.get()), zones.data, nullptr, nullptr);
    return found == nullptr ? zones.local : found;
}

std::time_t secondsOf(ICalTime* time, ICalTimezone* zone) {
    if (i_cal_time_is_utc(time)) zone = i_cal_timezone_get_utc_timezone();
    return i_cal_time_as_timet_with_zone(time, zone);
}

/// Of an instance that the library has generated.
std::time_t instanceSeconds(ICalTime* time, const Zones& zones) {
    ICalTimezone* const zone = i_cal_time_get_timezone(time);
    return secondsOf(time, zone == nullptr ? zones.local : zone);
}

/// The time of a property that the event has once, and what was read of it.
struct Moment {
    Ref<ICalTime> time;
    std::time_t seconds = 0;
};

Moment momentOf(ICalComponent* event, ICalPropertyKind kind, ICalTime* (*read)(ICalProperty*),
                const Zones& zones) {
    const auto property = own(i_cal_component_get_first_property(event, kind));
    if (!property) return {};
    auto time = own(read(property.get()));
    if (!time || i_cal_time_is_null_time(time.get())) return {};
    const auto seconds = secondsOf(time.get(), zoneOf(property.get(), zones));
    return {std::move(time), seconds};
}

Moment startOf(ICalComponent* event, const Zones& zones) {
    return momentOf(event, I_CAL_DTSTART_PROPERTY, i_cal_property_get_dtstart, zones);
}

Moment recurrenceIdOf(ICalComponent* event, const Zones& zones) {
    return momentOf(event, I_CAL_RECURRENCEID_PROPERTY, i_cal_property_get_recurrenceid, zones);
}

bool lies(std::time_t start, std::time_t end, std::time_t from, std::time_t to) {
    return start <= to && (end > from || (end == start && start >= from));
}

struct Collector {
    std::vector<Occurrence>& found;
    const Zones& zones;
    ICalComponent* component;
    const std::set<std::time_t>& replaced;
    std::time_t from, to;
};

gboolean collect(ICalComponent*, ICalTime* start, ICalTime* end, gpointer data, GCancellable*,
                 GError**) {
    auto& into = *static_cast<Collector*>(data);
    Occurrence made{.component = into.component,
                    .start = instanceSeconds(start, into.zones),
                    .when = own(i_cal_time_clone(start))};
    made.end = std::max(made.start, instanceSeconds(end, into.zones));
    if (!lies(made.start, made.end, into.from, into.to) || into.replaced.contains(made.start))
        return TRUE;
    if (isRecurring(into.component)) made.id = take(i_cal_time_as_ical_string(start));
    into.found.push_back(std::move(made));
    return TRUE;
}

void generate(Collector& into, const Zones& zones) {
    // The end of the span is not in it, and an event without length at its beginning is.
    const auto begin = utc(into.from - 1);
    const auto end = utc(into.to + 1);
    e_cal_recur_generate_instances_sync(into.component, begin.get(), end.get(), collect, &into,
                                        zones.lookUp, zones.data, zones.local, nullptr, nullptr);
}

void setTime(ICalComponent* event, ICalPropertyKind kind, void (*write)(ICalProperty*, ICalTime*),
             ICalTime* time) {
    const auto property = own(i_cal_component_get_first_property(event, kind));
    if (property) write(property.get(), time);
}

/// The library writes its own names for zones, which are not those that the event's calendar has.
void nameZoneAs(ICalComponent* model, ICalComponent* event, ICalPropertyKind kind) {
    const auto from = own(i_cal_component_get_first_property(model, kind));
    const auto to = own(i_cal_component_get_first_property(event, kind));
    if (!from || !to) return;
    i_cal_property_remove_parameter_by_kind(to.get(), I_CAL_TZID_PARAMETER);
    const auto zone = own(i_cal_property_get_first_parameter(from.get(), I_CAL_TZID_PARAMETER));
    if (zone)
        i_cal_property_take_parameter(
            to.get(), i_cal_parameter_new_tzid(i_cal_parameter_get_tzid(zone.get())));
}

} // namespace

ICalTimezone* localZone() {
    if (const char* const named = std::getenv("TZ"); named != nullptr && *named != '\0')
        if (ICalTimezone* const zone = i_cal_timezone_get_builtin_timezone(named)) return zone;
    ICalTimezone* const system = e_cal_util_get_system_timezone();
    return system == nullptr ? i_cal_timezone_get_utc_timezone() : system;
}

std::string uidOf(ICalComponent* event) {
    return textOr(i_cal_component_get_uid(event), "");
}

bool isRecurring(ICalComponent* event) {
    return e_cal_util_component_has_recurrences(event) != FALSE;
}

bool isDetached(ICalComponent* event) {
    return e_cal_util_component_is_instance(event) != FALSE;
}

std::vector<Occurrence> occurrencesBetween(const Series& series, const Zones& zones,
                                           std::time_t from, std::time_t to) {
    std::vector<Occurrence> found;
    std::set<std::time_t> replaced;
    for (const Component& event : series.detached) {
        const auto id = recurrenceIdOf(event.get(), zones);
        if (id.time) replaced.insert(id.seconds);
    }
    if (series.master) {
        Collector into{found, zones, series.master.get(), replaced, from, to};
        generate(into, zones);
    }
    const std::set<std::time_t> none;
    for (const Component& event : series.detached) {
        const std::size_t before = found.size();
        Collector into{found, zones, event.get(), none, from, to};
        generate(into, zones);
        for (std::size_t index = before; index < found.size(); ++index) {
            found[index].detached = true;
            const auto id = recurrenceIdOf(event.get(), zones);
            if (id.time) found[index].id = take(i_cal_time_as_ical_string(id.time.get()));
        }
    }
    std::ranges::stable_sort(found, {}, &Occurrence::start);
    return found;
}

bool isWhole(const Occurrence& occurrence, const Zones& zones) {
    ICalComponent* const master = occurrence.component;
    if (occurrence.detached || !isRecurring(master)) return true;
    const auto start = startOf(master, zones);
    if (!start.time || occurrence.start <= start.seconds) return true;
    struct Earlier {
        std::time_t limit;
        const Zones& zones;
        bool found = false;
    } earlier{occurrence.start, zones};
    const auto look = [](ICalComponent*, ICalTime* begin, ICalTime*, gpointer data, GCancellable*,
                         GError**) -> gboolean {
        auto& into = *static_cast<Earlier*>(data);
        into.found = instanceSeconds(begin, into.zones) < into.limit;
        return FALSE;
    };
    const auto begin = utc(start.seconds - 1);
    const auto end = utc(occurrence.start);
    e_cal_recur_generate_instances_sync(master, begin.get(), end.get(), look, &earlier,
                                        zones.lookUp, zones.data, zones.local, nullptr, nullptr);
    return !earlier.found;
}

Halves cutAt(const Series& series, const Occurrence& occurrence, const Zones& zones) {
    ICalComponent* const master = series.master.get();
    const auto masterStart = own(i_cal_component_get_dtstart(master));
    const auto masterEnd = own(i_cal_component_get_dtend(master));

    const Component instance = copyOf(master);
    setTime(instance.get(), I_CAL_DTSTART_PROPERTY, i_cal_property_set_dtstart,
            occurrence.when.get());
    const auto length = own(i_cal_time_subtract(masterEnd.get(), masterStart.get()));
    const auto end = own(i_cal_time_add(occurrence.when.get(), length.get()));
    setTime(instance.get(), I_CAL_DTEND_PROPERTY, i_cal_property_set_dtend, end.get());

    Halves halves;
    halves.before = copyOf(master);
    e_cal_util_remove_instances_ex(halves.before.get(), occurrence.when.get(),
                                   E_CAL_OBJ_MOD_THIS_AND_FUTURE, zones.lookUp, zones.data);
    halves.after = own(e_cal_util_split_at_instance_ex(
        instance.get(), occurrence.when.get(), masterStart.get(), zones.lookUp, zones.data));
    if (!halves.after) return halves;
    for (const auto kind : {I_CAL_DTSTART_PROPERTY, I_CAL_DTEND_PROPERTY})
        nameZoneAs(master, halves.after.get(), kind);
    i_cal_component_set_uid(halves.after.get(), take(e_util_generate_uid()).c_str());
    for (const Component& event : series.detached) {
        const auto id = recurrenceIdOf(event.get(), zones);
        if (id.time && id.seconds >= occurrence.start) halves.movedDetached.push_back(event.get());
    }
    return halves;
}

} // namespace platform::calendar
