#include "scenario/replay/Operations.h"
#include "scenario/replay/Player.h"
#include "scenario/replay/Records.h"
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
    const std::string operation = members.text("operation");
    Json arguments = Json::array();
    if (const Json* list = members.find("arguments"))
        arguments = toList(*list, members.describe("arguments"));
    return prepareCall(player, operation, arguments);
}

Action show(Player& player, Members& members) {
    std::vector<RecordWriter> writers;
    for (const std::string& name : members.texts("what"))
        writers.push_back(recordWriter(name));
    return [&player, writers] {
        for (const RecordWriter write : writers)
            player.output.record(write(player));
    };
}

constexpr StepKind kinds[] = {{"launch", launch}, {"call", call}, {"show", show}};

} // namespace

std::span<const StepKind> programSteps() {
    return kinds;
}

} // namespace palisor::replay
