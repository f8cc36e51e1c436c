#include "platform/memory/Settings.h"

#include <algorithm>

namespace platform::memory {

namespace {

// Assigns without making a key text where the key is there already.
void store(Dictionary& values, std::string_view key, Value value) {
    if (const auto found = values.find(key); found != values.end())
        found->second = std::move(value);
    else
        values.emplace(key, std::move(value));
}

const Value* look(const Dictionary& values, std::string_view key) {
    const auto found = values.find(key);
    return found == values.end() ? nullptr : &found->second;
}

} // namespace

const Value* Settings::object(std::string_view key) const {
    const Value* value = look(persistent, key);
    return value != nullptr ? value : look(registered, key);
}

void Settings::assign(std::string_view key, std::optional<Value> value) {
    const Value* before = look(persistent, key);
    unsaved.emplace_back(key, before == nullptr ? std::nullopt : std::optional(*before));
    put(key, std::move(value));
}

/// Makes a change of one key, and tells those who observe it.
void Settings::changing(std::string_view key, const std::function<void()>& change) {
    const bool observed = std::ranges::find(observers, key, &Observer::key) != observers.end();
    const auto read = [this, key] {
        const Value* now = object(key);
        return now == nullptr ? std::nullopt : std::optional(*now);
    };
    const auto before = observed ? read() : std::nullopt;
    change();
    if (!observed || read() == before) return;
    for (const Observer& observer : observers)
        if (observer.key == key) observer.changed();
}

void Settings::put(std::string_view key, std::optional<Value> value) {
    changing(key, [&] {
        if (value)
            store(persistent, key, *std::move(value));
        else if (const auto found = persistent.find(key); found != persistent.end())
            persistent.erase(found);
    });
}

void Settings::observe(std::string_view key, std::function<void()> changed) {
    observers.push_back({std::string(key), std::move(changed)});
}

void Settings::set(std::string_view key, Value value) {
    effects.emit("write", Member{"key", key}, Member{"value", value});
    assign(key, std::move(value));
}

void Settings::remove(std::string_view key) {
    effects.emit("write", Member{"key", key}, Member{"value", nullptr});
    assign(key, std::nullopt);
}

void Settings::registerDefault(std::string_view key, Value value) {
    effects.emit("register", Member{"key", key}, Member{"value", value});
    changing(key, [&] { store(registered, key, std::move(value)); });
}

void Settings::synchronize() {
    effects.emit("synchronize");
    save();
}

void Settings::save() {
    if (broken || unsaved.empty()) return;
    unsaved.clear();
    saved = true;
}

void Settings::resetStandardUserDefaults() {
    auto forgotten = std::exchange(unsaved, {});
    // Not by a view in reverse, which clang 14, the fuzzers' compiler, does not take.
    for (auto change = forgotten.rbegin(); change != forgotten.rend(); ++change)
        put(change->first, std::move(change->second));
}

void Settings::setPersistentDomain(Dictionary values) {
    std::vector<std::string> gone;
    for (const auto& [key, value] : persistent)
        if (!values.contains(key)) gone.push_back(key);
    for (const std::string& key : gone)
        remove(key);
    for (auto& [key, value] : values)
        set(key, std::move(value));
}

void Settings::edit(std::string_view key, std::optional<Value> value) {
    saved = true;
    std::erase_if(unsaved, [key](const Change& change) { return change.first == key; });
    put(key, std::move(value));
}

} // namespace platform::memory
