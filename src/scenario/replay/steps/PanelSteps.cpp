#include "app/Variants.h"
#include "scenario/replay/Player.h"
#include "scenario/replay/steps/Steps.h"

#include <algorithm>
#include <array>

// What a person does to the status menu, to the bounds panel and to the info window.

namespace palisor::replay {

namespace {

void printInert(Player& player, std::string_view title) {
    player.platform.effects.emit("inert", platform::memory::Member{"title", title});
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
    return [&player, title = members.text("title")] {
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

struct NamedSlider {
    std::string_view name;
    std::string_view action;
    int variant; ///< the product whose slider it is; 0 for any
};

constexpr std::array<NamedSlider, 3> sliders{{
    {"dark", "sliderDidMove:", variants::barrier},
    {"time", "sliderDidMove:", variants::cursorHider},
    {"velocity", "velocitySliderDidMove:", 0},
}};

Slider* findSlider(Player& player, const NamedSlider& named) {
    if (named.variant != 0 && named.variant != player.app.IDApp()) return nullptr;
    const auto sliderOf = [](MenuItem& item) {
        return std::get_if<platform::SliderView>(&item.view);
    };
    MenuItem* item = findItem(player.platform.statusItem.menu(), [&](MenuItem& entry) {
        const auto* view = sliderOf(entry);
        return view != nullptr && view->slider.action == named.action;
    });
    return item == nullptr ? nullptr : &sliderOf(*item)->slider;
}

Action slider(Player& player, Members& members) {
    const NamedSlider& named = sliders.at(members.oneOf("name", {"dark", "time", "velocity"}));
    const double value = members.number("value");
    const std::array<platform::EventType, 3> events = {platform::EventType::leftMouseUp,
                                                       platform::EventType::leftMouseDragged,
                                                       platform::EventType::mouseMoved};
    const auto event = members.has("event") ? members.oneOf("event", {"up", "drag", "none"}) : 1;
    if (findSlider(player, named) == nullptr)
        throw StepError("the menu holds no slider " + inQuotes(named.name));
    return [&player, &named, value, type = events.at(event)] {
        Slider& found = *findSlider(player, named);
        found.value = std::clamp(value, found.minimum, found.maximum);
        const DuringEvent current(player, {.type = type});
        player.platform.statusItem.menuTarget()->moved(found);
    };
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
        if (!box.enabled) {
            printInert(player, chosen.name);
            return;
        }
        box.state = state;
        if (auto* target = player.platform.statusItem.menuTarget()) target->clicked(box);
    };
}

Action statusClick(Player& player, Members& members) {
    const auto button = members.integer("button", 0, 2);
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
    const std::int64_t flags =
        members.has("modifierFlags") ? members.integer("modifierFlags", 0, mostFlags) : 0;
    const Shortcut shortcut = toShortcut(members.integer("keyCode", 0, mostKeyCode), flags);
    return [&player, shortcut] { player.platform.hotKeys.press(shortcut); };
}

Action link(Player& player, Members& members) {
    const std::array<std::string_view, 2> views{"contact", "web"};
    const std::string_view view = views.at(members.oneOf("view", {"contact", "web"}));
    return [&player, view, url = members.text("url")] {
        player.platform.infoWindows.followLink(view, url);
    };
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
