#include "platform/calendar/Recurrence.h"

#include <algorithm>
#include <cstdlib>
#include <functional>

namespace platform::calendar {

namespace {

constexpr std::time_t hour = 3600;
constexpr std::time_t day = 24 * hour;
constexpr std::time_t mostInAnHour = 12;
constexpr std::time_t mostAtAll = 1'000;
constexpr std::size_t mostSteps = 20'000; // more than fifty years of days
constexpr gint64 longestMicroseconds = 500'000;

using ByPart = gshort (*)(ICalRecurrence*, guint);

bool has(ICalRecurrence* rule, ByPart part) {
    return part(rule, 0) != I_CAL_RECURRENCE_ARRAY_MAX;
}

/// Which the rules of shorter periods than a day know without a number before them alone.
bool hasPlainDays(ICalRecurrence* rule) {
    constexpr gshort saturday = 7;
    for (guint index = 0;; ++index) {
        const gshort one = i_cal_recurrence_get_by_day(rule, index);
        if (one == I_CAL_RECURRENCE_ARRAY_MAX) return true;
        if (one < 1 || one > saturday) return false;
    }
}

/// The library looks for an occurrence until the year 2582, and a rule may have none. For one that
/// goes by hours or less that takes from half a minute to days, and nothing can interrupt it; so
/// that such a rule must be known to come true within a week.
bool comesTrueSoon(ICalRecurrence* rule) {
    const auto frequency = i_cal_recurrence_get_freq(rule);
    if (frequency == I_CAL_SECONDLY_RECURRENCE) return false;
    const bool byMinutes = frequency == I_CAL_MINUTELY_RECURRENCE;
    if (!byMinutes && frequency != I_CAL_HOURLY_RECURRENCE) return true;
    if (has(rule, i_cal_recurrence_get_by_month) || has(rule, i_cal_recurrence_get_by_month_day) ||
        has(rule, i_cal_recurrence_get_by_year_day) || has(rule, i_cal_recurrence_get_by_week_no) ||
        has(rule, i_cal_recurrence_get_by_set_pos) || !hasPlainDays(rule))
        return false;
    // Steps that are longer than what is picked from may miss it for ever.
    const int step = std::max<int>(1, i_cal_recurrence_get_interval(rule));
    const int anHour = byMinutes ? 60 : 1;
    if (byMinutes && has(rule, i_cal_recurrence_get_by_minute) && step > 1) return false;
    if (has(rule, i_cal_recurrence_get_by_hour) && step > anHour) return false;
    return !has(rule, i_cal_recurrence_get_by_day) || step <= 24 * anHour;
}

Moment momentOf(ICalComponent* event, ICalPropertyKind kind, ICalTime* (*read)(ICalProperty*),
                const Zones& zones) {
    const auto property = own(i_cal_component_get_first_property(event, kind));
    if (!property) return {};
    auto time = own(read(property.get()));
    if (!time || i_cal_time_is_null_time(time.get())) return {};
    const auto seconds = secondsOf(time.get(), zoneOf(property.get(), zones));
    return {std::move(time), seconds};
}

std::time_t lengthOf(ICalComponent* event, std::time_t start, const Zones& zones) {
    const auto end = momentOf(event, I_CAL_DTEND_PROPERTY, i_cal_property_get_dtend, zones);
    if (end.time) return std::max<std::time_t>(0, end.seconds - start);
    const auto property = own(i_cal_component_get_first_property(event, I_CAL_DURATION_PROPERTY));
    if (!property) return 0;
    const auto duration = own(i_cal_property_get_duration(property.get()));
    return duration ? std::max(0, i_cal_duration_as_int(duration.get())) : 0;
}

/// What one rule of the event is walked with.
struct Walk {
    Ref<ICalTime> start; ///< the event's, in its zone
    std::time_t startSeconds;
    std::time_t length; ///< the event's
    ICalTimezone* zone;
    Span span;
    GCancellable* stop;
    gint64 deadline;

