#pragma once

#include <string>

namespace bus {

/// The session bus's address, empty where nothing names one.
std::string addressOfSessionBus();

} // namespace bus
