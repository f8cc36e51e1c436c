#pragma once

#include <cstdint>

namespace platform::x11::gammaguard {

// What goes down the socket: a header, then for `keep` three times `size` values of 16 bits, red,
// green and blue. Both ends are builds of one tree on one machine, so the form is the memory's.

enum class Order : std::uint32_t { keep = 1, forget = 2 };

struct Header {
    Order order;
    std::uint32_t crtc;
    std::uint32_t size; ///< entries of one colour
};

} // namespace platform::x11::gammaguard
