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

constexpr std::time_t aDay = 24 * 60 * 60;

// What tells which days an event recurs on.
const std::vector<std::string_view> ruleNames = {"RRULE", "RDATE", "EXDATE", "EXRULE"};

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

} // namespace

Folder::Folder(std::string folder, Now clock, std::string journalFile)
    : path(std::move(folder)), now(std::move(clock)), journal(std::move(journalFile)) {}

Opened Folder::open() {
    std::error_code error;
    (void)fileNames(path, error);
    if (!error) {
        settleCuts();
        return {};
    }
    return {Refusal::noFolder,
            "the calendar folder " + path + " cannot be read: " + error.message()};
}

/// A cut that a kill has ended before its second write is undone, unless somebody has changed one
/// of its halves since: then both stay.
void Folder::settleCuts() {
    for (const Cut& cut : journal.cuts()) {
        if (cut.place != path) continue;
        const auto whole = linux::readFile(path + "/" + cut.before);
        const auto after = linux::readFile(path + "/" + cut.after);
        if (whole.state == linux::FileRead::State::failed) continue;
        std::error_code none;
        if (checksumOf(whole.text) == cut.wholeSum && checksumOf(after.text) == cut.partSum)
            (void)fs::remove(path + "/" + cut.after, none);
        journal.strike(cut);
    }
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
    if (identity && static_cast<std::size_t>(identity->size) > IcsText::longest) {
        File& tooLong = files[name] = {};
        tooLong.identity = *identity;
        tooLong.problem = "it is too long";
        return;
    }
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

/// Looks a day further than it is asked for, so that a pass of an unchanged file is a look-up.
const Expansion& Folder::expansionOf(File& file) const {
    auto& known = file.known;
    if (from < known.from || to > known.to || local != known.local) {
        known = {from, to + aDay, local, {}};
        known.expansion =
            occurrencesBetween(file.series, zonesOf(file), known.from, known.to, stop.get());
        if (known.expansion.oddity == Oddity::stopped) known.to = 0;
    }
    return known.expansion;
}

/// Why the file is not touched.
std::optional<std::string> Folder::leftAlone(const File& file) const {
    if (!file.problem.empty()) return " is left as it is: " + file.problem;
    if (const char* const why = nameOf(file.known.expansion.oddity))
        return std::string(" is left as it is: ") + why;
    return std::nullopt;
}

Found Folder::find(double seconds) {
    Found found;
    g_cancellable_reset(stop.get());
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
        if (file.problem.empty() && expansionOf(file).oddity == Oddity::stopped) {
            found.remarks.push_back("the look through " + path + " took too long and was given up");
            break;
        }
        if (const auto why = leftAlone(file)) {
            found.remarks.push_back(path + "/" + name + *why);
            continue;
        }
        bool isKept = false;
        for (const Occurrence& occurrence : file.known.expansion.occurrences) {
            if (!hasPartIn(occurrence, from, to)) continue;
            if (mayBeSaved(occurrence, zonesOf(file)))
                found.answer.events.push_back(eventOf(occurrence, name, from));
            else
                isKept = true;
        }
        if (isKept) found.remarks.push_back(path + "/" + name + keepsItsAlarms);
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
    const auto& all = expansionOf(file).occurrences;
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
        before.setProperties(place, ruleNames, rulesOf(halves.before.get()));
        after.setProperties(place, ruleNames, rulesOf(halves.after.get()));
        after.setProperties(place, {"DTSTART"},
                            propertyText(halves.after.get(), {I_CAL_DTSTART_PROPERTY}));
        after.setProperties(place, {"DTEND"},
                            propertyText(halves.after.get(), {I_CAL_DTEND_PROPERTY}));
        after.setAlarms(place, alarmsText(halves.after.get()));
    }
    const Cut cut{.place = path,
                  .before = name,
                  .after = uidOf(halves.after.get()) + ".ics",
                  .wholeSum = checksumOf(file.text->text()),
                  .partSum = checksumOf(after.changed())};
    if (!journal.add(cut)) return cannotBeJournalled;
    auto error = write(cut.after, after.changed());
    if (!error && (error = write(name, before.changed()))) {
        std::error_code none;
        (void)fs::remove(path + "/" + cut.after, none);
    }
    journal.strike(cut);
    return error;
}

SaveResult Folder::write(const std::string& name, const std::string& text) {
    std::error_code error;
    // A link stays one.
    const fs::path file = fs::weakly_canonical(path + "/" + name, error);
    if (error) return error.message();
    const auto mode = fs::status(file, error).permissions();
    const auto replaced = linux::replaceFileOfOthers(file, text);
    if (replaced.failure)
        return name + ": " + std::string(replaced.failure->step) + ": " +
               std::strerror(replaced.failure->error);
    if (!error && mode != fs::perms::unknown) fs::permissions(file, mode, error);
    return std::nullopt;
}

} // namespace platform::calendar
