#pragma once

#include <optional>
#include <string>
#include <vector>

namespace doctor {

struct Options {
    std::string product; ///< as its folder is named
    bool json = false;
    bool rescue = false;
    bool help = false;
    bool version = false;
    std::optional<std::string> error{}; ///< one line, for a command line that makes no sense
};

/// `products` are those that there are. The command's own name chooses one, as for the program
/// itself, with "-doctor" behind it or not.
Options parseOptions(const std::vector<std::string>& arguments,
                     const std::vector<std::string>& products);

/// The text of --help.
std::string usage(const std::vector<std::string>& products);

} // namespace doctor
