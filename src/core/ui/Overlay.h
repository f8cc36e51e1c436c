#pragma once

#include <cstdint>

namespace palisor::overlay {

/// One past the last named window level: above every ordinary window.
constexpr int level = 21;

/// On all desktops, staying in place, beside full-screen windows and never tiled with them.
constexpr std::uint32_t behaviour = 0x1111;

} // namespace palisor::overlay
