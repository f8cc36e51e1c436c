#include "platform/calendar/Backend.h"

#include <condition_variable>
#include <mutex>
#include <stdexcept>

// Stands in for the calendar module. The folder says what it does:
//   /waits      never finds anything until it is interrupted
//   /remarks    has remarks: "a b", then the same, then "b", then "a b" again
//   /elsewhere  refuses
//   /throws     throws in every operation but the first opening

namespace {

using namespace platform::calendar;

class StandIn final : public Backend {
  public:
    explicit StandIn(std::string does) : behaviour(std::move(does)) {}

    Opened open() override {
        if (behaviour == "/elsewhere") return {Refusal::noCalendar, "none here"};
        if (behaviour == "/throws" && count++ > 0) throw std::runtime_error("no memory for this");
        return {};
    }
    Found find(double) override {
        Found found;
        if (behaviour == "/throws") throw 1;
        if (behaviour == "/waits") {
            std::unique_lock lock(guard);
            changed.wait(lock, [this] { return interrupted; });
            interrupted = false;
            found.answer.sources = {"interrupted"};
        }
        ++count;
        if (behaviour == "/remarks" && count != 3) found.remarks = {"a", "b"};
        if (behaviour == "/remarks" && count == 3) found.remarks = {"b"};
        return found;
    }
    std::vector<SaveResult> save(const std::vector<platform::CalendarEvent>& events) override {
        if (behaviour == "/throws") throw std::runtime_error("no memory for this");
        std::vector<SaveResult> results(events.size());
        for (std::size_t index = 0; index < events.size(); ++index)
            if (events[index].id == "bad") results[index] = "refused";
        return results;
    }
    void interrupt() override {
        const std::lock_guard lock(guard);
        interrupted = true;
        changed.notify_all();
    }

  private:
    const std::string behaviour;
    int count = 0;
    std::mutex guard;
    std::condition_variable changed;
    bool interrupted = false;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Backend* makeCalendarBackend(const char* folder,
                                                                               const char*) {
    return new StandIn(folder);
}
