#pragma once

#include <cstddef>

namespace bench {

/// How often this program has asked for heap memory so far.
std::size_t allocations();

} // namespace bench
