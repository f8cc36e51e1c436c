#pragma once

#include "platform/Calendar.h"
#include "platform/Log.h"
#include "platform/RunLoop.h"
#include "platform/calendar/Backend.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <variant>
#include <vector>

namespace platform::linux {

/// The user's calendars through a module, a shared library that is loaded when access is asked for
/// the first time. The module waits for servers and disks, and therefore works on a thread of its
/// own: of the main loop only the hand-over of one answer is taken at a time.
class ModuleCalendar final : public Calendar {
  public:
    struct Place {
        std::string module;    ///< path of the shared library
        std::string folder;    ///< of .ics files; empty for the desktop's own calendars
        std::string journal{}; ///< a file for what a kill leaves half done; empty for none
    };
    /// Told on the main thread why access was refused.
    using Refused = std::function<void(calendar::Refusal)>;

    /// What is lent must outlive the object. An operation that takes longer than
    /// `secondsToAnswer` is given up.
    ModuleCalendar(Place place, RunLoop& runLoop, Log& log, Refused refused,
                   double secondsToAnswer = 60);
    ~ModuleCalendar() override;
    ModuleCalendar(const ModuleCalendar&) = delete;
    ModuleCalendar& operator=(const ModuleCalendar&) = delete;

    void requestAccess(std::function<void(bool granted)> completion) override;
    void findEvents(double seconds, std::function<void(CalendarAnswer)> found) override;
    void save(const CalendarEvent& event, Span span, Saved saved) override;

  private:
    using Work = std::function<void()>;
    struct Saving {
        CalendarEvent event;
        Saved saved;
    };
    /// Saves that follow each other are carried out together.
    using Request = std::variant<Work, Saving>;

    void enqueue(Request request);
    std::vector<Saving> takeSavings();
    void saveAll(std::vector<Saving> savings);
    void workUntilStopped();
    calendar::Opened open();
    calendar::Opened load();
    std::vector<calendar::SaveResult> save(const std::vector<CalendarEvent>& events);
    calendar::Found find(double seconds);
    void answer(Work work);
    void refuse(const calendar::Opened& opened);
    void logNew(const std::vector<std::string>& remarks);
    void logFailure(const CalendarEvent& event, const calendar::SaveResult& result);
    void watch();
    void giveUp();

    const Place place;
    RunLoop& runLoop;
    Log& log;
    const Refused refused;
    const double secondsToAnswer;
    std::set<std::string> remarked; ///< in the last answer
    std::set<std::string> failures; ///< of saves, that were logged since one of that event worked

    /// What has not been answered, and the timer that watches over it. Main thread.
    std::size_t waiting = 0;
    TimerId deadline = TimerId::none;

    /// Answers that are under way when the object goes are dropped.
    std::shared_ptr<const bool> alive = std::make_shared<const bool>(true);

    std::mutex guard; ///< of what follows
    std::condition_variable changed;
    std::deque<Request> queue;
    bool stopping = false;
    std::shared_ptr<calendar::Backend> backend; ///< made, used and destroyed by the worker

    std::thread worker; ///< started by the first request
};

} // namespace platform::linux
