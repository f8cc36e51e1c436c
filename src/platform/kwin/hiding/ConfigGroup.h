#pragma once

#include <map>
#include <string>
#include <string_view>

namespace platform::kwin {

/// The text of a KDE settings file in which the group has these values in the place of those it
/// had; everything else stays, to the byte.
std::string withValues(std::string_view text, std::string_view group,
                       const std::map<std::string, std::string>& values);

/// The same with the group, which may be none, of another such text.
std::string withGroupOf(std::string_view text, std::string_view group, std::string_view other);

} // namespace platform::kwin
