#pragma once

#include "platform/memory/MemoryPlatform.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace palisor::replay {

using platform::Shortcut;

constexpr std::int64_t mostKeyCode = 0xffff;
constexpr std::int64_t mostFlags = 0xffffffff;

inline Shortcut toShortcut(std::int64_t keyCode, std::int64_t flags) {
    return {static_cast<std::uint16_t>(keyCode), static_cast<std::uint32_t>(flags)};
}

/// What the user will do when asked.
struct Facts {
    std::deque<std::optional<Shortcut>> recordings; ///< to come; nothing clears the shortcut
};

/// Makes the platform what it is at the start of every scenario.
void setUp(platform::memory::MemoryPlatform& platform);

/// Puts a recorded shortcut into the stored settings, or takes it out.
void storeShortcut(platform::memory::MemoryPlatform& platform,
                   const std::optional<Shortcut>& shortcut);

} // namespace palisor::replay
