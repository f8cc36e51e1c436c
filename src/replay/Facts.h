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

/// Facts about the virtual machine that no service asks for yet, kept for those that will.
struct Facts {
    std::string model = "Mac0,0";
    std::string uuid = "00000000-0000-0000-0000-000000000000";
    std::string locale = "US";
    std::string now = "2026-01-02T15:04:05";
    std::optional<std::string> reply; ///< the action service's next answer; an error if none
    std::deque<std::optional<Shortcut>> recordings; ///< to come; nothing clears the shortcut
};

/// Makes the platform what it is at the start of every scenario.
void setUp(platform::memory::MemoryPlatform& platform);

/// Puts a recorded shortcut into the stored settings, or takes it out.
void storeShortcut(platform::memory::MemoryPlatform& platform,
                   const std::optional<Shortcut>& shortcut);

} // namespace palisor::replay
