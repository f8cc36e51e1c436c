#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace platform {

/// Names a screen. One that is unplugged and comes back is the same screen.
enum class ScreenId : std::uint32_t { none = 0 };

struct Screen {
    ScreenId id = ScreenId::none;
    Rect frame;         ///< bottom-left coordinates, pixels
    std::string name{}; ///< the output's, as the desktop's own settings call it ("HDMI-1")
    double scale = 1;   ///< pixels for one unit of the desktop; 1 where it does not tell
};

/// The attached screens. The first one defines the origin of both coordinate systems. Main thread.
class Displays {
  public:
    virtual ~Displays() = default;

    /// In the system's order. Valid until the run loop turns; costs no round trip.
    virtual std::span<const Screen> screens() const = 0;

    /// The primary screen; none when there is no screen.
    virtual ScreenId mainScreen() const = 0;

    /// Calls `changed` after each change of the list, one handler at a time.
    virtual void onChange(std::function<void()> changed) = 0;

    /// The frame of a screen, bottom-left; nothing when it is not attached.
    std::optional<Rect> frame(ScreenId id) const {
        for (const Screen& screen : screens())
            if (screen.id == id) return screen.frame;
        return std::nullopt;
    }
};

} // namespace platform
