#pragma once

#include <string>
#include <string_view>

namespace palisor::replay {

class Player;

/// A record of how things stand, as one JSON object without a line end.
using RecordWriter = std::string (*)(const Player&);

/// Throws StepError for an unknown name.
RecordWriter recordWriter(std::string_view name);

} // namespace palisor::replay
