#include "platform/linux/system/ModuleCalendar.h"

#include <dlfcn.h>
#include <utility>

namespace platform::linux {

using calendar::Opened;
using calendar::Refusal;

namespace {

constexpr const char* notOpen = "the calendars are not open";

/// What `work` gives; what `failed` makes of the reason where it throws. Nothing must leave the
/// worker, since that would end the program.
template <class Work, class Failed>
auto guarded(Work&& work, Failed&& failed) -> decltype(work()) {
    try {
        return work();
    } catch (const std::exception& error) {
        return failed(error.what());
    } catch (...) {
        return failed("something unknown was thrown");
    }
}

} // namespace

ModuleCalendar::ModuleCalendar(Place module, RunLoop& loop, Log& logger, Refused tell,
                               double patience)
    : place(std::move(module)),
      runLoop(loop),
      log(logger),
      refused(std::move(tell)),
      secondsToAnswer(patience) {}

ModuleCalendar::~ModuleCalendar() {
    runLoop.invalidate(deadline);
    {
        const std::lock_guard lock(guard);
        stopping = true;
        queue.clear();
        if (backend) backend->interrupt();
    }
    changed.notify_one();
    if (worker.joinable()) worker.join();
}

void ModuleCalendar::requestAccess(std::function<void(bool granted)> completion) {
    if (!worker.joinable()) worker = std::thread([this] { workUntilStopped(); });
    watch();
    enqueue(Work{[this, completion = std::move(completion)] {
        const Opened opened = guarded(
            [this] { return open(); },
            [](const char* why) {
                return Opened{Refusal::noCalendar, std::string("the calendars failed: ") + why};
            });
        answer([this, opened] { refuse(opened); });
        completion(opened.refusal == Refusal::none);
    }});
}

void ModuleCalendar::findEvents(double seconds, std::function<void(CalendarAnswer)> found) {
    watch();
    enqueue(Work{[this, seconds, found = std::move(found)] {
        auto result = find(seconds);
        answer([this, found, result = std::move(result)] {
            logNew(result.remarks);
            found(result.answer);
        });
    }});
}

void ModuleCalendar::save(const CalendarEvent& event, Span, Saved saved) {
    watch();
    enqueue(Saving{event, std::move(saved)});
}

void ModuleCalendar::enqueue(Request request) {
    {
        const std::lock_guard lock(guard);
        queue.push_back(std::move(request));
    }
    changed.notify_one();
}

void ModuleCalendar::workUntilStopped() {
    for (;;) {
        std::unique_lock lock(guard);
        changed.wait(lock, [this] { return stopping || !queue.empty(); });
        if (stopping) break;
        auto savings = takeSavings();
        Work work;
        if (savings.empty()) {
            work = std::get<Work>(std::move(queue.front()));
            queue.pop_front();
        }
        lock.unlock();
        if (work)
            work();
        else
            saveAll(std::move(savings));
    }
    std::shared_ptr<calendar::Backend> last;
    {
        const std::lock_guard lock(guard);
        last.swap(backend);
    }
}

/// Those at the head of the queue. The caller holds the lock.
std::vector<ModuleCalendar::Saving> ModuleCalendar::takeSavings() {
    std::vector<Saving> savings;
    while (!queue.empty() && std::holds_alternative<Saving>(queue.front())) {
        savings.push_back(std::get<Saving>(std::move(queue.front())));
        queue.pop_front();
    }
    return savings;
}

/// On the worker.
void ModuleCalendar::saveAll(std::vector<Saving> savings) {
    std::vector<CalendarEvent> events;
    events.reserve(savings.size());
    for (Saving& saving : savings)
        events.push_back(std::move(saving.event));
    const auto results = save(events);
    for (std::size_t index = 0; index < savings.size(); ++index)
        answer([this, saved = std::move(savings[index].saved), event = std::move(events[index]),
                result = results[index]] {
            logFailure(event, result);
            saved(result);
        });
}

/// On the worker.
std::vector<calendar::SaveResult> ModuleCalendar::save(const std::vector<CalendarEvent>& events) {
    using Results = std::vector<calendar::SaveResult>;
    if (!backend) return Results(events.size(), notOpen);
    return guarded([&] { return backend->save(events); },
                   [&](const char* why) { return Results(events.size(), why); });
}

/// On the worker.
calendar::Found ModuleCalendar::find(double seconds) {
    if (!backend) return {};
    return guarded([&] { return backend->find(seconds); },
                   [](const char* why) {
                       return calendar::Found{{}, {std::string("the calendars failed: ") + why}};
                   });
}

/// On the worker.
Opened ModuleCalendar::open() {
    if (!backend)
        if (Opened loaded = load(); loaded.refusal != Refusal::none) return loaded;
    return backend->open();
}

Opened ModuleCalendar::load() {
    // It is never unloaded: the types that its libraries register stay for the process's life.
    void* const module = ::dlopen(place.module.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (module == nullptr) return {Refusal::noModule, ::dlerror()};
    auto* const make =
        reinterpret_cast<calendar::MakeBackend*>(::dlsym(module, calendar::makeBackendName));
    if (make == nullptr) return {Refusal::noModule, ::dlerror()};
    std::shared_ptr<calendar::Backend> made(make(place.folder.c_str(), place.journal.c_str()));
    const std::lock_guard lock(guard);
    backend = std::move(made);
    return {};
}

/// On the worker: has the main thread go on.
void ModuleCalendar::answer(Work work) {
    runLoop.performOnMainThread(
        [this, weak = std::weak_ptr(alive), work = std::move(work)] {
            if (weak.expired()) return;
            if (--waiting == 0) runLoop.invalidate(deadline);
            work();
        },
        false);
}

void ModuleCalendar::refuse(const Opened& opened) {
    if (opened.refusal == Refusal::none) return;
    if (!opened.detail.empty()) log.write(opened.detail);
    if (refused) refused(opened.refusal);
}

/// What was said of the answer before is not said again.
void ModuleCalendar::logNew(const std::vector<std::string>& remarks) {
    for (const std::string& remark : remarks)
        if (!remarked.contains(remark)) log.write(remark);
    remarked = {remarks.begin(), remarks.end()};
}

/// Each pass tries again, and says so once.
void ModuleCalendar::logFailure(const CalendarEvent& event, const calendar::SaveResult& result) {
    const std::string what =
        "the alarms of the event " + event.id + " in " + event.calendar + " cannot be changed";
    if (!result)
        failures.erase(what);
    else if (failures.insert(what).second)
        log.write(what + ": " + *result);
}

void ModuleCalendar::watch() {
    ++waiting;
    runLoop.invalidate(deadline);
    deadline = runLoop.schedule(secondsToAnswer, false, "calendar", [this] { giveUp(); });
}

void ModuleCalendar::giveUp() {
    const std::lock_guard lock(guard);
    if (backend) backend->interrupt();
}

} // namespace platform::linux
