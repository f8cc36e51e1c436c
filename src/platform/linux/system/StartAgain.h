#pragma once

#include <string>

namespace platform::linux {

/// Becomes the executable that lies now where this one was started from, with the same arguments
/// and behind them `option`, unless that is the last one already. Returns where that cannot be, as
/// when it lies there no longer. For the very end of a process: nothing is undone.
void startAgain(const std::string& option);

} // namespace platform::linux
