#include "platform/memory/Bundle.h"

namespace platform::memory {

const Value* Bundle::object(std::string_view key) const {
    const auto found = info.find(key);
    return found == info.end() ? nullptr : &found->second;
}

int Bundle::integer(std::string_view key) const {
    const Value* value = object(key);
    return value == nullptr ? 0 : intValue(*value);
}

std::string_view Bundle::string(std::string_view key) const {
    const Value* value = object(key);
    return value == nullptr ? std::string_view{} : stringValue(*value).value_or("");
}

std::string Bundle::localizedString(std::string_view key) const {
    if (!lookUp || languages.empty()) return std::string(key);
    const std::string& language = languages.front();
    return std::string(lookUp(language.substr(0, language.find_first_of("-_")), key));
}

void Bundle::set(std::string_view key, Value value) {
    info.insert_or_assign(std::string(key), std::move(value));
}

void Bundle::remove(std::string_view key) {
    if (const auto found = info.find(key); found != info.end()) info.erase(found);
}

} // namespace platform::memory
