#pragma once

#include "Meters.h"

#include "testing/Wait.h"

#include <functional>
#include <initializer_list>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// How long each thing is measured at a time.
inline double seconds = 2;

void rest(int milliseconds);

/// "12.50 %", with as many digits behind the point as are asked for.
std::string number(double value, const char* unit, int digits = 2);

/// A line of the table: what is measured, what is required of it, and a cell for each contestant.
void row(const std::string& what, const std::string& required,
         std::initializer_list<std::string> cells);

struct Group {
    std::string_view name;
    void (*print)();
};
/// What a main of the form "[SECONDS [GROUP...]]" does: prints the groups that are asked for, or
/// all.
void printGroups(int count, char** arguments, std::initializer_list<Group> groups);

double median(std::vector<double> values); ///< of one and more

/// The longest of several times, in milliseconds, their median and how many; "never" where one took
/// too long. A try in which the machine stood still is made again. `tryOnce` is told how many came
/// before it.
std::string longest(int tries, const std::function<std::optional<double>(int)>& tryOnce);

/// The speeds at which most of a few pushes cross, at 125, 500, 1000 and 8000 reports a second, and
/// their share of the one that the slider's value stands for. `crosses` makes a push at that many
/// pixels and reports a second.
std::string thresholds(int velocity, const std::function<bool(double, int)>& crosses);

} // namespace bench
