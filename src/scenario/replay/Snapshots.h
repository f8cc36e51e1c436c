#pragma once

#include "platform/json/Writer.h"

namespace palisor::replay {

class Player;

/// Tells how things stand.
using Snapshot = platform::json::Raw (*)(const Player&);

/// Throws StepError for an unknown name.
Snapshot snapshotOf(std::string_view name);

} // namespace palisor::replay
