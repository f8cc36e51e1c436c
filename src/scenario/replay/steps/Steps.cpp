#include "scenario/replay/steps/Steps.h"

#include <algorithm>
#include <limits>

namespace palisor::replay {

namespace {

StepReader readerOf(std::string_view name) {
    for (const auto kinds : {worldSteps(), serviceSteps(), programSteps(), panelSteps()}) {
        const auto found = std::ranges::find(kinds, name, &StepKind::name);
        if (found != kinds.end()) return found->read;
    }
    throw StepError("unknown step " + inQuotes(name));
}

} // namespace

std::uint16_t keyCodeOf(Members& members) {
    constexpr auto most = std::numeric_limits<std::uint16_t>::max();
    return static_cast<std::uint16_t>(members.integer(names::keyCode, 0, most));
}

std::uint32_t modifierFlagsOf(Members& members) {
    constexpr auto most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(members.integer(names::modifierFlags, 0, most));
}

void playStep(Player& player, const Json::Object& step) {
    Members members(step);
    const StepReader read = readerOf(members.get<std::string>(names::step));
    const Action action = read(player, members);
    members.finish();
    action();
}

} // namespace palisor::replay
