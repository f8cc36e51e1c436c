#pragma once

#include "testing/desktop/Layout.h"
#include "testing/desktop/XConnection.h"

#include <atomic>
#include <thread>

namespace support {

/// Looks at the cursor many times a second, from its own thread and connection, from its making
/// until `finish`.
class Watcher {
  public:
    struct Report {
        long looks = 0, looksOutside = 0;
        int leftmost = 0, rightmost = 0, topmost = 0, lowest = 0; ///< of the cursor
        int farthestOutside = 0;                                  ///< pixels beyond the area
        double longestOutsideMs = 0; ///< from the first to the last look outside in a row
        double shareOutside() const {
            return looks == 0 ? 0 : static_cast<double>(looksOutside) / static_cast<double>(looks);
        }
    };

    /// `area`: where the cursor belongs. Looks `hz` times a second at most.
    Watcher(const std::string& display, const Area& area, int hz = 4000);
    ~Watcher();
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    /// Ends the watch, after one more look. Throws std::runtime_error when the server went away.
    Report finish();

  private:
    void watch();
    void look();

    XConnection x;
    Area area;
    int rate;
    std::atomic<bool> ending = false;
    bool failed = false;
    Report report;
    bool wasOutside = false;
    Clock::time_point leftAt;
    std::thread thread;
};

} // namespace support
