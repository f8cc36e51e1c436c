#include "scenario/replay/Player.h"
#include "scenario/replay/steps/Steps.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace palisor::replay {

namespace {

using platform::EventType;
using platform::Value;

/// A value of the information dictionary; a fraction is cut off, as a reader of integers does. A
/// list or an object becomes data, which no reader makes sense of.
Value informationOf(const Json& value) {
    if (const auto* text = std::get_if<std::string>(&value.held)) return Value{*text};
    if (const auto* flag = std::get_if<bool>(&value.held)) return Value{*flag};
    if (value.held.index() > Json{0.0}.held.index()) return Value{platform::Data{}};
    constexpr double limit = std::numeric_limits<int>::max(); // more than any reader takes
    return Value{static_cast<std::int64_t>(std::clamp(to<double>(value, {}), -limit - 1, limit))};
}

Action bundle(Player& player, Members& members) {
    return [&player, info = members.get<Json::Object>(names::info)] {
        for (const auto& [key, value] : info) {
            if (value == Json{})
                player.platform.bundle.remove(key);
            else
                player.platform.bundle.set(key, informationOf(value));
        }
    };
}

/// One to three numbers with points between them.
platform::Version toVersion(const std::string& text) {
    std::array<int, 3> parts{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int& part : parts) {
        const auto [next, error] = std::from_chars(at, end, part);
        if (error != std::errc{} || part < 0) break;
        if (next == end) return {parts[0], parts[1], parts[2]};
        if (*next != '.') break;
        at = next + 1;
    }
    mustBe("\"version\"", "a version such as \"10.15.7\"");
}

platform::LocalTime toDateTime(const std::string& text) {
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd";
    const bool fits = std::ranges::equal(text, form, [](char c, char expected) {
        return expected == 'd' ? c >= '0' && c <= '9' : c == expected;
    });
    const auto field = [&text](std::size_t at) { return std::stoi(text.substr(at, 2)); };
    if (!fits || field(5) < 1 || field(5) > 12 || field(8) < 1 || field(8) > 31 || field(11) > 23 ||
        field(14) > 59 || field(17) > 60)
        mustBe("\"now\"", "a date and time such as \"2026-01-02T15:04:05\"");
    return {.year = field(0) * 100 + field(2),
            .month = field(5),
            .day = field(8),
            .hour = field(11),
            .minute = field(14),
            .second = field(17)};
}

Action system(Player& player, Members& members) {
    std::vector<Action> changes;
    const auto change = [&](std::string_view name, auto read, auto make) {
        if (members.has(name))
            changes.push_back(
                [make, value = read(members.get<std::string>(name))] { make(value); });
    };
    auto& system = player.platform.system;
    const std::identity asItIs;
    change("version", toVersion, [&system](const auto& version) { system.setVersion(version); });
    if (members.has("languages"))
        changes.push_back([&player, languages = members.texts("languages")] {
            player.platform.setLanguages(languages);
        });
    change("model", asItIs, [&system](const auto& model) { system.setMachineModel(model); });
    change("uuid", asItIs, [&system](const auto& uuid) { system.setMachineIdentifier(uuid); });
    change("locale", asItIs, [&system](const auto& country) { system.setCountryCode(country); });
    change("now", toDateTime, [&system](const auto& now) { system.setLocalTime(now); });
    return [changes] {
        for (const Action& each : changes)
            each();
    };
}

Action screens(Player& player, Members& members) {
    std::vector<platform::Rect> frames;
    for (const Json& frame : members.get<Json::List>(names::frames))
        frames.push_back(to<platform::Rect>(frame, "each frame"));
    std::size_t main = 0;
    if (members.has(names::main)) {
        const std::int64_t last = std::max<std::int64_t>(std::ssize(frames) - 1, 0);
        main = static_cast<std::size_t>(members.integer(names::main, 0, last));
    }
    return [&player, frames, main] {
        player.platform.displays.replace(frames, main);
        if (player.launched) player.platform.displays.notify();
    };
}

Value settingOf(const Json& value, const std::string& what) {
    if (const auto* text = std::get_if<std::string>(&value.held)) return Value{*text};
    if (const auto* flag = std::get_if<bool>(&value.held)) return Value{*flag};
    if (const auto* number = std::get_if<std::int64_t>(&value.held)) return Value{*number};
    mustBe(what, "a text, a boolean or an integer");
}

Action defaults(Player& player, Members& members) {
    platform::Dictionary set;
    for (const auto& [key, value] : members.get<Json::Object>(names::set, {}))
        set[key] = settingOf(value, inQuotes(key));
    std::vector<std::string> remove;
    if (members.has("remove")) remove = members.texts("remove");
    return [&player, set, remove] {
        for (const auto& [key, value] : set)
            player.platform.settings.edit(key, value);
        for (const std::string& key : remove)
            player.platform.settings.edit(key, std::nullopt);
    };
}

EventType toPointerType(const std::string& name) {
    const auto found =
        std::ranges::find(scenario::pointerTypes, name, &scenario::PointerType::name);
    if (found == scenario::pointerTypes.end())
        throw StepError("unknown type of event " + inQuotes(name));
    return found->type;
}

Action pointer(Player& player, Members& members) {
    const auto at = members.get<platform::Point>(names::at);
    const auto type = toPointerType(members.get<std::string>(names::type, "mouseMoved"));
    return [&player, at, type] { player.platform.move(at, type); };
}

Action cursor(Player& player, Members& members) {
    return [&player, at = members.get<platform::Point>(names::at)] {
        player.platform.pointer.place(at);
    };
}

Action flagsChanged(Player& player, Members& members) {
    return [&player, keyCode = keyCodeOf(members)] { player.platform.changeModifier(keyCode); };
}

Action advance(Player& player, Members& members) {
    constexpr double most = 1e9; // thirty years; the clock counts nanoseconds in 64 bits
    const auto seconds = members.get<double>(names::seconds);
    if (!(seconds >= 0 && seconds <= most)) mustBe("\"seconds\"", "a number from 0 to 1000000000");
    return [&player, seconds] { player.platform.advance(seconds); };
}

constexpr StepKind kinds[] = {
    {names::bundle, bundle},
    {"system", system},
    {names::screens, screens},
    {names::defaults, defaults},
    {"cursor", cursor},
    {names::pointer, pointer},
    {names::flagsChanged, flagsChanged},
    {names::advance, advance},
};

} // namespace

std::span<const StepKind> worldSteps() {
    return kinds;
}

} // namespace palisor::replay
