#pragma once

#include "platform/Settings.h"
#include "platform/memory/Effects.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace platform::memory {

class Settings final : public platform::Settings {
  public:
    explicit Settings(Effects& stream) : effects(stream) {}

    const Value* object(std::string_view key) const override;
    void set(std::string_view key, Value value) override;
    void remove(std::string_view key) override;
    void registerDefault(std::string_view key, Value value) override;
    void synchronize() override;
    void flush() override { save(); }
    void resetStandardUserDefaults() override;
    void setPersistentDomain(Dictionary values) override;

    void observe(std::string_view key, std::function<void()> changed) override;

    /// Writes into the stored settings from outside the program: no effect tells of it. Nothing for
    /// `value` takes the key out.
    void edit(std::string_view key, std::optional<Value> value);

    /// From now on nothing reaches the store, and its file is missing.
    void loseFile() { broken = true; }

    /// Whether there is a settings file.
    bool isSaved() const { return saved && !broken; }

    const Dictionary& persistentValues() const { return persistent; }
    const Dictionary& registeredValues() const { return registered; }

  private:
    using Change = std::pair<std::string, std::optional<Value>>;

    struct Observer {
        std::string key;
        std::function<void()> changed;
    };

    void changing(std::string_view key, const std::function<void()>& change);
    void put(std::string_view key, std::optional<Value> value);
    void assign(std::string_view key, std::optional<Value> value);
    void save();

    Effects& effects;
    Dictionary persistent;
    Dictionary registered;
    std::vector<Change> unsaved; ///< what the keys changed since the last save held before
    std::vector<Observer> observers;
    bool broken = false;
    bool saved = false;
};

} // namespace platform::memory
