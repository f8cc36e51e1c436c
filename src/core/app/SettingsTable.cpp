#include "app/SettingsTable.h"

#include "app/Keys.h"
#include "app/Variants.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace palisor {

using platform::Value;

namespace {

using enum Setting::Kind;
using enum Setting::Origin;
using Form = Setting::Form;
using Unit = Setting::Unit;

constexpr Products hider{variants::cursorHider};
constexpr Products calendar{variants::calendarAlerts};
constexpr Products withEdges{variants::cursorHider, variants::desktopSwitcher,
                             variants::wrapAround};
// Desktops lie side by side, so the upper and the lower edge lead nowhere.
constexpr Products withLevelEdges{variants::cursorHider, variants::wrapAround};
constexpr Products withPush{variants::desktopSwitcher, variants::wrapAround, variants::barrier};

constexpr int wholeShare = 100; // in percent
constexpr int longestHideAfter = 30;
constexpr int strongestPush = 100;
constexpr int thirtyDays = 30 * 24 * 60 * 60;

/// An edge or a corner of the monitor that is armed.
constexpr Setting hotPlace(std::string_view key, std::string_view name, Products products,
                           std::string_view meaning) {
    return {.key = key, .name = name, .origin = none, .products = products, .meaning = meaning};
}

constexpr Setting hotSide(std::string_view key, std::string_view name, std::string_view meaning) {
    return {.key = key,
            .name = name,
            .standard = "1",
            .standardIn = withEdges,
            .products = withEdges,
            .meaning = meaning};
}

constexpr auto table = std::to_array<Setting>({
    {.key = keys::CHECK_0,
     .name = "show-info",
     .form = Form::string,
     .origin = firstRun,
     .standard = "0",
     .inverted = true,
     .meaning = "The information window opens at the start"},
    {.key = keys::CHECK_1,
     .name = "start-at-login",
     .form = Form::string,
     .origin = firstRun,
     .standard = "0",
     .meaning = "The program starts when you log in"},
    {.key = keys::SCHEDULE,
     .name = "hide-after",
     .kind = number,
     .form = Form::string,
     .origin = firstRun,
     .standard = "5",
     .products = {variants::cursorHider, variants::crossHair},
     .most = longestHideAfter,
     .unit = Unit::seconds,
     .meaning = "Time without movement after which the cursor is hidden"},
    {.key = keys::HOT_BOUNDS,
     .name = "hot-borders",
     .form = Form::string,
     .origin = firstRun,
     .standard = "0",
     .products = hider,
     .meaning = "The armed sides and corners hide the cursor"},
    hotSide(keys::BUTLATO1, "side-left", "The left side is armed"),
    hotSide(keys::BUTLATO3, "side-right", "The right side is armed"),
    hotPlace(keys::BUTLATO2, "side-top", withLevelEdges, "The upper side is armed"),
    hotPlace(keys::BUTLATO4, "side-bottom", withLevelEdges, "The lower side is armed"),
    hotPlace(keys::BUTANGOLO1, "corner-top-left", withEdges,
             "The sides are armed as far as into this corner"),
    hotPlace(keys::BUTANGOLO2, "corner-top-right", withEdges,
             "The sides are armed as far as into this corner"),
    hotPlace(keys::BUTANGOLO3, "corner-bottom-right", withEdges,
             "The sides are armed as far as into this corner"),
    hotPlace(keys::BUTANGOLO4, "corner-bottom-left", withEdges,
             "The sides are armed as far as into this corner"),
    {.key = keys::ATTIVO,
     .name = "active",
     .standard = "1",
     .meaning = "The product is switched on"},
    {.key = keys::SHOW_ON_SCROLL,
     .name = "show-on-scroll",
     .standard = "1",
     .products = hider,
     .meaning = "Scrolling shows the hidden cursor"},
    {.key = keys::CTRLALTCMD,
     .name = "override",
     .standard = "1",
     .meaning = "Holding Ctrl+Alt+Super switches over for as long as it is held"},
    {.key = keys::VELOCITY_OPTION,
     .name = "push",
     .standard = "0",
     .products = withPush,
     .meaning = "A fast push against an edge takes the cursor across it"},
    {.key = keys::VELOCITY,
     .name = "push-strength",
     .kind = number,
     .standard = "50",
     .products = withPush,
     .least = 1,
     .most = strongestPush,
     .meaning = "How strong such a push must be"},
    {.key = keys::BREAK_AFTER_SWITCH,
     .name = "break-after-switch",
     .standard = "0",
     .products = {variants::wrapAround},
     .meaning = "The cursor rests for a moment where it has come in"},
    {.key = keys::OFFSET,
     .name = "offset",
     .kind = number,
     .standard = "0",
     .products = calendar,
     .least = -thirtyDays,
     .most = thirtyDays,
     .unit = Unit::seconds,
     .meaning = "When the alarm comes, after the event's start or, below 0, before it"},
    {.key = keys::ALARM_SOUND,
     .name = "sound",
     .kind = text,
     .standard = "Pop",
     .products = calendar,
     .meaning = "The name of the alarm's sound"},
    {.key = keys::TIME_MODE,
     .name = "time-mode",
     .standard = "1",
     .products = hider,
     .meaning = "The cursor is hidden when it has not moved for some time"},
    {.key = keys::STAY_HIDDEN,
     .name = "stay-hidden",
     .standard = "0",
     .standardIn = hider,
     .products = hider,
     .meaning = "The cursor stays hidden when it moves"},
    {.key = keys::OTHERS_DARK,
     .name = "darkness",
     .kind = number,
     .standard = "15",
     .standardIn = {variants::barrier},
     .products = {variants::barrier},
     .most = keys::darkestLevel,
     .unit = Unit::percent,
     .meaning = "How dark the monitors are on which the cursor is not"},
    {.key = keys::customShortcut,
     .name = "shortcut",
     .kind = shortcut,
     .origin = none,
     .meaning = "The key combination that switches the product on and off"},
});

} // namespace

Value Setting::standardValue() const {
    if (form == Form::string || kind == text) return Value{std::string(standard)};
    const std::int64_t stored = platform::intValue(Value{std::string(standard)});
    return kind == number ? Value{stored} : Value{stored != 0};
}

std::string Setting::shown(const Value* stored) const {
    switch (kind) {
    case flag: {
        const bool value = stored != nullptr && platform::boolValue(*stored);
        return value != inverted ? "on" : "off";
    }
    case number: {
        const int value = stored == nullptr ? 0 : platform::intValue(*stored);
        if (unit != Unit::percent) return std::to_string(value);
        return std::to_string(std::lround(static_cast<double>(value) * wholeShare / most));
    }
    case text:
        return std::string(stored == nullptr ? "" : platform::stringValue(*stored).value_or(""));
    case shortcut:
        return "none";
    }
    return {};
}

std::string Setting::shownStandard(int variant) const {
    if (!hasStandard(variant)) return shown(nullptr);
    const Value standardStored = standardValue();
    return shown(&standardStored);
}

std::pair<int, int> Setting::range() const {
    if (unit == Unit::percent) return {0, wholeShare};
    return {least, most};
}

std::span<const Setting> settingsTable() {
    return table;
}

const Setting* findSetting(std::string_view keyOrName) {
    const auto found = std::ranges::find_if(table, [keyOrName](const Setting& one) {
        return one.key == keyOrName || one.name == keyOrName;
    });
    return found == table.end() ? nullptr : &*found;
}

} // namespace palisor
