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
/// set aside under another name before anything is written, and so is one that has become blank
/// since it was read; one that has gone is written again. Main thread.
class SettingsFile final : public Settings {
  public:
    /// Reads the file; the folder is made if it is missing. A path that is not absolute keeps the
    /// settings in memory only, and is what the log says of the place. Both requests are made at
    /// most once between two calls of what they must bring about, also while a modal alert runs:
    /// `requestSave` of `savePending` after the current event, `requestLook` of `lookAgain` some
    /// tenths of a second later. Without the first each `synchronize` saves at once; without the
    /// second nothing is given time. The log must outlive the object.
    SettingsFile(std::string path, Log& log, std::function<void()> requestSave,
                 std::function<void()> requestLook = nullptr);

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

    /// Does what `requestLook` was called for: saves what another process was in the way of, and
    /// replaces a file that has not been whole for all that time.
    void lookAgain();

    /// To be called when something has happened to the file. Takes over another program's edit,
    /// except for the keys that are still to be saved.
    void fileChanged();

    using Keys = std::set<std::string, std::less<>>;
    /// Calls `handler` after an edit of another program's with the keys that read otherwise now.
    void onOutsideEdit(std::function<void(const Keys&)> handler) {
        outsideEdit = std::move(handler);
    }

    /// Calls `handler` with the name of the file that what could not be read is in now: at once
    /// for what has happened before, and each time that it happens.
    void onSetAside(std::function<void(const std::string& file)> handler);

    /// As it was given: a link is not followed.
    const std::string& path() const { return givenPath; }

  private:
    enum class Patience { some, none };
    enum class Loaded { absent, read, setAside, failed };
    enum class Outside { known, unsettled, unreadable };
    struct Found {
        enum class State { absent, whole, repeatsKeys, blank, damaged, failed };
        State state = State::absent;
        std::optional<FileIdentity> identity;
        std::string text;
        PropertyList list;
        int error = 0; ///< with `failed`
    };
    struct Observer {
        std::string key;
        std::optional<Value> known; ///< what the key read as when `changed` was last called
        std::function<void()> changed;
    };

    bool isKept() const { return filePath.starts_with('/'); }
    const Value* valueIn(const PropertyList& list, std::string_view key) const;
    Found look() const;
    Loaded load(Found found, PropertyList& list);
    Outside takeOverOutsideEdit(Patience patience);
    bool isUnsettled(const Found& found, Patience patience);
    void merge(PropertyList outside);
    void save(Patience patience = Patience::some);
    bool replace(Patience patience);
    void askToLookAgain();
    void change(std::string_view key, std::optional<Value> value);
    void tellObservers();
    void report(std::string_view step, int error);
    void tellSetAside(const std::string& file);

    std::string givenPath;
    std::string filePath; ///< where the file is, links followed
    Log& log;
    std::function<void()> requestSave;
    std::function<void()> requestLook;
    std::function<void(const Keys&)> outsideEdit;
    std::function<void(const std::string&)> setAside;
    std::vector<std::string> untoldSetAside;
    PropertyList current;
    PropertyList saved;                 ///< as the file was when it was last read or written
    std::optional<FileIdentity> onDisk; ///< of the file at that time; nothing when there was none
    Dictionary registered;
    std::vector<Observer> observers;
    bool changedSinceAttempt = false;
    bool saveRequested = false;
    bool lookRequested = false;
    bool savePutOff = false;
    int timesPutOff = 0;
    /// A state of the file, or none at all, that is not whole and may be about to become so.
    std::optional<std::optional<FileIdentity>> unsettled;
    Keys edited;                                    ///< by other programs, and not told yet
    std::set<std::pair<std::string, int>> reported; ///< since the last save that worked
};

} // namespace platform::linux
