#pragma once

#include "platform/qt/pictures/Pictures.h"
#include "testing/KeptLog.h"

#include <cstdint>
#include <string>
#include <vector>

namespace imagetests {

using testing_support::KeptLog;

using Pixels = std::vector<std::uint32_t>; ///< premultiplied, row by row

/// A shipped image as the program draws it at that size. A missing one fails the test.
Pixels drawn(const std::string& name, int width, int height);

unsigned alpha(std::uint32_t pixel);

/// The largest difference of a channel, of 255.
int difference(std::uint32_t one, std::uint32_t other);

/// The share of an image that is more than half covered.
double cover(const Pixels& pixels);

} // namespace imagetests
