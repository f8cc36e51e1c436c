#pragma once

#include "bus/Stage.h"

#include <filesystem>

// What a document shows as typed and printed, and a terminal to type it in.

namespace manual {

using Texts = std::vector<std::string>;

/// The blocks of the document in that language; the monitors that it names are those that are here.
/// Throws std::runtime_error where there is none.
Texts blocks(const std::filesystem::path& document, const std::string& language);

struct Step {
    std::string command, shown;
};
/// Of a block of the console.
std::vector<Step> stepsOf(const std::string& block);

/// "…" stands for anything, also for several lines.
bool isAsShown(const std::string& text, const std::string& shown);

/// A desk with two monitors on which every product can be started by a command.
struct Console : desktop::BusStage {
    Console();

    std::unique_ptr<support::ChildProcess> shell(const std::string& line) const;
    /// What is printed, errors in their place.
    std::string typed(const std::string& line) const;
};

} // namespace manual
