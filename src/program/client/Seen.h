#pragma once

#include "bus/Handles.h"

#include <string>
#include <string_view>
#include <vector>

namespace client {

struct SeenMonitor {
    std::string name;
    int x = 0, y = 0, width = 0, height = 0;
    double scale = 1;
    bool primary = false, held = false, dark = false;
};

struct SeenCapability {
    std::string id;
    bool available = false;
    std::string reason;
};

/// What the program tells of itself.
struct Seen {
    bool active = false;
    std::string held;
    unsigned freed = 0;
    std::vector<SeenMonitor> monitors;
    std::string shortcut;
    std::vector<SeenCapability> capabilities;
    std::string version;

    /// Takes the properties that a message goes on with, "a{sv}", and returns their names. Those
    /// that are not known are left out.
    std::vector<std::string> take(sd_bus_message* message);

    /// One of the properties for people: one line, or several.
    std::string line(std::string_view property) const;
    std::string text() const;
    /// `"active":true`
    std::string member(std::string_view property) const;
    std::string json() const;
};

} // namespace client
