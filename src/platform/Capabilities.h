#pragma once

#include <string>
#include <vector>

namespace platform {

/// Something that the program would do, and whether this desktop lets it.
struct Capability {
    std::string id; ///< one word: "hold", "darkness", "tray", "shortcut"
    bool available = true;
    std::string reason; ///< one sentence: why not, or with what limits; empty for neither

    bool operator==(const Capability&) const = default;
};

using Capabilities = std::vector<Capability>;

} // namespace platform
