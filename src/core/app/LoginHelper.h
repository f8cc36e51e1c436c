#pragma once

#include <string_view>

// What a product and the program that starts it at login know of each other.

namespace palisor::loginHelper {

constexpr const char* command = "palisor-helper";

/// Goes behind the product's identifier and makes the helper's.
constexpr std::string_view identifierEnding = "Helper";

/// The notification upon which the helper ends; its object is the product's identifier.
constexpr std::string_view terminate = "TERMINATEHELPER";

} // namespace palisor::loginHelper
