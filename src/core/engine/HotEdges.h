#pragma once

namespace palisor {

/// The part of a screen's side that belongs to a corner: one in so many. Deliberately the
/// single-precision number, a little less than 4.2.
constexpr double cornerDivisor = 4.2F;

} // namespace palisor
