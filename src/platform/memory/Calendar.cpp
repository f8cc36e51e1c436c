#include "platform/memory/Calendar.h"

#include <algorithm>

namespace platform::memory {

namespace {

constexpr const char* onlySource = "calendar";

} // namespace

void Calendar::requestAccess(std::function<void(bool granted)> completion) {
    reply([completion = std::move(completion), answer = granted] { completion(answer); });
}

void Calendar::findEvents(double seconds, std::function<void(CalendarAnswer)> found) {
    CalendarAnswer answer{.sources = {onlySource}};
    for (const CalendarEvent& event : kept) {
        if (event.start < now() || event.start > now() + seconds) continue;
        answer.events.push_back(event);
        answer.events.back().start -= now();
    }
    reply([found = std::move(found), answer = std::move(answer)]() mutable {
        found(std::move(answer));
    });
}

void Calendar::save(const CalendarEvent& event, Span span, Saved saved) {
    std::optional<double> offset;
    std::optional<std::string> sound;
    if (!event.alarms.empty()) {
        offset = event.alarms.front().offset;
        sound = event.alarms.front().sound;
    }
    effects.emit("calendarSave", Member{"id", event.id}, Member{"span", static_cast<int>(span)},
                 Member{"offset", offset}, Member{"sound", sound});
    const auto failure = std::ranges::find(failures, event.id, &Failure::id);
    if (failure != failures.end()) {
        reply([saved = std::move(saved), error = failure->error] { saved(error); });
        return;
    }
    const auto stored = std::ranges::find_if(kept, [&event](const CalendarEvent& known) {
        return known.id == event.id && known.occurrence == event.occurrence;
    });
    if (stored == kept.end()) {
        reply([saved = std::move(saved)] { saved("there is no such event"); });
        return;
    }
    const bool futureToo = stored->recurring && !stored->detached;
    for (CalendarEvent& known : kept) {
        const bool later =
            futureToo && known.id == event.id && !known.detached && known.start > stored->start;
        if (&known == &*stored || later) known.alarms = event.alarms;
    }
    reply([saved = std::move(saved)] { saved(std::nullopt); });
}

void Calendar::reply(std::function<void()> give) {
    if (late)
        waiting.push_back(std::move(give));
    else
        give();
}

void Calendar::answer() {
    const auto give = std::move(waiting.at(0));
    waiting.pop_front();
    give();
}

void Calendar::add(CalendarEvent event) {
    event.calendar = onlySource;
    event.start += now();
    // Occurrences of one event are added one by one.
    const auto earlier = std::ranges::count(kept, event.id, &CalendarEvent::id);
    if (earlier > 0) event.occurrence = std::to_string(earlier);
    kept.push_back(std::move(event));
}

void Calendar::failSaves(const std::string& id, std::optional<std::string> error) {
    std::erase_if(failures, [&id](const Failure& known) { return known.id == id; });
    if (error) failures.push_back({id, std::move(*error)});
}

} // namespace platform::memory
