#include "scenario/replay/steps/Steps.h"

#include <algorithm>

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

void playStep(Player& player, const Json& step) {
    Members members(step);
    const StepReader read = readerOf(members.text("do"));
    const Action action = read(player, members);
    members.finish();
    action();
}

} // namespace palisor::replay
