#include "scenario/replay/Player.h"
#include "scenario/replay/steps/Steps.h"

#include <utility>

namespace palisor::replay {

namespace {

/// A member whose only value is true, and which no other step member goes with.
bool standsAlone(Members& members, std::string_view name,
                 std::initializer_list<std::string_view> others) {
    if (!members.has(name)) return false;
    if (!members.get<bool>(name)) mustBe(members.describe(name), "true");
    for (const std::string_view other : others)
        if (members.has(other)) throw StepError(inQuotes(name) + " stands alone");
    return true;
}

Action shortcut(Player& player, Members& members) {
    std::optional<platform::Shortcut> entered;
    if (!standsAlone(members, names::clear, {names::keyCode, names::modifierFlags})) {
        const auto flags = modifierFlagsOf(members);
        entered = {keyCodeOf(members), flags};
    }
    return [&player, entered] { player.enter(entered); };
}

Action reply(Player& player, Members& members) {
    std::optional<std::string> answer;
    if (!standsAlone(members, "error", {"body"})) answer = members.get<std::string>("body");
    return [&player, answer] { player.platform.http.setReply(answer); };
}

Action answers(Player& player, Members& members) {
    std::deque<int> codes;
    for (const Json& code : members.get<Json::List>("codes")) {
        const auto number = to<std::int64_t>(code, "each code");
        if (!std::in_range<int>(number)) mustBe("each code", "an integer of 32 bits");
        codes.push_back(static_cast<int>(number));
    }
    return [&player, codes] { player.platform.alerts.setAnswers(codes); };
}

Action running(Player& player, Members& members) {
    return [&player, identifiers = members.texts("identifiers")] {
        player.platform.workspace.setRunningApplications(identifiers);
    };
}

Action granted(Player& player, Members& members) {
    return [&player, value = members.get<bool>("value")] {
        player.platform.calendar.setGranted(value);
    };
}

platform::CalendarAlarm toAlarm(const Json& value) {
    const auto object = to<Json::Object>(value, "each alarm");
    Members members(object, "of an alarm ");
    platform::CalendarAlarm alarm;
    alarm.offset = members.get("offset", alarm.offset);
    alarm.sound = members.get("sound", alarm.sound);
    alarm.isDefault = members.get("default", alarm.isDefault);
    members.finish();
    return alarm;
}

Action event(Player& player, Members& members) {
    platform::CalendarEvent made;
    made.id = members.get<std::string>("id");
    made.start = members.get<double>("start");
    if (!(made.start >= -1e9 && made.start <= 1e9))
        mustBe("\"start\"", "within 1000000000 seconds");
    for (const Json& alarm : members.get<Json::List>("alarms", {}))
        made.alarms.push_back(toAlarm(alarm));
    made.detached = members.get("detached", made.detached);
    made.recurring = members.get("recurring", made.recurring);
    return [&player, made] { player.platform.calendar.add(made); };
}

constexpr StepKind kinds[] = {
    {names::shortcut, shortcut}, {"reply", reply},     {"answers", answers},
    {"running", running},        {"granted", granted}, {"event", event},
};

} // namespace

std::span<const StepKind> serviceSteps() {
    return kinds;
}

} // namespace palisor::replay
