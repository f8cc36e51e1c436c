#include "platform/layershell/hyprland/Bindings.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace platform::layershell::hyprland {

std::unique_ptr<Bindings> Bindings::open(const std::string& folder, std::string program,
                                         Descriptors& descriptors,
                                         std::function<void(const std::string&)> refused) {
    auto ipc = Ipc::open(folder, descriptors);
    if (!ipc) return nullptr;
    return std::unique_ptr<Bindings>(
        new Bindings(std::move(ipc), std::move(program), std::move(refused)));
}

Bindings::Bindings(std::unique_ptr<Ipc> connected, std::string owner,
                   std::function<void(const std::string&)> refused)
    : ipc(std::move(connected)), program(std::move(owner)), refusedHandler(std::move(refused)) {
    ipc->onEvent([this](std::string_view event, std::string_view data) { happened(event, data); });
    ipc->ask(Grammar::question, [this](const std::optional<std::string>& answer) {
        grammar = Grammar::spokenIn(answer.value_or(std::string()));
        bindAll();
    });
}

Bindings::~Bindings() {
    if (!bound.empty()) ipc->askLast(grammar->request(releases()));
}

void Bindings::hear(const std::vector<Binding>& wanted) {
    shortcuts.clear();
    for (const Binding& one : wanted)
        if (auto combination = combinationOf(one.shortcut))
            shortcuts.push_back({std::move(*combination), one.pressed, one.isChosen});
    bindAll();
}

// Each of the three with the two others held.
void Bindings::hearHeldModifiers(std::function<void()> held) {
    constexpr std::uint32_t control = Shortcut::control, alt = Shortcut::option,
                            super = Shortcut::command;
    modifiers.clear();
    for (const auto& [others, key] :
         {std::pair(alt | super, "Control_L"), std::pair(control | super, "Alt_L"),
          std::pair(control | alt, "Super_L")})
        modifiers.push_back({{others, key}, held, false, true});
    bindAll();
}

void Bindings::happened(std::string_view event, std::string_view data) {
    if (event == "configreloaded") {
        bound.clear();
        bindAll();
    }
    const std::string beginning = program + "-";
    if (event != "custom" || !data.starts_with(beginning)) return;
    std::size_t number = 0;
    std::from_chars(data.data() + beginning.size(), data.data() + data.size(), number);
    if (number >= bound.size()) return;
    const auto pressed = bound[number].pressed; // which may bind others
    if (pressed) pressed();
}

void Bindings::bindAll() {
    if (!grammar || std::exchange(isLooking, true)) return;
    ipc->ask("j/binds", [this](const std::optional<std::string>& answer) {
        isLooking = false;
        bindBeside(boundIn(answer.value_or(std::string())));
    });
}

// What is left over of a program that was killed has its name, as has what it has bound until now.
void Bindings::bindBeside(const std::vector<Bound>& all) {
    std::vector<std::string> old;
    std::vector<Bound> others;
    for (const Bound& one : all)
        if (auto statement = grammar->unbind(one, program))
            old.push_back(std::move(*statement));
        else
            others.push_back(one);
    bound.clear();
    std::vector<Wanted> wanted = shortcuts;
    wanted.insert(wanted.end(), modifiers.begin(), modifiers.end());
    if (!old.empty()) ipc->ask(grammar->request(old), {});
    for (const Wanted& one : wanted) {
        const bool isTaken = std::ranges::any_of(
            others, [&](const Bound& other) { return other.isOf(one.combination); });
        if (!isTaken)
            bind(one);
        else if (one.isChosen)
            refusedHandler("it is bound to something else");
    }
}

void Bindings::bind(const Wanted& one) {
    const std::string event = program + "-" + std::to_string(bound.size());
    bound.push_back(one);
    ipc->ask(grammar->request({grammar->bind(one.combination, event, program, one.passes)}),
             [this, isChosen = one.isChosen](const std::optional<std::string>& answer) {
                 if (isChosen && answer != "ok") refusedHandler(answer.value_or("no answer"));
             });
}

std::vector<std::string> Bindings::releases() const {
    std::vector<std::string> all;
    for (const Wanted& one : bound)
        all.push_back(grammar->unbind(one.combination));
    return all;
}

} // namespace platform::layershell::hyprland
