#pragma once

#include <string_view>

// What the family's products are, by their number in the information dictionary. A number without
// a name here has the edge actions alone.

namespace palisor::variants {

constexpr int cursorHider = 1;
constexpr int desktopSwitcher = 2;
constexpr int keepAwake = 3;
constexpr int wrapAround = 5;
constexpr int crossHair = 7;
constexpr int barrier = 8;
constexpr int calendarAlerts = 9;

/// The product's page in the store; empty for the products that have none.
constexpr std::string_view storeId(int variant) {
    switch (variant) {
    case cursorHider:
        return "611203457";
    case wrapAround:
        return "611203458";
    case barrier:
        return "1200000417";
    default:
        return {};
    }
}

} // namespace palisor::variants
