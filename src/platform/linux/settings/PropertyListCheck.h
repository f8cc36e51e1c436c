#pragma once

#include <string_view>

namespace platform::linux {

enum class Wholeness {
    whole,
    repeatsKeys, ///< readable, but only the last of the values under one key can be kept
    damaged,
};

/// Whether an XML property list with a dictionary as its root can be read without losing anything.
/// libplist cannot tell: it takes a malformed number for 0, drops a key without a value and data of
/// the wrong length, reads "010" as 8, and ignores what follows the root.
Wholeness checkPropertyList(std::string_view text);

} // namespace platform::linux
