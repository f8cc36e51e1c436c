#pragma once

#include "manual/Pages.h"
#include "testing/Child.h"

#include <vector>

namespace manual {

/// bash, zsh and fish, of which those that are not installed are left out.
std::vector<std::string> shells();

/// What that shell offers for the last word of a line, by the completions that were built. Anything
/// that it writes as an error is among it. Files are looked for in the folder, and stand for
/// themselves but in zsh: its own function finds them, which is told here as "FILE" or "DIR".
Names offered(const std::string& shell, const std::vector<std::string>& line,
              support::Environment environment, const std::string& folder = "/");

} // namespace manual
