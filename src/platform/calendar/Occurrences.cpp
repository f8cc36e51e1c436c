#include "platform/calendar/Occurrences.h"

#include <algorithm>
#include <set>

namespace platform::calendar {

namespace {

Ref<ICalTime> utc(std::time_t time) {
    return own(i_cal_time_new_from_timet_with_zone(time, FALSE, i_cal_timezone_get_utc_timezone()));
}

/// Of an instance that the library has generated.
std::time_t instanceSeconds(ICalTime* time, const Zones& zones) {
    ICalTimezone* const zone = i_cal_time_get_timezone(time);
    return secondsOf(time, zone == nullptr ? zones.local : zone);
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
    if (!hasPartIn(made, into.from, into.to) || into.replaced.contains(made.start)) return TRUE;
    if (isRecurring(into.component)) made.id = take(i_cal_time_as_ical_string(start));
    into.found.push_back(std::move(made));
    return TRUE;
}

Oddity generate(Collector& into, const Zones& zones, GCancellable* stop) {
    const bool hasRules = isRecurring(into.component) && !isDetached(into.component);
    const Unrolled event = hasRules ? unrolled(into.component, zones, {into.from, into.to}, stop)
                                    : Unrolled{share(into.component)};
    if (event.oddity != Oddity::none) return event.oddity;
    // The end of the span is not in it, and an event without length at its beginning is.
    const auto begin = utc(into.from - 1);
    const auto end = utc(into.to + 1);
    e_cal_recur_generate_instances_sync(event.event.get(), begin.get(), end.get(), collect, &into,
                                        zones.lookUp, zones.data, zones.local, stop, nullptr);
    return g_cancellable_is_cancelled(stop) != FALSE ? Oddity::stopped : Oddity::none;
}

/// Whether one begins from `from` on, before `to`.
bool hasInstance(ICalComponent* event, const Zones& zones, std::time_t from, std::time_t to) {
    struct Earlier {
        std::time_t limit;
        const Zones& zones;
        bool found = false;
    } earlier{to, zones};
    const auto look = [](ICalComponent*, ICalTime* start, ICalTime*, gpointer data, GCancellable*,
                         GError**) -> gboolean {
        auto& into = *static_cast<Earlier*>(data);
        into.found = instanceSeconds(start, into.zones) < into.limit;
        return FALSE;
    };
    const auto begin = utc(from - 1);
    const auto end = utc(to);
    e_cal_recur_generate_instances_sync(event, begin.get(), end.get(), look, &earlier, zones.lookUp,
                                        zones.data, zones.local, nullptr, nullptr);
    return earlier.found;
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

std::string uidOf(ICalComponent* event) {
    return textOr(i_cal_component_get_uid(event), "");
}

bool isRecurring(ICalComponent* event) {
    return e_cal_util_component_has_recurrences(event) != FALSE;
}

bool isDetached(ICalComponent* event) {
    return e_cal_util_component_is_instance(event) != FALSE;
}

bool hasOtherPeople(ICalComponent* event) {
    return own(i_cal_component_get_first_property(event, I_CAL_ATTENDEE_PROPERTY)) ||
           own(i_cal_component_get_first_property(event, I_CAL_ORGANIZER_PROPERTY));
}

std::string propertyText(ICalComponent* event, const std::vector<ICalPropertyKind>& kinds) {
    std::string text;
    for (const ICalPropertyKind kind : kinds)
        for (const auto& property : propertiesOf(event, kind))
            text += take(i_cal_property_as_ical_string(property.get()));
    return text;
}

std::string rulesOf(ICalComponent* event) {
    return propertyText(event, {I_CAL_RRULE_PROPERTY, I_CAL_RDATE_PROPERTY, I_CAL_EXDATE_PROPERTY,
                                I_CAL_EXRULE_PROPERTY});
}

bool hasPartIn(const Occurrence& occurrence, std::time_t from, std::time_t to) {
    const auto [start, end] = std::pair(occurrence.start, occurrence.end);
    return start <= to && (end > from || (end == start && start >= from));
}

Expansion occurrencesBetween(const Series& series, const Zones& zones, std::time_t from,
                             std::time_t to, GCancellable* stop) {
    Expansion result;
    auto& found = result.occurrences;
    std::set<std::time_t> replaced;
    for (const Component& event : series.detached) {
        const auto id = recurrenceIdOf(event.get(), zones);
        if (id.time) replaced.insert(id.seconds);
    }
    if (series.master) {
        Collector into{found, zones, series.master.get(), replaced, from, to};
        result.oddity = generate(into, zones, stop);
        if (result.oddity != Oddity::none) return {{}, result.oddity};
    }
    const std::set<std::time_t> none;
    for (const Component& event : series.detached) {
        const std::size_t before = found.size();
        Collector into{found, zones, event.get(), none, from, to};
        result.oddity = generate(into, zones, stop);
        if (result.oddity != Oddity::none) return {{}, result.oddity};
        for (std::size_t index = before; index < found.size(); ++index) {
            found[index].detached = true;
            const auto id = recurrenceIdOf(event.get(), zones);
            if (id.time) found[index].id = take(i_cal_time_as_ical_string(id.time.get()));
        }
    }
    std::ranges::stable_sort(found, {}, &Occurrence::start);
    return result;
}

bool isWhole(const Occurrence& occurrence, const Zones& zones) {
    ICalComponent* const master = occurrence.component;
    if (occurrence.detached || !isRecurring(master)) return true;
    const auto start = startOf(master, zones);
    if (!start.time || occurrence.start <= start.seconds) return true;
    // Nearly always the first day is there. More than so many are hardly all taken out: then it is
    // cut, and nothing comes before.
    for (const std::size_t enough : {1, 200}) {
        const Unrolled event =
            unrolled(master, zones, {start.seconds, occurrence.start - 1, enough}, nullptr);
        if (event.oddity != Oddity::none) return false;
        if (hasInstance(event.event.get(), zones, start.seconds, occurrence.start)) return false;
    }
    return true;
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
