#include "platform/JsonBuilder.h"

#include <limits>
#include <utility>

namespace platform {

std::optional<JsonValue> JsonBuilder::take() && {
    if (!levels.empty()) return std::nullopt;
    return std::move(root);
}

bool JsonBuilder::number_unsigned(std::uint64_t number) {
    if (number <= std::uint64_t{std::numeric_limits<std::int64_t>::max()})
        return add({static_cast<std::int64_t>(number)});
    return add({static_cast<double>(number)});
}

bool JsonBuilder::number_float(double number, const std::string&) {
    return add({number});
}

bool JsonBuilder::key(std::string& name) {
    levels.back().key = std::move(name);
    return true;
}

bool JsonBuilder::add(JsonValue value) {
    if (levels.empty()) {
        const bool holdsOthers = value.held.index() >= JsonValue{JsonValue::List{}}.held.index();
        if (holdsOthers) root = std::move(value);
        return holdsOthers;
    }
    Level& level = levels.back();
    if (auto* list = std::get_if<JsonValue::List>(&level.value.held))
        list->push_back(std::move(value));
    else
        std::get<JsonValue::Object>(level.value.held)
            .insert_or_assign(std::move(level.key), std::move(value));
    return true;
}

bool JsonBuilder::open(JsonValue value) {
    if (levels.size() == Json::deepest) return false;
    levels.push_back({std::move(value), {}});
    return true;
}

bool JsonBuilder::close() {
    JsonValue value = std::move(levels.back().value);
    levels.pop_back();
    return add(std::move(value));
}

} // namespace platform
