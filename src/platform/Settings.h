#pragma once

#include "platform/Value.h"

#include <functional>
#include <string_view>

namespace platform {

/// The user's settings: a persistent domain, and registered defaults behind it that live as long
/// as the process. Reads are look-ups in memory that allocate nothing. Main thread only.
class Settings {
  public:
    virtual ~Settings() = default;

    /// The persistent value, else the registered one, else null. Valid until the next change.
    virtual const Value* object(std::string_view key) const = 0;

    /// Writes into the persistent domain.
    virtual void set(std::string_view key, Value value) = 0;

    /// Takes a key out of the persistent domain; a registered default shows through again.
    virtual void remove(std::string_view key) = 0;

    /// Gives a key the value it reads as while the persistent domain holds none.
    virtual void registerDefault(std::string_view key, Value value) = 0;

    /// Asks for what has changed to be saved. All that one event asks for costs one save, after
    /// the event; with nothing changed nothing is written. A failure is logged and the program goes
    /// on with what it has in memory.
    virtual void synchronize() = 0;

    /// Saves now what is still to be saved, for a caller that looks at the file next.
    virtual void flush() = 0;

    /// Reads the persistent domain afresh, as it is stored.
    virtual void resetStandardUserDefaults() = 0;

    /// Replaces every persistent value at once, and asks for that to be saved.
    virtual void setPersistentDomain(Dictionary values) = 0;

    /// Calls `changed` after each change of what the key reads as, whoever made it; for as long as
    /// the process lives.
    virtual void observe(std::string_view key, std::function<void()> changed) = 0;

    // Readers of an absent key answer false, 0 and nothing.
    bool boolForKey(std::string_view key) const {
        const Value* value = object(key);
        return value != nullptr && boolValue(*value);
    }
    int integerForKey(std::string_view key) const {
        const Value* value = object(key);
        return value == nullptr ? 0 : intValue(*value);
    }
    std::optional<std::string_view> stringForKey(std::string_view key) const {
        const Value* value = object(key);
        return value == nullptr ? std::nullopt : stringValue(*value);
    }
};

} // namespace platform
