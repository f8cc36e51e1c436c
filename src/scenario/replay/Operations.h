#pragma once

#include "scenario/replay/Members.h"
#include "scenario/replay/steps/Steps.h"

#include <string>

namespace palisor::replay {

/// Prepares to send an operation to the application object, by its selector
/// ("runForDirection:") or by its name in the source ("runForDirection"). The action prints a
/// result as the effect `result`. Throws StepError for an unknown operation, and for arguments that
/// are not those that it takes.
Action prepareCall(Player& player, const std::string& name, const Json::List& arguments);

} // namespace palisor::replay
