#pragma once

#include "platform/HotKeys.h"
#include "scenario/Names.h"
#include "scenario/replay/Members.h"

#include <functional>
#include <span>
#include <string_view>

namespace palisor::replay {

class Player;

namespace names = scenario::names;

/// What a step does once all of it has been read.
using Action = std::function<void()>;

/// Reads the members of a step, and changes nothing yet. Throws StepError.
using StepReader = Action (*)(Player&, Members&);

using StepKind = std::pair<std::string_view, StepReader>;

// The kinds of step, each group in the file of its name.
std::span<const StepKind> worldSteps();   ///< the machine and what the hand does
std::span<const StepKind> serviceSteps(); ///< what services will answer
std::span<const StepKind> programSteps(); ///< what the program is told to do
std::span<const StepKind> panelSteps();   ///< what is done to its menus and panels

// Members of several steps.
std::uint16_t keyCodeOf(Members& members);
std::uint32_t modifierFlagsOf(Members& members);

/// Plays one step. Throws StepError before anything has happened; the same may come from a later
/// step that is played inside this one.
void playStep(Player& player, const Json::Object& step);

} // namespace palisor::replay
