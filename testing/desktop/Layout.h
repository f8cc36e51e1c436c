#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace support {

struct Area {
    int x = 0, y = 0, width = 0, height = 0; ///< X root coordinates, pixels

    bool contains(int pointX, int pointY) const {
        return pointX >= x && pointX < x + width && pointY >= y && pointY < y + height;
    }
    bool operator==(const Area&) const = default;
};

struct Monitor {
    std::string output; ///< "DUMMY0", "DUMMY1", ...
    Area area;
    bool primary = false;

    bool operator==(const Monitor&) const = default;
};

using Layout = std::vector<Monitor>;

/// Reads "1920x1080+0+0,1280x1024+1920+56": the monitors on DUMMY0, DUMMY1 and so on. The first is
/// the primary one unless another ends in "*". Throws std::invalid_argument.
Layout parseLayout(std::string_view text);

/// Reads one "1280x1024+1920+56". Throws std::invalid_argument.
Monitor parseMonitor(std::string_view text, std::string output);

/// The area from (0, 0) that holds all monitors.
Area boundsOf(const Layout& layout);

} // namespace support
