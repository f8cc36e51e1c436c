#include "platform/layershell/wayfire/Bindings.h"

#include "platform/layershell/wayfire/KeyNames.h"

#include <utility>

namespace platform::layershell::wayfire {

namespace {

std::int64_t idIn(const JsonValue& message) {
    const JsonValue* const id = message.member("binding-id");
    const auto* number = id ? std::get_if<std::int64_t>(&id->held) : nullptr;
    return number ? *number : 0;
}

} // namespace

std::unique_ptr<Bindings> Bindings::open(const std::string& socket, Descriptors& descriptors,
                                         std::function<void(const std::string&)> refused) {
    auto ipc = Ipc::open(socket, descriptors);
    if (!ipc) return nullptr;
    return std::unique_ptr<Bindings>(new Bindings(std::move(ipc), std::move(refused)));
}

Bindings::Bindings(std::unique_ptr<Ipc> connected, std::function<void(const std::string&)> refused)
    : ipc(std::move(connected)), refusedHandler(std::move(refused)) {
    ipc->onEvent([this](const JsonValue& event) {
        const std::int64_t id = idIn(event);
        for (const auto& [combination, one] : bound) {
            if (one.id != id || id == 0) continue;
            const auto pressed = one.pressed; // which may bind others
            if (pressed) pressed();
            return;
        }
    });
}

void Bindings::hear(const std::vector<Binding>& wanted) {
    std::set<std::string> combinations;
    for (const Binding& one : wanted) {
        const std::string combination = bindingOf(one.shortcut);
        if (combination.empty()) continue;
        combinations.insert(combination);
        bind(combination, one.pressed);
    }
    for (const std::string& combination : std::exchange(shortcuts, combinations)) {
        if (combinations.contains(combination)) continue;
        Bound& one = bound[combination];
        one.pressed = {};
        if (one.id != 0) unbind(std::exchange(one.id, 0));
    }
}

// Each of the three with the two others held.
void Bindings::hearHeldModifiers(std::function<void()> held) {
    for (const char* combination :
         {"<alt> <super> KEY_LEFTCTRL", "<ctrl> <super> KEY_LEFTALT", "<ctrl> <alt> KEY_LEFTMETA"})
        bind(combination, held);
}

void Bindings::bind(const std::string& combination, std::function<void()> pressed) {
    const auto [place, isNew] = bound.try_emplace(combination);
    const bool isAsked = !isNew && (place->second.pressed || place->second.id != 0);
    place->second.pressed = std::move(pressed);
    if (isAsked) return;
    ipc->ask("command/register-binding", R"({"binding":")" + combination + R"("})",
             [this, combination](const JsonValue& answer) { answered(combination, answer); });
}

void Bindings::answered(const std::string& combination, const JsonValue& answer) {
    const std::int64_t id = idIn(answer);
    Bound& one = bound[combination];
    if (id == 0) {
        const JsonValue* const error = answer.member("error");
        const auto* why = error ? std::get_if<std::string>(&error->held) : nullptr;
        if (refusedHandler) std::exchange(refusedHandler, {})(why ? *why : "no answer");
    } else if (!one.pressed || one.id != 0) {
        unbind(id); // not wanted any more, or asked for twice meanwhile
    } else {
        one.id = id;
    }
}

void Bindings::unbind(std::int64_t id) {
    ipc->ask("command/unregister-binding", R"({"binding-id":)" + std::to_string(id) + "}", {});
}

} // namespace platform::layershell::wayfire
