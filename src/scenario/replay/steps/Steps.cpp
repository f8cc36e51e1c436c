#include "scenario/replay/steps/Steps.h"

#include <cstdint>

namespace palisor::replay {

namespace {

StepReader readerOf(std::string_view name) {
    for (const auto kinds : {worldSteps(), serviceSteps(), programSteps(), panelSteps()})
        for (const auto& [known, read] : kinds)
            if (known == name) return read;
    throw StepError("unknown step " + inQuotes(name));
}

} // namespace

std::uint16_t keyCodeOf(Members& members) {
    return static_cast<std::uint16_t>(members.integer(names::keyCode, 0, UINT16_MAX));
}

std::uint32_t modifierFlagsOf(Members& members) {
    return static_cast<std::uint32_t>(members.integer(names::modifierFlags, 0, UINT32_MAX));
}

void playStep(Player& player, const Json::Object& step) {
    Members members(step);
    const StepReader read = readerOf(members.get<std::string>(names::step));
    const Action action = read(player, members);
    members.finish();
    action();
}

} // namespace palisor::replay
