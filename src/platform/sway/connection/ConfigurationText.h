#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The text of the compositor's configuration, read as it reads it.

namespace platform::sway {

struct ConfigurationFile {
    std::string path;
    std::string text;
};

/// The files that an `include` names in a file of that folder, in the compositor's order.
using FindIncluded = std::function<std::vector<ConfigurationFile>(const std::string& pattern,
                                                                  const std::string& folder)>;

/// As a shell expands the pattern, but for commands in it, which are not run; of what is there only
/// regular files that are not too large.
std::vector<ConfigurationFile> includedFrom(const std::string& pattern, const std::string& folder);

using Words = std::vector<std::string>;

/// Calls `take` for each command in the order of their reading, as its words: with the block's
/// words before it, values in the places of variables, and without the quotes. A file is read once.
/// What is beyond all measure is left out.
void eachCommand(const ConfigurationFile& main, const FindIncluded& find,
                 const std::function<void(const Words&)>& take);

} // namespace platform::sway
