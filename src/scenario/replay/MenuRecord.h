#pragma once

#include "platform/Menu.h"

#include <string>
#include <vector>

namespace palisor::replay {

/// A list of JSON objects whose members are written already.
std::string listOf(const std::vector<std::string>& objects);

/// The entries of a menu as a JSON list, submenus inside; an empty list for no menu.
std::string menuRecord(const platform::Menu* menu);

} // namespace palisor::replay
