#pragma once

#include "testing/gnome/ShellWitness.h"

namespace support {

struct Walk {
    long steps = 0;
    long outside = 0; ///< times that the cursor was seen outside
    int depth = 0;    ///< pixels, at most
    long atEdge = 0;  ///< steps that ended at an edge or in a corner of the area
    int presses = 0;
    std::string first{}; ///< how it got outside
};

/// Strays over the area as long as it may: legs of a random length, direction, speed and rate, with
/// buttons pressed, held and released on the way. What a click opens in the panel is closed, as its
/// entries would lock the screen or switch the product off. Layout coordinates; the same seed goes
/// the same ways.
Walk stray(const PrivateShell& shell, ShellHand& hand, const Area& inside,
           const std::function<bool(const Walk&)>& goesOn, unsigned seed = 1);

} // namespace support
