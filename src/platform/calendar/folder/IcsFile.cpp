#include "platform/calendar/folder/IcsFile.h"

#include "platform/calendar/Alarms.h"

#include <algorithm>
#include <set>

namespace platform::calendar {

namespace {

// What tells which days an event recurs on.
const std::vector<std::string_view> ruleNames = {"RRULE", "RDATE", "EXDATE", "EXRULE"};

ICalTimezone* lookUpZone(const gchar* name, gpointer data, GCancellable*, GError**) {
    if (ICalTimezone* const known = e_cal_client_tzlookup_icalcomp_cb(name, data, nullptr, nullptr))
        return known;
    return i_cal_timezone_get_builtin_timezone(name);
}

/// Properties of a name that the parser does not know are no harm, and neither are those without a
/// value, as many programs write "LOCATION:": they stay as they are.
bool hasBadValue(ICalComponent* component) {
    for (const auto& error : propertiesOf(component, I_CAL_XLICERROR_PROPERTY)) {
        if (textOr(i_cal_property_get_xlicerror(error.get()), "").starts_with("No value for "))
            continue;
        const auto type =
            own(i_cal_property_get_first_parameter(error.get(), I_CAL_XLICERRORTYPE_PARAMETER));
        if (!type ||
            i_cal_parameter_get_xlicerrortype(type.get()) != I_CAL_XLICERRORTYPE_PROPERTYPARSEERROR)
            return true;
    }
    return std::ranges::any_of(componentsOf(component, I_CAL_ANY_COMPONENT),
                               [](const Component& part) { return hasBadValue(part.get()); });
}

} // namespace

IcsFile::IcsFile(std::string text) {
    lines = IcsText::parse(std::move(text), reason);
    if (!lines) return;
    if (lines->events().empty()) return; // tasks and the like
    calendar = own(i_cal_parser_parse_string(lines->text().c_str()));
    if (!calendar || i_cal_component_isa(calendar.get()) != I_CAL_VCALENDAR_COMPONENT) {
        reason = "it cannot be understood";
        return;
    }
    ownZones.reset(e_cal_client_tzlookup_icalcomp_data_new(calendar.get()));
    if (hasBadValue(calendar.get())) reason = "it has a value that cannot be understood";
    events = componentsOf(calendar.get(), I_CAL_VEVENT_COMPONENT);
    sortOut();
    if (events.size() != lines->events().size() && reason.empty())
        reason = "it cannot be understood";
}

IcsFile IcsFile::withProblem(std::string problem) {
    IcsFile file;
    file.reason = std::move(problem);
    return file;
}

void IcsFile::sortOut() {
    std::set<std::string> ids;
    for (const Component& event : events) {
        const auto start = own(i_cal_component_get_dtstart(event.get()));
        if (uidOf(event.get()).empty()) reason = "it has an event without a UID";
        if (!start || i_cal_time_is_null_time(start.get()))
            reason = "it has an event without a start";
        ids.insert(uidOf(event.get()));
        if (isDetached(event.get()))
            ownSeries.detached.push_back(share(event.get()));
        else if (ownSeries.master)
            reason = "it holds more than one event";
        else
            ownSeries.master = share(event.get());
    }
    if (ids.size() > 1) reason = "it holds more than one event";
}

const std::string& IcsFile::text() const {
    static const std::string none;
    return lines ? lines->text() : none;
}

Zones IcsFile::zones(ICalTimezone* local) const {
    return {lookUpZone, ownZones.get(), local};
}

std::size_t IcsFile::placeOf(ICalComponent* event) const {
    const auto found =
        std::ranges::find(events, event, [](const Component& one) { return one.get(); });
    return static_cast<std::size_t>(found - events.begin());
}

std::string IcsFile::withAlarms(ICalComponent* event,
                                const std::vector<CalendarAlarm>& alarms) const {
    const Component changed = copyOf(event);
    setAlarms(changed.get(), alarms);
    IcsText result = *lines;
    result.setAlarms(placeOf(event), alarmsText(changed.get()));
    return result.changed();
}

std::optional<IcsFile::Halves> IcsFile::cutAt(const Occurrence& occurrence,
                                              const std::vector<CalendarAlarm>& alarms,
                                              const Zones& zones) const {
    const platform::calendar::Halves halves =
        platform::calendar::cutAt(ownSeries, occurrence, zones);
    if (!halves.after) return std::nullopt;
    setAlarms(halves.after.get(), alarms);
    const std::string uid = propertyText(halves.after.get(), {I_CAL_UID_PROPERTY});

    IcsText before = *lines;
    IcsText after = *lines;
    for (std::size_t place = 0; place < events.size(); ++place) {
        ICalComponent* const event = events[place].get();
        const bool isMaster = event == ownSeries.master.get();
        const bool moves =
            std::ranges::find(halves.movedDetached, event) != halves.movedDetached.end();
        if (moves) before.removeEvent(place);
        if (isMaster || moves)
            after.setProperties(place, {"UID"}, uid);
        else
            after.removeEvent(place);
        if (!isMaster) continue;
        before.setProperties(place, ruleNames, rulesOf(halves.before.get()));
        after.setProperties(place, ruleNames, rulesOf(halves.after.get()));
        after.setProperties(place, {"DTSTART"},
                            propertyText(halves.after.get(), {I_CAL_DTSTART_PROPERTY}));
        after.setProperties(place, {"DTEND"},
                            propertyText(halves.after.get(), {I_CAL_DTEND_PROPERTY}));
        after.setAlarms(place, alarmsText(halves.after.get()));
    }
    return Halves{before.changed(), after.changed(), uidOf(halves.after.get())};
}

} // namespace platform::calendar
