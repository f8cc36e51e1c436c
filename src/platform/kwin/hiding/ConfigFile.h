#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform::kwin {

/// The text of a file; nothing where there is none that can be read.
std::optional<std::string> textOf(const std::string& path);

/// Puts the text in the place of the file, or of the one that links lead to, as a whole and with
/// the same rights; nothing removes it. False where that failed, and the file is what it was.
bool replace(const std::string& path, std::optional<std::string_view> text);

} // namespace platform::kwin
