#pragma once

#include "strings/Strings.h"

namespace strings {

extern const std::span<const Text> english;
extern const std::span<const Text> italian;

} // namespace strings
