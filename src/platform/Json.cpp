#include "platform/Json.h"

namespace platform {

const JsonValue* JsonValue::member(std::string_view name) const {
    const auto* object = std::get_if<Object>(&held);
    if (object == nullptr) return nullptr;
    const auto found = object->find(name);
    return found == object->end() ? nullptr : &found->second;
}

} // namespace platform
