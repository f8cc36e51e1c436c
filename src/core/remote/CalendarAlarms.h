#pragma once

#include "platform/Calendar.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace palisor {

/// A rewrite of the alarms that is under way. A calendar service answers in its own time, and the
/// main loop turns between one event and the next.
struct AlarmPass {
    std::vector<platform::CalendarEvent> events;
    std::size_t next = 0;       ///< the first that has not been looked at
    std::size_t unanswered = 0; ///< saves that are under way
    bool isWalking = false;     ///< a save that is answered at once must not begin a second walk
    std::optional<std::string> error; ///< of the last save that failed; nothing clears it
};

} // namespace palisor
