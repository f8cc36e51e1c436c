#pragma once

#include <string>

namespace platform::session {

/// A stream connected to the socket of that path, which blocks nobody; the caller closes it. -1
/// where nobody listens there.
int connectTo(const std::string& path);

} // namespace platform::session
