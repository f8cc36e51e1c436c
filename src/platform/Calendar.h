#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform {

struct CalendarAlarm {
    std::string id{};       ///< which of the event's alarms; empty for a new one
    double offset = 0;      ///< seconds from the start of the event, before it where negative
    std::string sound{};    ///< a name, empty for none
    bool isDefault = false; ///< its attribute "Default" is the number 1
};

/// One occurrence of an event.
struct CalendarEvent {
    std::string id{};         ///< the event's, the same for each of its occurrences
    std::string calendar{};   ///< where it is kept
    std::string occurrence{}; ///< which one of a recurring event; empty for a single event
    double start = 0;         ///< seconds from now
    bool recurring = false;
    bool detached = false; ///< an occurrence that was changed by itself
    std::vector<CalendarAlarm> alarms{};
};

struct CalendarAnswer {
    std::vector<std::string> sources{}; ///< ids of the calendars that were asked
    std::vector<CalendarEvent> events{};
};

/// The user's calendars. Main thread. What is asked for is carried out in the order of asking, and
/// an answer comes on the main thread, from inside the call or later; none comes after the object
/// has gone.
class Calendar {
  public:
    enum class Span { futureEvents = 1 };

    /// Nothing when the event was saved, else what went wrong.
    using Saved = std::function<void(const std::optional<std::string>& error)>;

    virtual ~Calendar() = default;

    /// Asks whether the user's events may be read and changed. `completion` is called once, on any
    /// thread, perhaps from inside the call.
    virtual void requestAccess(std::function<void(bool granted)> completion) = 0;

    /// Every occurrence, in any calendar, of which a part lies within the next `seconds`.
    virtual void findEvents(double seconds, std::function<void(CalendarAnswer)> found) = 0;

    /// Makes the event's alarms those of `event`, which must come from `findEvents`, and touches
    /// nothing else of it. An alarm that keeps its id keeps what is not told here. The later
    /// occurrences of a recurring event get them too, the earlier ones stay. Alarms that mean the
    /// same already are not written again.
    virtual void save(const CalendarEvent& event, Span span, Saved saved) = 0;
};

} // namespace platform
