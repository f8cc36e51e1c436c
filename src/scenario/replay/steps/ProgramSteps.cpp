#include "scenario/replay/Operations.h"
#include "scenario/replay/Player.h"
#include "scenario/replay/Snapshots.h"
#include "scenario/replay/steps/Steps.h"

namespace palisor::replay {

namespace {

Action launch(Player& player, Members&) {
    return [&player] {
        // From here on, since the rest of the scenario may run inside the call.
        player.launched = true;
        player.app.applicationDidFinishLaunching();
    };
}

Action call(Player& player, Members& members) {
    const auto operation = members.get<std::string>("operation");
    return prepareCall(player, operation, members.get<Json::List>("arguments", {}));
}

Action show(Player& player, Members& members) {
    std::vector<Snapshot> snapshots;
    for (const std::string& name : members.texts("what"))
        snapshots.push_back(snapshotOf(name));
    return [&player, snapshots] {
        for (const Snapshot take : snapshots)
            player.output.snapshot(take(player).text);
    };
}

constexpr StepKind kinds[] = {{names::launch, launch}, {"call", call}, {"show", show}};

} // namespace

std::span<const StepKind> programSteps() {
    return kinds;
}

} // namespace palisor::replay
