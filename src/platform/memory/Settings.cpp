#include "platform/memory/Settings.h"

#include <ranges>

namespace platform::memory {

namespace {

// Assigns without making a key text where the key is there already.
void put(Dictionary& values, std::string_view key, Value value) {
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
    if (value)
        put(persistent, key, *std::move(value));
    else if (const auto found = persistent.find(key); found != persistent.end())
        persistent.erase(found);
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
    put(registered, key, std::move(value));
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
    for (auto& [key, value] : unsaved | std::views::reverse) {
        if (value)
            put(persistent, key, *std::move(value));
        else
            persistent.erase(key);
    }
    unsaved.clear();
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
    if (value)
        put(persistent, key, *std::move(value));
    else if (const auto found = persistent.find(key); found != persistent.end())
        persistent.erase(found);
}

} // namespace platform::memory
