#pragma once

#include "platform/Geometry.h"

#include <cstdint>

namespace palisor {

/// Forwards the session's events to the application object; where there is none they are dropped.
/// Defined in Intake.cpp, which calls it.
/// Main thread only.
class Appoggio {
  public:
    /// `location` in top-left coordinates.
    static void onMouseMovedOrClicked(platform::Point location);
    static void onKeyPressed(std::uint16_t keyCode);
};

} // namespace palisor
