#include "scenario/replay/Player.h"
#include "scenario/replay/steps/Steps.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace palisor::replay {

namespace {

using platform::EventType;
using platform::Value;

/// A value of the information dictionary; a fraction is cut off, as a reader of integers does. A
/// list or an object becomes data, which no reader makes sense of.
Value informationOf(const Json& value) {
    if (value.is_string()) return Value{value.get<std::string>()};
    if (value.is_boolean()) return Value{value.get<bool>()};
    if (!value.is_number()) return Value{platform::Data{}};
    constexpr double limit = std::numeric_limits<int>::max(); // more than any reader takes
    return Value{static_cast<std::int64_t>(std::clamp(value.get<double>(), -limit - 1, limit))};
}

Action bundle(Player& player, Members& members) {
    return [&player, info = toObject(members.get("info"), members.describe("info"))] {
        for (const auto& [key, value] : info.items()) {
            if (value.is_null())
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
    throw StepError("\"version\" must be a version such as \"10.15.7\"");
}

platform::LocalTime toDateTime(const std::string& text) {
    constexpr std::string_view form = "dddd-dd-ddTdd:dd:dd";
    const bool fits = std::ranges::equal(text, form, [](char c, char expected) {
        return expected == 'd' ? c >= '0' && c <= '9' : c == expected;
    });
    const auto field = [&text](std::size_t at) { return std::stoi(text.substr(at, 2)); };
    if (!fits || field(5) < 1 || field(5) > 12 || field(8) < 1 || field(8) > 31 || field(11) > 23 ||
        field(14) > 59 || field(17) > 60)
        throw StepError("\"now\" must be a date and time such as \"2026-01-02T15:04:05\"");
    return {.year = field(0) * 100 + field(2),
            .month = field(5),
            .day = field(8),
            .hour = field(11),
            .minute = field(14),
            .second = field(17)};
}

Action system(Player& player, Members& members) {
    std::vector<Action> changes;
    if (members.has("version"))
        changes.push_back([&player, version = toVersion(members.text("version"))] {
            player.platform.system.setVersion(version);
        });
    if (members.has("languages"))
        changes.push_back([&player, languages = members.texts("languages")] {
            player.platform.setLanguages(languages);
        });
    if (members.has("model"))
        changes.push_back([&player, model = members.text("model")] {
            player.platform.system.setMachineModel(model);
        });
    if (members.has("uuid"))
        changes.push_back([&player, uuid = members.text("uuid")] {
            player.platform.system.setMachineIdentifier(uuid);
        });
    if (members.has("locale"))
        changes.push_back([&player, country = members.text("locale")] {
            player.platform.system.setCountryCode(country);
        });
    if (members.has("now"))
        changes.push_back([&player, now = toDateTime(members.text("now"))] {
            player.platform.system.setLocalTime(now);
        });
    return [changes] {
        for (const Action& change : changes)
            change();
    };
}

Action screens(Player& player, Members& members) {
    std::vector<platform::Rect> frames;
    for (const Json& frame : toList(members.get("frames"), members.describe("frames")))
        frames.push_back(toRect(frame, "each frame"));
    std::size_t main = 0;
    if (members.has("main")) {
        const std::int64_t last = std::max<std::int64_t>(std::ssize(frames) - 1, 0);
        main = static_cast<std::size_t>(members.integer("main", 0, last));
    }
    return [&player, frames, main] {
        player.platform.displays.replace(frames, main);
        if (player.launched) player.platform.displays.notify();
    };
}

Value settingOf(const Json& value, const std::string& what) {
    if (value.is_string()) return Value{value.get<std::string>()};
    if (value.is_boolean()) return Value{value.get<bool>()};
    if (value.is_number_integer()) return Value{toInteger(value, what)};
    throw StepError(what + " must be a text, a boolean or an integer");
}

Action defaults(Player& player, Members& members) {
    platform::Dictionary set;
    if (const Json* values = members.find("set"))
        for (const auto& [key, value] : toObject(*values, members.describe("set")).items())
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

struct NamedType {
    std::string_view name;
    EventType type;
};

constexpr std::array<NamedType, 15> pointerTypes{{
    {"leftMouseDown", EventType::leftMouseDown},
    {"leftMouseUp", EventType::leftMouseUp},
    {"rightMouseDown", EventType::rightMouseDown},
    {"rightMouseUp", EventType::rightMouseUp},
    {"mouseMoved", EventType::mouseMoved},
    {"leftMouseDragged", EventType::leftMouseDragged},
    {"rightMouseDragged", EventType::rightMouseDragged},
    {"scrollWheel", EventType::scrollWheel},
    {"tabletPoint", EventType::tabletPoint},
    {"tabletProximity", EventType::tabletProximity},
    {"otherMouseDown", EventType::otherMouseDown},
    {"otherMouseUp", EventType::otherMouseUp},
    {"otherMouseDragged", EventType::otherMouseDragged},
    {"keyDown", EventType::keyDown},
    {"keyUp", EventType::keyUp},
}};

EventType toPointerType(const std::string& name) {
    const auto found = std::ranges::find(pointerTypes, name, &NamedType::name);
    if (found == pointerTypes.end()) throw StepError("unknown type of event " + inQuotes(name));
    return found->type;
}

Action pointer(Player& player, Members& members) {
    const auto at = members.point("at");
    const auto type =
        members.has("type") ? toPointerType(members.text("type")) : EventType::mouseMoved;
    return [&player, at, type] { player.platform.move(at, type); };
}

Action cursor(Player& player, Members& members) {
    return [&player, at = members.point("at")] { player.platform.pointer.place(at); };
}

Action flagsChanged(Player& player, Members& members) {
    constexpr std::int64_t mostKeyCode = std::numeric_limits<std::uint16_t>::max();
    const auto keyCode = static_cast<std::uint16_t>(members.integer("keyCode", 0, mostKeyCode));
    return [&player, keyCode] { player.platform.changeModifier(keyCode); };
}

Action advance(Player& player, Members& members) {
    constexpr double most = 1e9; // thirty years; the clock counts nanoseconds in 64 bits
    const double seconds = members.number("seconds");
    if (!(seconds >= 0 && seconds <= most))
        throw StepError("\"seconds\" must be a number from 0 to 1000000000");
    return [&player, seconds] { player.platform.advance(seconds); };
}

constexpr StepKind kinds[] = {
    {"bundle", bundle},
    {"system", system},
    {"screens", screens},
    {"defaults", defaults},
    {"cursor", cursor},
    {"pointer", pointer},
    {"flagsChanged", flagsChanged},
    {"advance", advance},
};

} // namespace

std::span<const StepKind> worldSteps() {
    return kinds;
}

} // namespace palisor::replay
