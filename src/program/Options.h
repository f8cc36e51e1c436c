#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What a start by the session is told from one by the user.
inline constexpr std::string_view atLoginOption = "--at-login";

/// What the command line asks for.
struct Options {
    std::string command; ///< the name that the program was called by, without its folder
    std::string product; ///< as its folder is named
    bool help = false;
    bool version = false;
    bool listMonitors = false;
    bool atLogin = false;       ///< the session starts the program, and not the user
    bool verbose = false;       ///< what only a developer understands is logged, too
    std::string record;         ///< the scenario file to write; empty for none
    bool hold = true;           ///< the X server holds the cursor; otherwise it is only warped back
    std::string calendarFolder; ///< of .ics files; empty where none was named
};

struct ParsedOptions {
    Options options;
    std::optional<std::string> error; ///< one line, for a command line that makes no sense
};

ParsedOptions parseOptions(int argc, char** argv);

/// The text of --help for a program that is called by that name.
std::string usage(const std::string& command);
