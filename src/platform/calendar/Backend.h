#pragma once

#include "platform/Calendar.h"

#include <optional>
#include <string>
#include <vector>

// The seam between the program and the calendar module, a shared library that is loaded when a
// product first asks for the user's events. Both are built together.

namespace platform::calendar {

/// Why no events can be had.
enum class Refusal { none, noModule, noServer, noCalendar, noFolder };

struct Opened {
    Refusal refusal = Refusal::none;
    std::string detail; ///< for the log: what was tried, what went wrong
};

struct Found {
    CalendarAnswer answer;
    std::vector<std::string> remarks; ///< what was left out, and why; the same text while it is so
};

/// Nothing when it was saved, else what went wrong.
using SaveResult = std::optional<std::string>;

/// Every operation waits for its result. One thread, which also makes and destroys the object.
class Backend {
  public:
    virtual ~Backend() = default;

    /// Finds out whether there are calendars; may be called again.
    virtual Opened open() = 0;

    /// What `Calendar::findEvents` promises.
    virtual Found find(double seconds) = 0;

    /// What `Calendar::save` promises, for several events of the last answer, in their order. One
    /// result each.
    virtual std::vector<SaveResult> save(const std::vector<CalendarEvent>& events) = 0;

    /// Makes the operation that waits fail. Any thread.
    virtual void interrupt() = 0;
};

/// The one symbol that a module exports. An empty folder asks for the desktop's own calendars, else
/// it holds one .ics file an event. The journal is a file, which need not be there, for what a kill
/// leaves half done.
using MakeBackend = Backend*(const char* folder, const char* journal);
inline constexpr const char* makeBackendName = "makeCalendarBackend";

} // namespace platform::calendar
