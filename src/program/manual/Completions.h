#pragma once

#include "program/manual/Family.h"

#include <string_view>

// What the shells complete. shells/ has for each of them how the words of a line lead to a list;
// the lists are written into it here.

namespace manual {

enum class Shell { bash, zsh, fish };

/// The completions of all programs, from the text of the file in shells/: "@programs@" becomes
/// their names, and a line "@lists@" the lists.
std::string completions(Shell shell, std::string_view frame, const std::vector<Member>& family);

/// The programs that are completed.
std::vector<std::string> programs(const std::vector<Member>& family);

} // namespace manual
