#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

// What the command line knows, in tables: help, and whatever else tells of it, is made from these.

namespace client {

/// How a command ends. The numbers are for scripts and never change.
enum class Exit {
    done = 0,
    refused = 1,
    wrongUsage = 2,
    notRunning = 3,
    noAnswer = 4,
    otherVersion = 5
};

struct ExitMeaning {
    Exit status;
    std::string_view meaning;
};

inline constexpr std::array<ExitMeaning, 6> exits = {
    {{Exit::done, "done"},
     {Exit::refused, "refused, or not possible"},
     {Exit::wrongUsage, "wrong command line"},
     {Exit::notRunning, "the program does not run"},
     {Exit::noAnswer, "no session bus, or no answer in time"},
     {Exit::otherVersion, "the program is of another version"}}};

struct Command {
    std::string_view name;
    std::string_view arguments; ///< as help writes them
    std::string_view help;      ///< one line
    int least = 0;              ///< arguments
    int most = 0;
    bool prints = false; ///< has something to print, and so takes --json
};

inline constexpr std::array<Command, 12> commands = {
    {{"on", "", "switch on; starts the program where it does not run"},
     {"off", "", "switch off"},
     {"toggle", "", "switch over; on, where the program does not run yet"},
     {"status", "", "print what it does at the moment", 0, 0, true},
     {"free", "[SECONDS]", "leave the cursor free, 30 s unless told; 0 ends that", 0, 1},
     {"cross", "MONITOR", "put the cursor onto that monitor", 1, 1},
     {"menu", "", "open the menu"},
     {"settings", "[list]", "print them; or: get NAME, set NAME VALUE, reset NAME", 0, 3, true},
     {"watch", "", "print the state, and then one line a change", 0, 0, true},
     {"setup", "gnome", "install the extension that GNOME Shell needs", 1, 1},
     {"doctor", "", "look for what keeps it from working on this desktop", 0, 16, true},
     {"quit", "", "end the program"}}};

/// "cross MONITOR"
inline std::string synopsis(const Command& command) {
    return std::string(command.name) +
           (command.arguments.empty() ? "" : " " + std::string(command.arguments));
}

/// What `free` without a number asks for, in seconds.
inline constexpr unsigned usualFreeing = 30;

struct SettingsWord {
    std::string_view name;
    int arguments;
};

inline constexpr std::array<SettingsWord, 4> settingsWords = {
    {{"list", 0}, {"get", 1}, {"set", 2}, {"reset", 1}}};

/// The one of the table that is called that; null for none.
template <class Table>
constexpr const typename Table::value_type* find(const Table& table, std::string_view name) {
    const auto found = std::ranges::find(table, name, &Table::value_type::name);
    return found == table.end() ? nullptr : &*found;
}

} // namespace client
