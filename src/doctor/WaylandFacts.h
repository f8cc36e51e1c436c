#pragma once

#include "platform/Displays.h"

#include <string>
#include <vector>

namespace doctor {

/// What the compositor of a Wayland session tells the program that joins it.
struct WaylandFacts {
    bool isJoined = false;
    std::string compositor{}; ///< its name and version; empty where it does not tell
    std::string refusal{};    ///< why the program could not join, in the program's own words
    std::vector<platform::Screen> screens{};
};

/// Joins the session in the way of the program, and leaves it again. It may wait for ever. All is
/// empty where the environment names no Wayland session, or one that the program does not know.
WaylandFacts askCompositor();

} // namespace doctor
