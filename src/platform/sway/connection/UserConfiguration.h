#pragma once

#include <optional>
#include <string>
#include <string_view>

// What the user has configured and the program changes for a time, read from the text of the
// configuration. Files that it includes are not in that text.

namespace platform::sway {

/// The last command of an "input" rule that maps the devices of a kind ("type:pointer"), or else
/// all of them ("*"), somewhere: "map_to_output DP-1". Nothing where they are not mapped.
std::optional<std::string> mappingOf(std::string_view configuration, std::string_view kind);

/// After how many milliseconds the cursor of all seats hides, as the user wrote it; "0" for never.
std::string cursorTimeout(std::string_view configuration);

} // namespace platform::sway
