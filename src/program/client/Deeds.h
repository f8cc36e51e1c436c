#pragma once

#include "program/client/Words.h"

namespace client {

/// Does what a command line asks for, but `doctor`, and prints what there is to print. Throws
/// Failure.
void carryOut(const Words& words);

} // namespace client
