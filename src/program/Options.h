#pragma once

#include "program/OptionTable.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// What a start by the session is told from one by the user.
inline constexpr std::string_view atLoginOption = "--at-login";

/// What a start in the place of an older version is told from one by the user.
inline constexpr std::string_view againOption = "--again";

/// What the command line asks for.
struct Options {
    std::string command; ///< the name that the program was called by, without its folder
    std::string product; ///< as its folder is named
    bool help = false;
    bool version = false;
    bool listMonitors = false;
    bool atLogin = false;       ///< the session starts the program, and not the user
    bool again = false;         ///< an upgrade starts the program again, and not the user
    bool verbose = false;       ///< what only a developer understands is logged, too
    std::string record;         ///< the scenario file to write; empty for none
    bool hold = true;           ///< the X server holds the cursor; otherwise it is only warped back
    std::string calendarFolder; ///< of .ics files; empty where none was named
};

inline constexpr std::array<OptionRow<Options>, 10> programOptions = {
    {{{"--product", "", "NAME", "the product to run, not the one the command is named after"}},
     {{"--hold", "", "on|off",
       "whether the X server holds the cursor at an edge (on unless said otherwise); off, it is "
       "put back after it has left"}},
     {{"--record", "", "FILE",
       "write what happens into FILE, which palisor-replay plays; it holds the settings, the "
       "cursor's way, clicks and menu choices, but only the modifiers of what is typed"}},
     {{"--calendar", "", "DIR",
       "a folder with one .ics file an event, which calendar-alerts takes instead of the desktop's "
       "own calendars"}},
     {{atLoginOption, "", "",
       "for the desktop's autostart: with fewer than two monitors, wait for the session to set "
       "them up, ten seconds at most"},
      &Options::atLogin},
     {{againOption, "", "", "for upgrades: come back without the window at the start"},
      &Options::again},
     {{"--list-monitors", "", "", "print one line a monitor and end"}, &Options::listMonitors},
     {{"--verbose", "", "", "log what the program does step by step, for its developers"},
      &Options::verbose},
     {{"--help", "-h", "", "print this and end"}, &Options::help},
     {{"--version", "-V", "", "print the product and its version and end"}, &Options::version}}};

struct ParsedOptions {
    Options options;
    std::optional<std::string> error; ///< one line, for a command line that makes no sense
};

ParsedOptions parseOptions(int argc, char** argv);

/// The text of --help for a program that is called by that name; a screen of 80 by 24.
std::string usage(const std::string& command);
