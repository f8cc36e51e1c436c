#include "scenario/replay/Snapshots.h"

#include "app/Fields.h"
#include "scenario/replay/Player.h"

#include <algorithm>

namespace palisor::replay {

namespace {

using platform::json::Member;
using platform::json::object;
using platform::json::orNull;
using platform::json::Raw;

// ---- the fields of the application object, as values of JSON ------------------------------------

std::optional<std::size_t> plain(const Player& player, ScreenId id) {
    const auto screens = player.platform.displays.screens();
    const auto found = std::ranges::find(screens, id, &platform::Screen::id);
    if (found == screens.end()) return std::nullopt;
    return static_cast<std::size_t>(found - screens.begin());
}

bool plain(const Player& player, TimerId id) {
    return player.platform.runLoop.isRunning(id);
}

std::optional<std::vector<platform::WindowId>>
plain(const Player&, const std::optional<AppDelegate::WindowList>& list) {
    if (!list) return std::nullopt;
    std::vector<platform::WindowId> ids;
    for (const auto& window : *list)
        ids.push_back(window->id());
    return ids;
}

template <class T>
const T& plain(const Player&, const T& value) {
    return value;
}

Raw fields(const Player& player) {
    std::string text = platform::json::members(Member{"show", "fields"});
    player.app.visitFields([&](std::string_view name, const auto& value) {
        platform::json::writeMember(text, name, plain(player, value));
    });
    return {'{' + text + '}'};
}

Raw defaults(const Player& player) {
    const auto& settings = player.platform.settings;
    return object(Member{"show", "defaults"}, Member{"persistent", settings.persistentValues()},
                  Member{"registered", settings.registeredValues()});
}

// ---- the menu -----------------------------------------------------------------------------------

Raw contentsOf(const platform::SliderView& view) {
    const Slider& slider = view.slider;
    return object(
        Member{"slider", object(Member{"min", slider.minimum}, Member{"max", slider.maximum},
                                Member{"value", slider.value}, Member{"ticks", slider.tickMarks})},
        Member{"label", view.label->text});
}

Raw contentsOf(const platform::BoundsView& view) {
    std::map<std::string_view, Raw> boxes;
    for (const auto& group : {view.corners, view.sides})
        for (const auto& named : group)
            boxes[named.name] =
                object(Member{"state", named.box->state}, Member{"enabled", named.box->enabled},
                       Member{"alpha", named.box->alpha});
    return object(Member{"bounds", boxes});
}

Raw contentsOf(std::monostate) {
    return {"null"};
}

std::vector<Raw> entriesOf(const Menu& menu);

Raw entry(const MenuItem& item) {
    if (item.separator) return object(Member{"separator", true});
    std::optional<std::vector<Raw>> submenu;
    if (item.submenu) submenu = entriesOf(*item.submenu);
    const Raw view = std::visit([](const auto& held) { return contentsOf(held); }, item.view);
    return object(Member{"title", item.title}, Member{"text", item.text},
                  Member{"action", orNull(item.action)}, Member{"state", item.state},
                  Member{"enabled", item.enabled}, Member{"greyed", item.greyed()},
                  Member{"toolTip", orNull(item.toolTip)}, Member{"image", orNull(item.image)},
                  Member{"submenu", submenu}, Member{"view", view});
}

std::vector<Raw> entriesOf(const Menu& menu) {
    std::vector<Raw> entries;
    for (const auto& item : menu.items)
        entries.push_back(entry(*item));
    return entries;
}

Raw menu(const Player& player) {
    const Menu* shown = player.platform.statusItem.menu();
    return object(Member{"show", "menu"},
                  Member{"items", shown ? entriesOf(*shown) : std::vector<Raw>{}});
}

// ---- the rest -----------------------------------------------------------------------------------

Raw windows(const Player& player) {
    return object(Member{"show", "windows"}, Member{"windows", player.platform.windows.shown()});
}

Raw timers(const Player& player) {
    std::vector<Raw> timers;
    for (const auto* timer : player.platform.runLoop.timers())
        timers.push_back(object(
            Member{"selector", timer->selector}, Member{"interval", timer->seconds},
            Member{"repeats", timer->repeats}, Member{"due", platform::json::Seconds{timer->due}}));
    return object(Member{"show", "timers"}, Member{"timers", timers});
}

Raw calendar(const Player& player) {
    std::vector<Raw> events;
    for (const platform::CalendarEvent& event : player.platform.calendar.events()) {
        std::vector<Raw> alarms;
        for (const platform::CalendarAlarm& alarm : event.alarms)
            alarms.push_back(object(Member{"offset", alarm.offset}, Member{"sound", alarm.sound},
                                    Member{"default", alarm.isDefault}));
        events.push_back(object(Member{"id", event.id}, Member{"start", event.start},
                                Member{"alarms", alarms}, Member{"detached", event.detached},
                                Member{"recurring", event.recurring}));
    }
    return object(Member{"show", "calendar"}, Member{"events", events});
}

constexpr std::pair<std::string_view, Snapshot> snapshots[] = {
    {"fields", fields},   {"defaults", defaults}, {"menu", menu},
    {"windows", windows}, {"timers", timers},     {"calendar", calendar},
};

} // namespace

Snapshot snapshotOf(std::string_view name) {
    for (const auto& [known, snapshot] : snapshots)
        if (known == name) return snapshot;
    throw StepError("unknown record " + inQuotes(name));
}

} // namespace palisor::replay
