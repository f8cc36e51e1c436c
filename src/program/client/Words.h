#pragma once

#include "program/OptionTable.h"
#include "program/client/Commands.h"

#include <string>
#include <string_view>
#include <vector>

namespace client {

/// Why a command ends before it is done.
struct Failure {
    Exit status;
    std::string sentence;
};

/// A command line, understood.
struct Words {
    std::string product;              ///< by its command's name
    const Command* command = nullptr; ///< null where the program is to be started
    std::vector<std::string> arguments;
    bool help = false;
    bool json = false;
};

/// Those that go with a command.
inline constexpr std::array<OptionRow<Words>, 3> options = {
    {{{"--product", "", "NAME", "the product to ask"}},
     {{"--json", "", "", "print JSON, where anything is printed"}, &Words::json},
     {{"--help", "-h", "", "print this and end"}, &Words::help}}};

/// Throws Failure for a command line that makes no sense. One without a command is the program's,
/// and not looked at any further.
Words parse(int argc, const char* const* argv);

/// The text of --help for a command that is called by that name; a screen of 80 by 24.
std::string usage(std::string_view calledBy);

/// The one of the words that is meant by a mistyped one; empty where none is near.
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& right);

/// What a sentence that refuses a word ends with: the one that is meant, or where the right ones
/// are found.
std::string advice(std::string_view word, const std::vector<std::string_view>& right,
                   std::string_view otherwise);

} // namespace client
