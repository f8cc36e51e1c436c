#pragma once

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

} // namespace palisor::variants
