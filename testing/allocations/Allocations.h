#pragma once

#include <cstddef>

namespace support {

/// How often this thread has asked for heap memory so far. Whoever links this replaces the
/// allocation functions of its whole program.
std::size_t allocations();

} // namespace support
