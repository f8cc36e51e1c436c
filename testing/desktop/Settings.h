#pragma once

#include <initializer_list>
#include <map>
#include <string>

// Settings files of the product, written from outside.

namespace desktop {

/// For each key its value, as the functions below write it; an empty one leaves the key out.
using Entries = std::map<std::string, std::string>;

std::string flag(bool on);
std::string text(const std::string& value);
std::string number(int value);
std::string shortcut(int keyCode, int modifierFlags);

/// As the user has it after the first start: no window, menu or question comes up by itself.
Entries pastTheFirstStart();

/// Exactly these sides of the desktop are armed, with their corners: 1 left, 2 top, 3 right, 4
/// bottom.
Entries armedSides(std::initializer_list<int> sides);

/// "<key>...</key>" and the value, as a settings file has them when its white space is taken out.
std::string entry(const std::string& key, const std::string& value);

/// A whole property list.
std::string propertyList(const Entries& entries);

} // namespace desktop
