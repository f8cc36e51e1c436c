#pragma once

#include "program/OptionTable.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace doctor {

struct Options {
    std::string product; ///< as its folder is named
    bool json = false;
    bool rescue = false;
    bool open = false; ///< the report is shown in a window
    bool help = false;
    bool version = false;
    std::optional<std::string> error{}; ///< one line, for a command line that makes no sense
};

inline constexpr std::array<OptionRow<Options>, 6> optionTable = {
    {{{"--product", "", "NAME", "the product, not the one the command is named after"}},
     {{"--json", "", "", "for a bug report, without names and paths of yours"}, &Options::json},
     {{"--rescue", "", "",
       "mend what a program that died or hangs has left: dark monitors, a held or hidden cursor, "
       "entries that start a program that is gone"},
      &Options::rescue},
     {{"--open", "", "",
       "show it in the desktop's viewer of texts, for a launcher without a terminal"},
      &Options::open},
     {{"--help", "-h", "", "print this and end"}, &Options::help},
     {{"--version", "-V", "", "print the product and its version and end"}, &Options::version}}};

/// What the doctor is, in the words of its help.
inline constexpr std::string_view purpose =
    "Tells what of this desktop keeps the product from working, and how to mend it. Nothing is "
    "changed without --rescue. Ends with 0 where all is well, and with 1 otherwise.";

/// `products` are those that there are. The command's own name chooses one, as for the program
/// itself, with "-doctor" behind it or not.
Options parseOptions(const std::vector<std::string>& arguments,
                     const std::vector<std::string>& products);

/// The text of --help; a screen of 80 by 24.
std::string usage(const std::vector<std::string>& products);

} // namespace doctor
