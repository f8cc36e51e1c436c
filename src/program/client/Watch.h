#pragma once

#include "program/client/Remote.h"

namespace client {

/// Prints the whole state, and then each change as a line, until the program ends. Throws Failure.
void watch(Remote& remote, bool asJson);

} // namespace client
