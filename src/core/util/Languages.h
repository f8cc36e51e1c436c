#pragma once

#include "platform/SystemInfo.h"

#include <string>

namespace palisor {

/// The language that the user prefers, whether or not the product has texts in it. One that there
/// is none of shows itself.
inline std::string preferredLanguage(const platform::SystemInfo& system) {
    const auto languages = system.languages();
    return languages.empty() ? "(null)" : languages.front();
}

} // namespace palisor
