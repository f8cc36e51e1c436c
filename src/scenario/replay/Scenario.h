#pragma once

#include "scenario/replay/Members.h"

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

namespace palisor::replay {

/// The steps of a scenario, read one at a time.
class Scenario {
  public:
    explicit Scenario(std::istream& input) : stream(input) {}

    /// The next step, a JSON object; nothing at the end. Throws StepError.
    std::optional<Json::Object> next();

    /// The number of the line that was read last, from 1.
    std::size_t line() const { return lineNumber; }

  private:
    std::istream& stream;
    std::size_t lineNumber = 0;
};

} // namespace palisor::replay
