#include "platform/calendar/Folder.h"

#include "platform/calendar/Alarms.h"
#include "platform/calendar/Events.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>

namespace platform::calendar {

namespace fs = std::filesystem;

namespace {

// What tells which days an event recurs on.
const std::vector<std::string_view> ruleNames = {"RRULE", "RDATE", "EXDATE", "EXRULE"};
const std::vector<ICalPropertyKind> rules = {I_CAL_RRULE_PROPERTY, I_CAL_RDATE_PROPERTY,
                                             I_CAL_EXDATE_PROPERTY, I_CAL_EXRULE_PROPERTY};

ICalTimezone* lookUpZone(const gchar* name, gpointer data, GCancellable*, GError**) {
    if (ICalTimezone* const known = e_cal_client_tzlookup_icalcomp_cb(name, data, nullptr, nullptr))
        return known;
    return i_cal_timezone_get_builtin_timezone(name);
}

std::vector<std::string> fileNames(const std::string& folder, std::error_code& error) {
    std::vector<std::string> names;
    auto entry = fs::directory_iterator(folder, error);
    for (; !error && entry != fs::directory_iterator{}; entry.increment(error))
        if (entry->path().extension() == ".ics" &&
            !entry->path().filename().string().starts_with('.'))
            names.push_back(entry->path().filename());
    std::ranges::sort(names);
    return names;
}

/// Properties of a name that the parser does not know are no harm: they stay as they are.
bool hasBadValue(ICalComponent* component) {
    for (const auto& error : propertiesOf(component, I_CAL_XLICERROR_PROPERTY)) {
        const auto type =
            own(i_cal_property_get_first_parameter(error.get(), I_CAL_XLICERRORTYPE_PARAMETER));
        if (!type ||
            i_cal_parameter_get_xlicerrortype(type.get()) != I_CAL_XLICERRORTYPE_PROPERTYPARSEERROR)
            return true;
    }
    return std::ranges::any_of(componentsOf(component, I_CAL_ANY_COMPONENT),
                               [](const Component& part) { return hasBadValue(part.get()); });
}

std::string propertyText(ICalComponent* event, const std::vector<ICalPropertyKind>& kinds) {
    std::string text;
    for (const ICalPropertyKind kind : kinds)
        for (const auto& property : propertiesOf(event, kind))
            text += take(i_cal_property_as_ical_string(property.get()));
    return text;
}

} // namespace

Folder::Folder(std::string folder, Now clock) : path(std::move(folder)), now(std::move(clock)) {}

Opened Folder::open() {
    std::error_code error;
    (void)fileNames(path, error);
    if (!error) return {};
    return {Refusal::noFolder,
            "the calendar folder " + path + " cannot be read: " + error.message()};
}

void Folder::read(File& file, std::string text) {
    file.text = IcsText::parse(std::move(text), file.problem);
    if (!file.text) return;
    if (file.text->events().empty()) return; // tasks and the like
    file.calendar = own(i_cal_parser_parse_string(file.text->text().c_str()));
    if (!file.calendar || i_cal_component_isa(file.calendar.get()) != I_CAL_VCALENDAR_COMPONENT) {
        file.problem = "it cannot be understood";
        return;
    }
    file.zones.reset(e_cal_client_tzlookup_icalcomp_data_new(file.calendar.get()));
    if (hasBadValue(file.calendar.get())) file.problem = "it has a value that cannot be understood";
    std::set<std::string> ids;
    file.events = componentsOf(file.calendar.get(), I_CAL_VEVENT_COMPONENT);
    for (const Component& event : file.events) {
        const auto start = own(i_cal_component_get_dtstart(event.get()));
        if (uidOf(event.get()).empty()) file.problem = "it has an event without a UID";
        if (!start || i_cal_time_is_null_time(start.get()))
            file.problem = "it has an event without a start";
        ids.insert(uidOf(event.get()));
        if (isDetached(event.get()))
            file.series.detached.push_back(share(event.get()));
        else if (file.series.master)
            file.problem = "it holds more than one event";
        else
            file.series.master = share(event.get());
    }
    if (ids.size() > 1) file.problem = "it holds more than one event";
    if (file.events.size() != file.text->events().size() && file.problem.empty())
        file.problem = "it cannot be understood";
}

void Folder::readAgain(const std::string& name) {
    const auto identity = linux::identityOf(path + "/" + name);
    const auto known = files.find(name);
    if (known != files.end() && identity && known->second.identity == *identity) return;
    auto content = linux::readFile(path + "/" + name);
    if (content.state == linux::FileRead::State::absent) {
        files.erase(name);
        return;
    }
    File file;
    file.identity = content.identity;
    if (content.state == linux::FileRead::State::read)
        read(file, std::move(content.text));
    else if (content.state == linux::FileRead::State::failed)
        file.problem = std::strerror(content.error);
    else
        file.problem = "it is too long or no file";
    files[name] = std::move(file);
}

Zones Folder::zonesOf(const File& file) const {
    return {lookUpZone, file.zones.get(), local};
}

Found Folder::find(double seconds) {
    Found found;
    found.answer.sources = {path};
    std::error_code error;
    const auto names = fileNames(path, error);
    if (error) {
        found.remarks.push_back("the calendar folder " + path +
                                " cannot be read: " + error.message());
        files.clear();
        return found;
    }
    const std::set<std::string> present(names.begin(), names.end());
    std::erase_if(files, [&present](const auto& file) { return !present.contains(file.first); });
    local = localZone();
    from = now();
    to = from + static_cast<std::time_t>(seconds);
    for (const std::string& name : names) {
        readAgain(name);
        const auto known = files.find(name);
        if (known == files.end()) continue;
        File& file = known->second;
        file.series.savedFrom = 0;
        if (!file.problem.empty()) {
            found.remarks.push_back(path + "/" + name + " is left as it is: " + file.problem);
            continue;
        }
        for (const Occurrence& occurrence :
             occurrencesBetween(file.series, zonesOf(file), from, to))
            found.answer.events.push_back(eventOf(occurrence, name, from));
    }
    std::ranges::stable_sort(found.answer.events, {}, &CalendarEvent::start);
    return found;
}

std::vector<SaveResult> Folder::save(const std::vector<CalendarEvent>& events) {
    std::vector<SaveResult> results;
    results.reserve(events.size());
    for (const CalendarEvent& event : events)
        results.push_back(saveOne(event));
    return results;
}

SaveResult Folder::saveOne(const CalendarEvent& event) {
    const auto known = files.find(event.calendar);
    if (known == files.end()) return noSuchEvent;
    File& file = known->second;
    if (isCovered(file.series, event, from)) return std::nullopt;
    const auto all = occurrencesBetween(file.series, zonesOf(file), from, to);
    const auto found = std::ranges::find(all, event.occurrence, &Occurrence::id);
    if (found == all.end()) return noSuchEvent;
    if (hasAlarms(found->component, event.alarms)) return std::nullopt;
    if (linux::identityOf(path + "/" + event.calendar) != file.identity) return changedMeanwhile;
    auto error = isWhole(*found, zonesOf(file))
                     ? saveAll(event.calendar, file, found->component, event)
                     : saveHalf(event.calendar, file, *found, event);
    if (error) return error;
    const std::time_t start = found->start;
    const bool recurring = !found->detached;
    readAgain(event.calendar);
    if (recurring) files[event.calendar].series.savedFrom = start;
    return std::nullopt;
}

std::size_t Folder::placeOf(const File& file, ICalComponent* event) {
    const auto found =
        std::ranges::find(file.events, event, [](const Component& one) { return one.get(); });
    return static_cast<std::size_t>(found - file.events.begin());
}

SaveResult Folder::saveAll(const std::string& name, const File& file, ICalComponent* event,
                           const CalendarEvent& wanted) {
    const Component changed = copyOf(event);
    setAlarms(changed.get(), wanted.alarms);
    IcsText text = *file.text;
    text.setAlarms(placeOf(file, event), alarmsText(changed.get()));
    return write(name, text.changed());
}

/// The later half becomes a file of its own, which is there before the first half ends earlier.
SaveResult Folder::saveHalf(const std::string& name, const File& file, const Occurrence& occurrence,
                            const CalendarEvent& wanted) {
    const Halves halves = cutAt(file.series, occurrence, zonesOf(file));
    if (!halves.after) return cannotBeCut;
    setAlarms(halves.after.get(), wanted.alarms);
    const std::string uid = propertyText(halves.after.get(), {I_CAL_UID_PROPERTY});

    IcsText before = *file.text;
    IcsText after = *file.text;
    for (std::size_t place = 0; place < file.events.size(); ++place) {
        ICalComponent* const event = file.events[place].get();
        const bool isMaster = event == file.series.master.get();
        const bool moves =
            std::ranges::find(halves.movedDetached, event) != halves.movedDetached.end();
        if (moves) before.removeEvent(place);
        if (isMaster || moves)
            after.setProperties(place, {"UID"}, uid);
        else
            after.removeEvent(place);
        if (!isMaster) continue;
        before.setProperties(place, ruleNames, propertyText(halves.before.get(), rules));
        after.setProperties(place, ruleNames, propertyText(halves.after.get(), rules));
        after.setProperties(place, {"DTSTART"},
                            propertyText(halves.after.get(), {I_CAL_DTSTART_PROPERTY}));
        after.setProperties(place, {"DTEND"},
                            propertyText(halves.after.get(), {I_CAL_DTEND_PROPERTY}));
        after.setAlarms(place, alarmsText(halves.after.get()));
    }
    const std::string laterName = uidOf(halves.after.get()) + ".ics";
    if (auto error = write(laterName, after.changed())) return error;
    auto error = write(name, before.changed());
    if (error) (void)fs::remove(path + "/" + laterName);
    return error;
}

SaveResult Folder::write(const std::string& name, const std::string& text) {
    std::error_code error;
    // A link stays one.
    const fs::path file = fs::weakly_canonical(path + "/" + name, error);
    if (error) return error.message();
    const auto mode = fs::status(file, error).permissions();
    const auto replaced = linux::replaceFile(file, text);
    if (replaced.failure)
        return name + ": " + std::string(replaced.failure->step) + ": " +
               std::strerror(replaced.failure->error);
    if (!error && mode != fs::perms::unknown) fs::permissions(file, mode, error);
    return std::nullopt;
}

} // namespace platform::calendar
