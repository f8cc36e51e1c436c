#pragma once

#include <compare>
#include <optional>
#include <string>
#include <vector>

namespace platform {

struct Version {
    int major = 0;
    int minor = 0;
    int patch = 0;
    auto operator<=>(const Version&) const = default;
};

/// The first generation of services that delivers the session's events to a global monitor.
constexpr Version firstWithGlobalMonitor{10, 14, 0};

/// A moment as the clock on the wall and the calendar beside it show it.
struct LocalTime {
    int year = 0;
    int month = 0; ///< from 1
    int day = 0;   ///< from 1
    int hour = 0;  ///< 0 to 23
    int minute = 0;
    int second = 0; ///< 60 in a leap second

    bool operator==(const LocalTime&) const = default;
};

/// Facts about the running system. Any thread.
class SystemInfo {
  public:
    virtual ~SystemInfo() = default;

    /// The generation of the platform's services, for choosing between an older and a newer
    /// mechanism. It is not the version number of the running system.
    virtual Version servicesVersion() const = 0;

    /// The version of the running system; nothing where it cannot be told.
    virtual std::optional<Version> systemVersion() const = 0;

    /// What the maker of the machine calls it; empty where nobody knows.
    virtual std::string machineModel() const = 0;

    /// Stays the same for this machine and this application, and cannot be traced back to either;
    /// written as a UUID. Nothing where the machine has no identity.
    virtual std::optional<std::string> machineIdentifier() const = 0;

    /// The user's languages, preferred first.
    virtual std::vector<std::string> languages() const = 0;

    /// The country whose customs the user follows, such as "IT"; nothing where none is set.
    virtual std::optional<std::string> countryCode() const = 0;

    virtual LocalTime localTime() const = 0;
};

} // namespace platform
