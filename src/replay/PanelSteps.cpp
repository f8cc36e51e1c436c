#include "replay/Player.h"
#include "replay/Steps.h"

#include <array>

// What a person does to the menu, to the bounds panel and to the info window. The program has no
// menu, no hot keys and no info window yet, so nothing comes of those steps; they are read as
// strictly as the others.

namespace palisor::replay {

namespace {

const Action nothing = [] {};

Action choose(Player&, Members& members) {
    members.text("title");
    return nothing;
}

Action slider(Player&, Members& members) {
    members.oneOf("name", {"dark", "time", "velocity"});
    members.number("value");
    if (members.has("event")) members.oneOf("event", {"up", "drag", "none"});
    return nothing;
}

struct NamedButton {
    std::string_view name;
    CheckBox AppDelegate::*button;
};

constexpr std::array<NamedButton, 8> buttons{{
    {"butlato1", &AppDelegate::butlato1},
    {"butlato2", &AppDelegate::butlato2},
    {"butlato3", &AppDelegate::butlato3},
    {"butlato4", &AppDelegate::butlato4},
    {"butangolo1", &AppDelegate::butangolo1},
    {"butangolo2", &AppDelegate::butangolo2},
    {"butangolo3", &AppDelegate::butangolo3},
    {"butangolo4", &AppDelegate::butangolo4},
}};

Action button(Player& player, Members& members) {
    std::vector<std::string_view> names;
    for (const NamedButton& named : buttons)
        names.push_back(named.name);
    const NamedButton& chosen = buttons.at(members.oneOf("name", names));
    const int state = static_cast<int>(members.integer("state", 0, 1));
    return [&player, &chosen, state] {
        CheckBox& box = player.app.*chosen.button;
        if (box.enabled)
            box.state = state;
        else
            player.platform.effects.emit("inert", platform::memory::Member{"title", chosen.name});
    };
}

Action statusClick(Player&, Members& members) {
    members.integer("button", 0, 2);
    return nothing;
}

Action hotKey(Player&, Members& members) {
    members.integer("keyCode");
    if (members.has("modifierFlags")) members.integer("modifierFlags");
    return nothing;
}

Action link(Player&, Members& members) {
    members.oneOf("view", {"contact", "web"});
    members.text("url");
    return nothing;
}

constexpr StepKind kinds[] = {
    {"choose", choose},           {"slider", slider}, {"button", button},
    {"statusClick", statusClick}, {"hotKey", hotKey}, {"link", link},
};

} // namespace

std::span<const StepKind> panelSteps() {
    return kinds;
}

} // namespace palisor::replay
