#pragma once

#include "platform/memory/Effects.h"

#include <cstdio>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace palisor::replay {

/// The output could not be written.
struct OutputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Prints effects and snapshots, each line flushed on its own, so that whoever reads along, or
/// finds a run broken off, has everything up to there.
class Output {
  public:
    /// `only` names the effects to print; empty for all of them.
    Output(std::FILE* stream, std::set<std::string, std::less<>> only);

    void effect(const platform::memory::Effect& effect);

    /// Prints it whatever effects are asked for.
    void snapshot(std::string line) { print(std::move(line)); }

  private:
    void print(std::string line);

    std::FILE* file;
    std::set<std::string, std::less<>> wanted;
};

} // namespace palisor::replay
