#include "platform/sway/keys/Keyboard.h"

#include <algorithm>

namespace platform::sway {

namespace {

std::string textOf(const JsonValue& object, std::string_view name) {
    const JsonValue* const member = object.member(name);
    const auto* text = member ? std::get_if<std::string>(&member->held) : nullptr;
    return text ? *text : std::string();
}

bool isSet(const JsonValue& object, std::string_view name) {
    const JsonValue* const member = object.member(name);
    const auto* value = member ? std::get_if<bool>(&member->held) : nullptr;
    return value && *value;
}

} // namespace

std::string commandTo(int direction, const std::string& output, const JsonValue& workspaces) {
    const auto* all = std::get_if<JsonValue::List>(&workspaces.held);
    if (!all) return {};
    std::vector<const JsonValue*> there;
    for (const JsonValue& one : *all)
        if (textOf(one, "output") == output) there.push_back(&one);
    const auto shown =
        std::ranges::find_if(there, [](const JsonValue* one) { return isSet(*one, "visible"); });
    if (shown == there.end()) return {};
    const auto wanted = (shown - there.begin()) + direction;
    if (wanted < 0 || wanted >= std::ssize(there)) return {};
    // A workspace's own name may be what no quotes can hold.
    const std::string focusing =
        isSet(**shown, "focused") ? "" : "focus output \"" + output + "\"; ";
    return focusing + (direction > 0 ? "workspace next_on_output" : "workspace prev_on_output");
}

void Keyboard::go(int direction) {
    const auto* const place = outputs.at(outputs.toLayout(pointer.lastPlace()));
    if (!place) return;
    compositor.askWorkspaces([this, direction, output = place->name](const JsonValue& answer) {
        const std::string command = commandTo(direction, output, answer);
        if (!command.empty()) compositor.run(command);
    });
}

} // namespace platform::sway
