#pragma once

#include <algorithm>
#include <string>

// What both ends of the interface call it. `resources/bus` describes it.

namespace bus {

inline constexpr const char* productInterface = "com.tamberlo.Product1";

namespace errors {
inline constexpr const char* unknownMonitor = "com.tamberlo.Product1.Error.UnknownMonitor";
inline constexpr const char* unknownSetting = "com.tamberlo.Product1.Error.UnknownSetting";
inline constexpr const char* notOfThisProduct = "com.tamberlo.Product1.Error.NotOfThisProduct";
inline constexpr const char* wrongType = "com.tamberlo.Product1.Error.WrongType";
inline constexpr const char* outOfRange = "com.tamberlo.Product1.Error.OutOfRange";
inline constexpr const char* starting = "com.tamberlo.Product1.Error.Starting";
inline constexpr const char* notPossible = "com.tamberlo.Product1.Error.NotPossible";
inline constexpr const char* noReport = "com.tamberlo.Product1.Error.NoReport";
inline constexpr const char* notTheUser = "com.tamberlo.Product1.Error.NotTheUser";
} // namespace errors

inline constexpr const char* startingText = "The program is still starting.";
inline constexpr const char* oneMonitorText =
    "There is one monitor only: it takes two that are not mirrored.";

/// The longest that freeing can be asked for, in seconds.
inline constexpr unsigned longestFreeing = 86400;

/// The object of a program with that name on the bus, as launchers make the path of it.
inline std::string objectPath(const std::string& name) {
    std::string path = '/' + name;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return path;
}

} // namespace bus
