#include "platform/calendar/folder/Folder.h"

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

void Folder::readAgain(const std::string& name) {
    const auto identity = linux::identityOf(path + "/" + name);
    const auto known = files.find(name);
    if (known != files.end() && identity && known->second.identity == *identity) return;
    if (identity && static_cast<std::size_t>(identity->size) > IcsText::longest) {
        files[name] = {*identity, IcsFile::withProblem("it is too long"), {}};
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
        file.event = IcsFile(std::move(content.text));
    else if (content.state == linux::FileRead::State::failed)
        file.event = IcsFile::withProblem(std::strerror(content.error));
    else
        file.event = IcsFile::withProblem("it is too long or no file");
    files[name] = std::move(file);
}

/// Looks a day further than it is asked for, so that a pass of an unchanged file is a look-up.
const Expansion& Folder::expansionOf(File& file) const {
    auto& known = file.known;
    if (from < known.from || to > known.to || local != known.local) {
        known = {from, to + aDay, local, {}};
        known.expansion = occurrencesBetween(file.event.series(), zonesOf(file), known.from,
                                             known.to, stop.get());
        if (known.expansion.oddity == Oddity::stopped) known.to = 0;
    }
    return known.expansion;
}

/// Why the file is not touched.
std::optional<std::string> Folder::leftAlone(const File& file) const {
    if (!file.event.problem().empty()) return " is left as it is: " + file.event.problem();
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
        file.event.setSavedFrom(0);
        if (file.event.problem().empty() && expansionOf(file).oddity == Oddity::stopped) {
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
    if (isCovered(file.event.series(), event, from)) return std::nullopt;
    const auto& all = expansionOf(file).occurrences;
    const auto found = std::ranges::find(all, event.occurrence, &Occurrence::id);
    if (found == all.end()) return noSuchEvent;
    if (hasAlarms(found->component, event.alarms)) return std::nullopt;
    if (linux::identityOf(path + "/" + event.calendar) != file.identity) return changedMeanwhile;
    auto error = isWhole(*found, zonesOf(file))
                     ? write(event.calendar, file.event.withAlarms(found->component, event.alarms))
                     : saveHalf(event.calendar, file, *found, event);
    if (error) return error;
    const std::time_t start = found->start;
    const bool recurring = !found->detached;
    readAgain(event.calendar);
    if (recurring) files[event.calendar].event.setSavedFrom(start);
    return std::nullopt;
}

/// The later half becomes a file of its own, which is there before the first half ends earlier.
SaveResult Folder::saveHalf(const std::string& name, const File& file, const Occurrence& occurrence,
                            const CalendarEvent& wanted) {
    const auto halves = file.event.cutAt(occurrence, wanted.alarms, zonesOf(file));
    if (!halves) return cannotBeCut;
    const Cut cut{.place = path,
                  .before = name,
                  .after = halves->afterUid + ".ics",
                  .wholeSum = checksumOf(file.event.text()),
                  .partSum = checksumOf(halves->after)};
    if (!journal.add(cut)) return cannotBeJournalled;
    auto error = write(cut.after, halves->after);
    if (!error && (error = write(name, halves->before))) {
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
