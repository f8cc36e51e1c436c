#include "platform/linux/settings/SettingsFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace platform::linux {

namespace {

/// A settings file that is a link stays one: what it leads to is replaced.
std::string linksFollowed(const std::string& path) {
    std::error_code error;
    const auto target = std::filesystem::weakly_canonical(path, error);
    return error || path.empty() ? path : target.string();
}

const ListEntry* entryOf(const PropertyList& list, std::string_view key) {
    const auto found = list.find(key);
    return found == list.end() ? nullptr : &found->second;
}

} // namespace

SettingsFile::SettingsFile(std::string path, Log& logger, std::function<void()> saveHook)
    : filePath(linksFollowed(std::move(path))), log(logger), requestSave(std::move(saveHook)) {
    if (filePath.empty()) return;
    // A failure shows itself again, and is told, when a save is tried.
    (void)makeFolders(std::filesystem::path(filePath).parent_path().string());
    load(current);
    saved = current;
}

const Value* SettingsFile::object(std::string_view key) const {
    const ListEntry* entry = entryOf(current, key);
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

void SettingsFile::flush() {
    if (current != saved) save();
    tellObservers();
}

void SettingsFile::resetStandardUserDefaults() {
    savePending(); // what was asked for is as good as stored
    PropertyList stored;
    if (filePath.empty() || load(stored) == Loaded::failed) return;
    current = std::move(stored);
    saved = current;
    changedSinceAttempt = false;
    tellObservers();
}

void SettingsFile::fileChanged() {
    if (!filePath.empty()) (void)takeOverOutsideEdit();
    tellObservers();
}

/// Reads the file into `list`, which stays empty unless it could be read.
SettingsFile::Loaded SettingsFile::load(PropertyList& list) {
    const FileRead file = readFile(filePath);
    if (file.state == FileRead::State::absent) {
        onDisk.reset();
        return Loaded::absent;
    }
    if (file.state == FileRead::State::failed) {
        report("reading", file.error);
        return Loaded::failed;
    }
    ReadPropertyList read;
    if (file.state == FileRead::State::read) read = readPropertyList(file.text);
    if (read.wholeness == Wholeness::damaged) {
        const auto name = moveAside(filePath);
        if (!name) {
            report("setting the damaged file aside", errno);
            return Loaded::failed;
        }
        log.write("the settings in " + filePath + " cannot be read; the file is now " + *name);
        onDisk.reset();
        return Loaded::setAside;
    }
    if (read.wholeness == Wholeness::repeatsKeys) {
        const auto name = copyAside(filePath, file.text);
        if (!name) {
            report("copying a file that repeats keys", errno);
            return Loaded::failed;
        }
        log.write("the settings in " + filePath + " repeat keys, the last ones count; a copy is " +
                  *name);
    }
    onDisk = file.identity;
    list = std::move(read.list);
    return Loaded::read;
}

/// False when what lies there can neither be read nor set aside, and so must not be replaced.
bool SettingsFile::takeOverOutsideEdit() {
    if (identityOf(filePath) == onDisk) return true;
    PropertyList edited;
    const Loaded loaded = load(edited);
    if (loaded == Loaded::failed) return false;
    if (loaded == Loaded::read) {
        merge(std::move(edited));
        return true;
    }
    saved.clear(); // the next change writes everything again
    if (loaded == Loaded::setAside) {
        changedSinceAttempt = true;
        synchronize();
    }
    return true;
}

/// Keys that differ from what was saved are the program's own changes and win.
void SettingsFile::merge(PropertyList edited) {
    PropertyList merged = edited;
    for (const auto& [key, entry] : current) {
        const ListEntry* before = entryOf(saved, key);
        if (before == nullptr || *before != entry) merged.insert_or_assign(key, entry);
    }
    for (const auto& [key, entry] : saved)
        if (!current.contains(key)) merged.erase(key);
    current = std::move(merged);
    saved = std::move(edited);
}

void SettingsFile::save() {
    changedSinceAttempt = false;
    if (filePath.empty()) {
        report("finding a folder for them", ENOENT);
        return;
    }
    if (current == saved) return;
    if (const int error = makeFolders(std::filesystem::path(filePath).parent_path().string())) {
        report("making the folder", error);
        return;
    }
    // An edit that has not been noticed yet would be lost.
    if (!takeOverOutsideEdit()) return;
    changedSinceAttempt = false;
    if (current == saved) return;
    const auto result = replaceFile(filePath, writePropertyList(current));
    if (result.failure) {
        report(result.failure->step, result.failure->error);
        return;
    }
    onDisk = result.identity;
    saved = current;
    reported.clear();
}

void SettingsFile::report(std::string_view step, int error) {
    if (!reported.emplace(step, error).second) return;
    log.write("settings file " + filePath + ": " + std::string(step) +
              " failed: " + std::strerror(error) + "; the settings go on in memory");
}

} // namespace platform::linux
