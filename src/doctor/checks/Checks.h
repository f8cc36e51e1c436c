#pragma once

#include "doctor/Facts.h"
#include "doctor/Report.h"

#include <string_view>

// Each check looks at one topic and says in one line what is there. They are told everything and
// ask nobody.

namespace doctor {

/// All that concern the product and can be made of these facts, in the order in which they are
/// shown.
Report examine(const Facts& facts);

namespace checks {

/// The command that calls the doctor for this product with an option.
std::string doctorCommand(const ProductFacts& product, const std::string& option);

/// Whether the program could work with this server, apart from what this server lacks.
bool isX11Session(const Facts& facts);

/// Whether the program joins it as a Wayland session.
bool isWaylandSession(const Facts& facts);

/// What the program tells that runs on this display; null where none does, or it is silent.
const ProgramTells* toldByProgram(const Facts& facts);
/// Null for one that it tells nothing of, too.
const platform::Capability* toldCapability(const Facts& facts, std::string_view id);

// Server.cpp
Finding session(const Facts& facts);
Finding extensions(const Facts& facts);
Finding monitors(const Facts& facts);
Finding colours(const Facts& facts);

// Desktop.cpp
Finding windowManager(const Facts& facts);
Finding compositor(const Facts& facts);
Finding tray(const Facts& facts);
Finding shortcut(const Facts& facts);
Finding tools(const Facts& facts);

// Services.cpp
Finding bus(const Facts& facts);
Finding notifications(const Facts& facts);
Finding portal(const Facts& facts);
Finding calendar(const Facts& facts);

// Files.cpp
Finding program(const Facts& facts);
/// What it cannot do here, but for what has a check of its own; in a Wayland session also what it
/// can do with limits.
std::vector<Finding> losses(const Facts& facts);
Finding settings(const Facts& facts);
std::vector<Finding> autostart(const Facts& facts);
Finding versions(const Facts& facts);

} // namespace checks

} // namespace doctor
