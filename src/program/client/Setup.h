#pragma once

#include <string>

namespace client {

/// Makes a desktop ready for the program, for this user: "gnome" gets the extension of its shell
/// that came with the program, which is switched on. Says what is left to do. Throws Failure.
void setUp(const std::string& desktop);

} // namespace client
