#include "scenario/replay/Player.h"
#include "scenario/replay/steps/Steps.h"

#include <limits>

namespace palisor::replay {

namespace {

void mustBeTrue(Members& members, std::string_view name) {
    if (!members.boolean(name)) throw StepError(members.describe(name) + " must be true");
}

Action shortcut(Player& player, Members& members) {
    std::optional<Shortcut> recorded;
    if (members.has("clear")) {
        mustBeTrue(members, "clear");
        if (members.has("keyCode") || members.has("modifierFlags"))
            throw StepError("\"clear\" stands alone");
    } else {
        recorded = toShortcut(members.integer("keyCode", 0, mostKeyCode),
                              members.integer("modifierFlags", 0, mostFlags));
    }
    return [&player, recorded] {
        if (player.launched)
            player.facts.recordings.push_back(recorded);
        else
            storeShortcut(player.platform, recorded);
    };
}

Action reply(Player& player, Members& members) {
    std::optional<std::string> answer;
    if (members.has("error")) {
        mustBeTrue(members, "error");
        if (members.has("body")) throw StepError("\"error\" stands alone");
    } else {
        answer = members.text("body");
    }
    return [&player, answer] { player.platform.http.setReply(answer); };
}

Action answers(Player& player, Members& members) {
    std::deque<int> codes;
    for (const Json& code : toList(members.get("codes"), members.describe("codes"))) {
        const std::int64_t number = toInteger(code, "each code");
        if (number != static_cast<int>(number))
            throw StepError("each code must be an integer of 32 bits");
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
    return
        [&player, value = members.boolean("value")] { player.platform.calendar.setGranted(value); };
}

platform::CalendarAlarm toAlarm(const Json& value) {
    Members members(toObject(value, "each alarm"), "of an alarm ");
    platform::CalendarAlarm alarm;
    if (members.has("offset")) alarm.offset = members.number("offset");
    if (members.has("sound")) alarm.sound = members.text("sound");
    if (members.has("default")) alarm.isDefault = members.boolean("default");
    members.finish();
    return alarm;
}

Action event(Player& player, Members& members) {
    platform::CalendarEvent made;
    made.id = members.text("id");
    made.start = members.number("start");
    if (!(made.start >= -1e9 && made.start <= 1e9))
        throw StepError("\"start\" must be within 1000000000 seconds");
    if (const Json* alarms = members.find("alarms"))
        for (const Json& alarm : toList(*alarms, members.describe("alarms")))
            made.alarms.push_back(toAlarm(alarm));
    if (members.has("detached")) made.detached = members.boolean("detached");
    if (members.has("recurring")) made.recurring = members.boolean("recurring");
    return [&player, made] { player.platform.calendar.add(made); };
}

constexpr StepKind kinds[] = {
    {"shortcut", shortcut}, {"reply", reply},     {"answers", answers},
    {"running", running},   {"granted", granted}, {"event", event},
};

} // namespace

std::span<const StepKind> serviceSteps() {
    return kinds;
}

} // namespace palisor::replay
