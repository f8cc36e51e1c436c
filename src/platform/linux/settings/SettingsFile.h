#pragma once

#include "platform/Log.h"
#include "platform/Settings.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/settings/PropertyList.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace platform::linux {

/// The settings in an XML property list. Values of types that `Value` does not have are kept in
/// the file as they are and read as if the key were absent. A file that cannot be read whole is
/// set aside under another name before anything is written. Main thread.
class SettingsFile final : public Settings {
  public:
    /// Reads the file; the folder is made if it is missing. An empty path keeps the settings in
    /// memory only. `requestSave` is called at most once between two calls of `savePending`, which
    /// it must bring about after the current event, also while a modal alert runs; without it each
    /// `synchronize` saves at once. The log must outlive the object.
    SettingsFile(std::string path, Log& log, std::function<void()> requestSave);

    const Value* object(std::string_view key) const override;
    void set(std::string_view key, Value value) override;
    void remove(std::string_view key) override;
    void registerDefault(std::string_view key, Value value) override;
    void synchronize() override;
    void flush() override;
    void resetStandardUserDefaults() override;
    void setPersistentDomain(Dictionary values) override;
    void observe(std::string_view key, std::function<void()> changed) override;

    /// What is stored, without the registered defaults.
    Dictionary persistentDomain() const;

    /// Saves what `requestSave` was called for.
    void savePending();

    /// To be called when something has happened to the file. Takes over another program's edit,
    /// except for the keys that are still to be saved.
    void fileChanged();

    /// Where the file is, links followed.
    const std::string& path() const { return filePath; }

  private:
    enum class Loaded { absent, read, setAside, failed };
    struct Observer {
        std::string key;
        std::optional<Value> known; ///< what the key read as when `changed` was last called
        std::function<void()> changed;
    };

    Loaded load(PropertyList& list);
    bool takeOverOutsideEdit();
    void merge(PropertyList edited);
    void save();
    void change(std::string_view key, std::optional<Value> value);
    void tellObservers();
    void report(std::string_view step, int error);

    std::string filePath;
    Log& log;
    std::function<void()> requestSave;
    PropertyList current;
    PropertyList saved;                 ///< as the file was when it was last read or written
    std::optional<FileIdentity> onDisk; ///< of the file at that time; nothing when there was none
    Dictionary registered;
    std::vector<Observer> observers;
    bool changedSinceAttempt = false;
    bool saveRequested = false;
    std::set<std::pair<std::string, int>> reported; ///< since the last save that worked
};

} // namespace platform::linux