    std::time_t earliest() const { return span.from - length - day; }
};

/// A last day counts as a whole.
void endAsTheLibraryDoes(ICalRecurrence* rule, const Walk& walk) {
    const auto until = own(i_cal_recurrence_get_until(rule));
    if (!until || i_cal_time_is_null_time(until.get())) return;
    if (!i_cal_time_is_utc(until.get())) i_cal_time_set_timezone(until.get(), walk.zone);
    if (i_cal_time_is_date(until.get()) && !i_cal_time_is_date(walk.start.get())) {
        i_cal_time_adjust(until.get(), 1, 0, 0, 0);
        i_cal_time_set_is_date(until.get(), FALSE);
        i_cal_time_set_time(until.get(), 0, 0, 0);
    }
    i_cal_recurrence_set_until(rule, until.get());
}

Oddity eachOccurrence(ICalRecurrence* rule, const Walk& walk,
                      const std::function<void(ICalTime*)>& found) {
    if (!comesTrueSoon(rule)) return Oddity::tooHard;
    endAsTheLibraryDoes(rule, walk);
    const auto iterator = own(i_cal_recur_iterator_new(rule, walk.start.get()));
    if (!iterator) return Oddity::none; // it comes true on the first day alone
    if (i_cal_recurrence_get_count(rule) == 0 && walk.earliest() > walk.startSeconds) {
        const auto begin = own(i_cal_time_new_from_timet_with_zone(
            walk.earliest(), i_cal_time_is_date(walk.start.get()), walk.zone));
        (void)i_cal_recur_iterator_set_start(iterator.get(), begin.get());
    }
    const auto most = static_cast<std::size_t>(
        std::min(((walk.span.to - walk.earliest()) / hour + 1) * mostInAnHour, mostAtAll));
    std::size_t kept = 0;
    std::time_t last = 0;
    for (std::size_t steps = 0; kept < walk.span.enough; ++steps) {
        if (g_cancellable_is_cancelled(walk.stop) != FALSE) return Oddity::stopped;
        if (steps > mostSteps || g_get_monotonic_time() > walk.deadline) return Oddity::tooHard;
        const auto next = own(i_cal_recur_iterator_next(iterator.get()));
        if (!next || i_cal_time_is_null_time(next.get())) break;
        const std::time_t seconds = secondsOf(next.get(), walk.zone);
        if (seconds > walk.span.to || (steps > 0 && seconds == last)) break;
        last = seconds;
        if (seconds < walk.earliest()) continue;
        if (++kept > most) return Oddity::tooOften;
        found(next.get());
    }
    return Oddity::none;
}

} // namespace

ICalTimezone* localZone() {
    if (const char* const named = std::getenv("TZ"); named != nullptr && *named != '\0')
        if (ICalTimezone* const zone = i_cal_timezone_get_builtin_timezone(named)) return zone;
    ICalTimezone* const system = e_cal_util_get_system_timezone();
    return system == nullptr ? i_cal_timezone_get_utc_timezone() : system;
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

Moment startOf(ICalComponent* event, const Zones& zones) {
    return momentOf(event, I_CAL_DTSTART_PROPERTY, i_cal_property_get_dtstart, zones);
}

Moment recurrenceIdOf(ICalComponent* event, const Zones& zones) {
    return momentOf(event, I_CAL_RECURRENCEID_PROPERTY, i_cal_property_get_recurrenceid, zones);
}

Unrolled unrolled(ICalComponent* event, const Zones& zones, const Span& span, GCancellable* stop) {
    Unrolled result{copyOf(event)};
    ICalComponent* const copy = result.event.get();
    auto start = startOf(copy, zones);
    if (!start.time) return result;
    const auto property = own(i_cal_component_get_first_property(copy, I_CAL_DTSTART_PROPERTY));
    ICalTimezone* const zone = i_cal_time_is_utc(start.time.get())
                                   ? i_cal_timezone_get_utc_timezone()
                                   : zoneOf(property.get(), zones);
    i_cal_time_set_timezone(start.time.get(), zone);
    const Walk walk{.start = std::move(start.time),
                    .startSeconds = start.seconds,
                    .length = lengthOf(copy, start.seconds, zones),
                    .zone = zone,
                    .span = span,
                    .stop = stop,
                    .deadline = g_get_monotonic_time() + longestMicroseconds};
    const auto replace = [&](ICalPropertyKind kind, ICalRecurrence* (*read)(ICalProperty*),
                             const std::function<void(ICalTime*)>& put) {
        for (const auto& rule : propertiesOf(copy, kind)) {
            i_cal_component_remove_property(copy, rule.get());
            const auto recurrence = own(read(rule.get()));
            if (result.oddity == Oddity::none)
                result.oddity = eachOccurrence(recurrence.get(), walk, put);
        }
    };
    replace(I_CAL_RRULE_PROPERTY, i_cal_property_get_rrule, [copy](ICalTime* time) {
        const auto when = own(i_cal_datetimeperiod_new());
        i_cal_datetimeperiod_set_time(when.get(), time);
        i_cal_component_take_property(copy, i_cal_property_new_rdate(when.get()));
    });
    replace(I_CAL_EXRULE_PROPERTY, i_cal_property_get_exrule, [copy](ICalTime* time) {
        i_cal_component_take_property(copy, i_cal_property_new_exdate(time));
    });
    return result;
}

} // namespace platform::calendar
