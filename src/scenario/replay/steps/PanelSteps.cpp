#include "scenario/replay/Player.h"
#include "scenario/replay/steps/Steps.h"

#include <algorithm>
#include <array>

// What a person does to the status menu, to the bounds panel and to the info window.

namespace palisor::replay {

namespace {

void printInert(Player& player, std::string_view title) {
    player.platform.effects.emit("inert", platform::json::Member{"title", title});
}

/// The event that the program reads as its current one, for as long as this lives.
class DuringEvent {
  public:
    DuringEvent(Player& played, platform::CurrentEvent event) : player(played) {
        player.platform.application.setCurrentEvent(event);
    }
    ~DuringEvent() { player.platform.application.setCurrentEvent({}); }
    DuringEvent(const DuringEvent&) = delete;
    DuringEvent& operator=(const DuringEvent&) = delete;

  private:
    Player& player;
};

/// The first entry that `fits`, in the menu or in what hangs from it; null where there is none.
template <class Fits>
MenuItem* findItem(const Menu* menu, const Fits& fits) {
    if (menu == nullptr) return nullptr;
    for (const auto& item : menu->items) {
        if (fits(*item)) return item.get();
        if (MenuItem* inside = findItem(item->submenu.get(), fits)) return inside;
    }
    return nullptr;
}

Action choose(Player& player, Members& members) {
    return [&player, title = members.get<std::string>(names::title)] {
        auto& statusItem = player.platform.statusItem;
        MenuItem* item = findItem(statusItem.menu(), [&title](const MenuItem& entry) {
            return !entry.title.empty() && (entry.title == title || entry.text == title);
        });
        if (item == nullptr || item->greyed() || item->action.empty())
            printInert(player, title);
        else
            statusItem.menuTarget()->chosen(*item);
    };
}

Slider* findSlider(Player& player, std::string_view name) {
    Slider* found = nullptr;
    findItem(player.platform.statusItem.menu(), [&](MenuItem& entry) {
        auto* view = std::get_if<platform::SliderView>(&entry.view);
        if (view != nullptr && scenario::nameOf(view->slider) == name) found = &view->slider;
        return found != nullptr;
    });
    return found;
}

Action slider(Player& player, Members& members) {
    const auto name = scenario::sliders.at(members.oneOf(names::name, scenario::sliders));
    const auto value = members.get<double>(names::value);
    constexpr std::array events = {platform::EventType::leftMouseUp,
                                   platform::EventType::leftMouseDragged,
                                   platform::EventType::mouseMoved};
    const auto event = members.has(names::event) ? members.oneOf(names::event, scenario::moments)
                                                 : scenario::duringDrag;
    if (findSlider(player, name) == nullptr)
        throw StepError("the menu holds no slider " + inQuotes(name));
    return [&player, name, value, type = events.at(event)] {
        Slider& found = *findSlider(player, name);
        found.value = std::clamp(value, found.minimum, found.maximum);
        const DuringEvent current(player, {.type = type});
        player.platform.statusItem.menuTarget()->moved(found);
    };
}

Action button(Player& player, Members& members) {
    constexpr std::array<CheckBox AppDelegate::*, scenario::buttons.size()> boxes{
        &AppDelegate::butlato1,   &AppDelegate::butlato2,   &AppDelegate::butlato3,
        &AppDelegate::butlato4,   &AppDelegate::butangolo1, &AppDelegate::butangolo2,
        &AppDelegate::butangolo3, &AppDelegate::butangolo4};
    const std::size_t index = members.oneOf(names::name, scenario::buttons);
    const int state = static_cast<int>(members.integer(names::state, 0, 1));
    return [&player, &box = player.app.*boxes.at(index), index, state] {
        if (!box.enabled) {
            printInert(player, scenario::buttons.at(index));
            return;
        }
        box.state = state;
        if (auto* target = player.platform.statusItem.menuTarget()) target->clicked(box);
    };
}

Action statusClick(Player& player, Members& members) {
    const auto button = members.integer(names::button, 0, 2);
    const std::array<platform::EventType, 3> types = {platform::EventType::leftMouseDown,
                                                      platform::EventType::rightMouseDown,
                                                      platform::EventType::otherMouseDown};
    return [&player, button, type = types.at(static_cast<std::size_t>(button))] {
        auto& statusItem = player.platform.statusItem;
        if (statusItem.menu() == nullptr) return;
        const DuringEvent current(player, {.type = type, .buttonNumber = static_cast<int>(button)});
        statusItem.menuTarget()->menuWillOpen(*statusItem.menu());
    };
}

Action hotKey(Player& player, Members& members) {
    const auto flags = members.has(names::modifierFlags) ? modifierFlagsOf(members) : 0;
    return [&player, shortcut = platform::Shortcut{keyCodeOf(members), flags}] {
        player.platform.hotKeys.press(shortcut);
    };
}

Action link(Player& player, Members& members) {
    static constexpr std::array<std::string_view, 2> views{"contact", "web"};
    const std::string_view view = views.at(members.oneOf("view", views));
    return [&player, view, url = members.get<std::string>("url")] {
        player.platform.infoWindows.followLink(view, url);
    };
}

constexpr StepKind kinds[] = {
    {names::choose, choose},           {names::slider, slider}, {names::button, button},
    {names::statusClick, statusClick}, {"hotKey", hotKey},      {"link", link},
};

} // namespace

std::span<const StepKind> panelSteps() {
    return kinds;
}

} // namespace palisor::replay
