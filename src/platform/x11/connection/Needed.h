#pragma once

#include <compare>
#include <string>

namespace platform::x11 {

/// The version of an extension.
struct ExtensionVersion {
    unsigned major = 0, minor = 0;
    auto operator<=>(const ExtensionVersion&) const = default;

    std::string text() const { return std::to_string(major) + "." + std::to_string(minor); }
};

/// The lowest versions that the program works with.
namespace needed {
inline constexpr ExtensionVersion randr{1, 5}, xfixes{5, 0}, xinput{2, 2};
/// Without it the cursor is put back after it has left, instead of being held.
inline constexpr ExtensionVersion barrierHits{2, 3};
} // namespace needed

} // namespace platform::x11
