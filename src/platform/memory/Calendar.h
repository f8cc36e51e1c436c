#pragma once

#include "platform/Calendar.h"
#include "platform/memory/Effects.h"

#include <deque>

namespace platform::memory {

/// Answers everything from inside the call, unless it is late. Events have no duration.
class Calendar final : public platform::Calendar {
  public:
    Calendar(Effects& stream, const Clock& virtualClock) : effects(stream), clock(virtualClock) {}

    void requestAccess(std::function<void(bool granted)> completion) override;
    /// In the order in which they were added.
    void findEvents(double seconds, std::function<void(CalendarAnswer)> found) override;
    void save(const CalendarEvent& event, Span span, Saved saved) override;

    void setGranted(bool value) { granted = value; }

    /// Whether answers wait from now on. Requests are carried out at once all the same.
    void setLate(bool value) { late = value; }
    std::size_t unanswered() const { return waiting.size(); }
    /// Gives the answer that has waited longest. Throws std::out_of_range where none waits.
    void answer();

    /// `event.start` is counted from now.
    void add(CalendarEvent event);
    /// With `start` in seconds since the beginning of virtual time.
    const std::vector<CalendarEvent>& events() const { return kept; }

    /// What the saves of that event answer from now on; nothing for success.
    void failSaves(const std::string& id, std::optional<std::string> error);

  private:
    struct Failure {
        std::string id;
        std::string error;
    };

    void reply(std::function<void()> give);
    double now() const { return static_cast<double>(clock.nanoseconds) / 1e9; }

    Effects& effects;
    const Clock& clock;
    bool granted = true;
    bool late = false;
    std::deque<std::function<void()>> waiting;
    std::vector<CalendarEvent> kept;
    std::vector<Failure> failures;
};

} // namespace platform::memory
