#include "platform/linux/settings/SettingsFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <poll.h>

namespace platform::linux {

namespace {

// Another process has the new file for as long as one write and one sync take.
constexpr int lockPollMilliseconds = 10;
constexpr int longestLock = 100;  // of those at the end of the program
constexpr int quietlyPutOff = 10; // looks before that is told
constexpr int editsDuringOneSave = 5;

/// A settings file that is a link stays one: what it leads to is replaced.
std::string realPath(const std::string& path) {
    const std::string last = linksFollowed(path).back();
    std::error_code error;
    const auto target = std::filesystem::weakly_canonical(last, error);
    return error ? last : target.string();
}

const ListEntry* entryOf(const PropertyList& list, std::string_view key) {
    const auto found = list.find(key);
    return found == list.end() ? nullptr : &found->second;
}

} // namespace

SettingsFile::SettingsFile(std::string path, Log& logger, std::function<void()> saveHook,
                           std::function<void()> lookHook)
    : givenPath(std::move(path)),
      filePath(givenPath),
      log(logger),
      requestSave(std::move(saveHook)),
      requestLook(std::move(lookHook)) {
    if (!isKept()) return;
    filePath = realPath(givenPath);
    // A failure shows itself again, and is told, when a save is tried.
    (void)makeFolders(std::filesystem::path(filePath).parent_path().string());
    (void)load(look(), current);
    saved = current;
}

const Value* SettingsFile::object(std::string_view key) const {
    return valueIn(current, key);
}

const Value* SettingsFile::valueIn(const PropertyList& list, std::string_view key) const {
    const ListEntry* entry = entryOf(list, key);
    if (entry != nullptr && entry->value) return &*entry->value;
    const auto found = registered.find(key);
    return found == registered.end() ? nullptr : &found->second;
}

Dictionary SettingsFile::persistentDomain() const {
    Dictionary values;
    for (const auto& [key, entry] : current)
        if (entry.value) values.emplace(key, *entry.value);
    return values;
}

void SettingsFile::change(std::string_view key, std::optional<Value> value) {
    if (!value && current.erase(std::string(key)) == 0) return;
    if (value) {
        ListEntry& entry = current[std::string(key)];
        if (entry.value == value) return;
        entry = ListEntry{std::move(value), {}};
    }
    changedSinceAttempt = true;
}

void SettingsFile::set(std::string_view key, Value value) {
    change(key, std::move(value));
    tellObservers();
}

void SettingsFile::remove(std::string_view key) {
    change(key, std::nullopt);
    tellObservers();
}

void SettingsFile::registerDefault(std::string_view key, Value value) {
    registered.insert_or_assign(std::string(key), std::move(value));
    tellObservers();
}

void SettingsFile::setPersistentDomain(Dictionary values) {
    current.clear();
    for (auto& [key, value] : values)
        current.emplace(key, ListEntry{std::move(value), {}});
    changedSinceAttempt = true;
    synchronize(); // whoever replaces them all does not ask again
    tellObservers();
}

void SettingsFile::observe(std::string_view key, std::function<void()> changed) {
    const Value* value = object(key);
    observers.push_back(
        {std::string(key), value ? std::optional(*value) : std::nullopt, std::move(changed)});
}

/// Comes last in every operation that may have changed something, since an observer may change
/// more.
void SettingsFile::tellObservers() {
    for (std::size_t i = 0; i < observers.size(); ++i) {
        const Value* now = object(observers[i].key);
        std::optional<Value>& known = observers[i].known;
        if (now ? known == *now : !known) continue;
        known = now ? std::optional(*now) : std::nullopt;
        const auto changed = observers[i].changed; // it may observe more
        changed();
    }
    if (const Keys keys = std::exchange(edited, {}); !keys.empty() && outsideEdit)
        outsideEdit(keys);
}

void SettingsFile::synchronize() {
    if (!changedSinceAttempt || saveRequested) return;
    if (!requestSave) {
        save();
        tellObservers();
        return;
    }
    saveRequested = true;
    requestSave();
}

void SettingsFile::savePending() {
    if (!saveRequested) return;
    saveRequested = false;
    if (changedSinceAttempt) save();
    tellObservers();
}

void SettingsFile::lookAgain() {
    lookRequested = false;
    if (savePutOff)
        save();
    else
        fileChanged();
    tellObservers();
}

void SettingsFile::flush() {
    if (isKept()) (void)takeOverOutsideEdit(Patience::none);
    if (current != saved) save(Patience::none);
    tellObservers();
}

void SettingsFile::resetStandardUserDefaults() {
    // What was asked for is as good as stored.
    if (std::exchange(saveRequested, false) || savePutOff) save(Patience::none);
    PropertyList stored;
    if (!isKept() || load(look(), stored) == Loaded::failed) return;
    current = std::move(stored);
    saved = current;
    changedSinceAttempt = false;
    tellObservers();
}

void SettingsFile::fileChanged() {
    if (isKept()) (void)takeOverOutsideEdit(Patience::some);
    tellObservers();
}

void SettingsFile::askToLookAgain() {
    if (!requestLook || std::exchange(lookRequested, true)) return;
    requestLook();
}

SettingsFile::Found SettingsFile::look() const {
    using State = Found::State;
    FileRead file = readFile(filePath);
    Found found;
    if (file.state == FileRead::State::absent) return found;
    if (file.state == FileRead::State::failed) {
        found.state = State::failed;
        found.error = file.error;
        return found;
    }
    ReadPropertyList read;
    if (file.state == FileRead::State::read) read = readPropertyList(file.text);
    constexpr State states[] = {State::whole, State::repeatsKeys, State::blank, State::damaged};
    found.state = states[static_cast<int>(read.wholeness)];
    found.identity = file.identity;
    found.text = std::move(file.text);
    found.list = std::move(read.list);
    return found;
}

/// Sets aside what has to be. `list` stays empty unless the file could be read.
SettingsFile::Loaded SettingsFile::load(Found found, PropertyList& list) {
    using State = Found::State;
    unsettled.reset();
    if (found.state == State::absent) {
        onDisk.reset();
        return Loaded::absent;
    }
    if (found.state == State::failed) {
        report("reading", found.error);
        return Loaded::failed;
    }
    if (found.state == State::damaged) {
        const auto name = moveAside(filePath);
        if (!name) {
            report("setting the damaged file aside", errno);
            return Loaded::failed;
        }
        log.write("the settings in " + filePath + " cannot be read; the file is now " + *name);
        tellSetAside(*name);
        onDisk.reset();
        return Loaded::setAside;
    }
    if (found.state == State::repeatsKeys) {
        const auto name = copyAside(filePath, found.text);
        if (!name) {
            report("copying a file that repeats keys", errno);
            return Loaded::failed;
        }
        log.write("the settings in " + filePath + " repeat keys, the last ones count; a copy is " +
                  *name);
    }
    onDisk = found.identity;
    list = std::move(found.list);
    return Loaded::read;
}

/// An editor may have moved the file away, or emptied it, and be about to write it anew: it is
/// given time until the next look. `found` is not whole.
bool SettingsFile::isUnsettled(const Found& found, Patience patience) {
    if (!requestLook || patience == Patience::none) return false;
    if (unsettled && *unsettled == found.identity && !lookRequested) return false;
    unsettled.emplace(found.identity);
    askToLookAgain();
    return true;
}

/// What is unreadable can neither be read nor set aside, and so must not be replaced.
SettingsFile::Outside SettingsFile::takeOverOutsideEdit(Patience patience) {
    using State = Found::State;
    filePath = realPath(givenPath);
    if (identityOf(filePath) == onDisk) {
        unsettled.reset();
        return Outside::known;
    }
    Found found = look();
    // Nobody empties settings by emptying their file; a full disk does.
    if (found.state == State::blank && !saved.empty()) found.state = State::damaged;
    const bool isLost = found.state == State::absent && !saved.empty();
    if ((isLost || found.state == State::damaged) && isUnsettled(found, patience))
        return Outside::unsettled;
    PropertyList list;
    const Loaded loaded = load(std::move(found), list);
    if (loaded == Loaded::failed) return Outside::unreadable;
    if (loaded == Loaded::read) {
        merge(std::move(list));
        return Outside::known;
    }
    saved.clear(); // the next save writes everything again
    // A whole folder that has gone is about to come back, or never will.
    const auto folder = std::filesystem::path(filePath).parent_path();
    if (std::error_code error; std::filesystem::is_directory(folder, error)) {
        changedSinceAttempt = !current.empty();
        synchronize();
    }
    return Outside::known;
}

/// Keys that differ from what was saved are the program's own changes and win.
void SettingsFile::merge(PropertyList outside) {
    PropertyList merged = outside;
    for (const auto& [key, entry] : current) {
        const ListEntry* before = entryOf(saved, key);
        if (before == nullptr || *before != entry) merged.insert_or_assign(key, entry);
    }
    for (const auto& [key, entry] : saved)
        if (!current.contains(key)) merged.erase(key);
    saved = std::move(outside);
    const PropertyList before = std::exchange(current, std::move(merged));
    for (const PropertyList* list : {&before, &std::as_const(current)})
        for (const auto& [key, entry] : *list) {
            const Value* was = valueIn(before, key);
            const Value* is = object(key);
            if (was == nullptr || is == nullptr ? was != is : *was != *is) edited.insert(key);
        }
}

void SettingsFile::save(Patience patience) {
    changedSinceAttempt = false;
    savePutOff = false;
    if (!isKept()) {
        if (reported.emplace("finding a folder", 0).second)
            log.write("there is no place for the settings file " + filePath +
                      " while HOME and XDG_CONFIG_HOME are not set; the settings go on in memory");
        return;
    }
    if (current == saved) return;
    if (const int error = makeFolders(std::filesystem::path(filePath).parent_path().string())) {
        report("making the folder", error);
        return;
    }
    if (replace(patience)) return;
    savePutOff = true;
    askToLookAgain();
}

/// False when it cannot be done yet. An edit that has not been noticed yet would be lost, so every
/// try begins with it.
bool SettingsFile::replace(Patience patience) {
    for (int edits = 0, locks = 0;;) {
        const Outside outside = takeOverOutsideEdit(patience);
        if (outside == Outside::unsettled) return false;
        changedSinceAttempt = false;
        if (outside == Outside::unreadable || current == saved) return true;
        const auto result = replaceFile(filePath, writePropertyList(current), onDisk);
        if (!result.failure) {
            onDisk = result.identity;
            saved = current;
            reported.clear();
            timesPutOff = 0;
            return true;
        }
        const bool canWait = requestLook && patience == Patience::some;
        if (result.isEdited && edits++ < editsDuringOneSave) continue;
        if (result.isLocked && patience == Patience::none && locks++ < longestLock) {
            ::poll(nullptr, 0, lockPollMilliseconds);
            continue;
        }
        const bool isInTheWay = result.isLocked || result.isEdited;
        if (!isInTheWay || !canWait || ++timesPutOff > quietlyPutOff)
            report(result.failure->step, result.failure->error);
        return !isInTheWay || !canWait;
    }
}

void SettingsFile::onSetAside(std::function<void(const std::string&)> handler) {
    setAside = std::move(handler);
    for (const std::string& file : std::exchange(untoldSetAside, {}))
        setAside(file);
}

void SettingsFile::tellSetAside(const std::string& file) {
    if (setAside)
        setAside(file);
    else
        untoldSetAside.push_back(file);
}

void SettingsFile::report(std::string_view step, int error) {
    if (!reported.emplace(step, error).second) return;
    log.write("settings file " + filePath + ": " + std::string(step) +
              " failed: " + std::strerror(error) + "; the settings go on in memory");
}

} // namespace platform::linux
