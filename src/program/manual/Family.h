#pragma once

#include <string>
#include <vector>

namespace manual {

/// What the manual has to know of a product.
struct Member {
    std::string name; ///< of its command
    std::string title, version, identifier;
    std::string summary; ///< as launchers show it
    int variant = 0;
};

/// The products as they are in the source tree, in the order of their list. Throws
/// std::runtime_error where something of one is missing.
std::vector<Member> family(const std::string& sourceTree);

} // namespace manual
