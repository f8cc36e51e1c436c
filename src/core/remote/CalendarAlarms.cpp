#include "remote/CalendarAlarms.h"

#include "app/AppDelegate.h"
#include "app/Keys.h"
#include "util/Format.h"

#include <functional>
#include <utility>

// One alarm for each event of the coming hour.

namespace palisor {

using platform::Calendar;
using platform::CalendarAlarm;
using platform::CalendarEvent;

namespace {

constexpr double passPeriod = 10.0;
constexpr double hour = 3600;

// A calendar server takes a few saves together for the price of one. The rest waits, so that the
// main loop turns, and that little happens after the product is switched off.
constexpr std::size_t mostUnanswered = 32;

template <class Items, class Text>
std::string inParentheses(const Items& items, Text text) {
    std::string list = "(";
    for (const auto& item : items)
        (list += list.size() > 1 ? ", " : "") += std::invoke(text, item);
    return list + ")";
}

} // namespace

void AppDelegate::turnOnCustomDefaultAlert() {
    if (store == nullptr) return;
    store->requestAccess([this, request = ++accessRequest](bool granted) {
        services.runLoop.performOnMainThread(
            [this, request, granted] {
                // Switched off while the answer was awaited.
                if (request == accessRequest) startAlarmPasses(granted);
            },
            false);
    });
}

void AppDelegate::turnOffCustomDefaultAlert() {
    invalidate(customDefaultEventTimer);
    ++accessRequest;
    alarmPass.reset();
}

void AppDelegate::startAlarmPasses(bool granted) {
    if (!granted) {
        services.log.write("!granted");
        return;
    }
    invalidate(customDefaultEventTimer);
    ReplaceDefaultEvents();
    customDefaultEventTimer =
        schedule<&AppDelegate::ReplaceDefaultEvents>(passPeriod, true, "ReplaceDefaultEvents");
}

void AppDelegate::ReplaceDefaultEvents() {
    // A slow calendar is not asked again before it has answered.
    if (store == nullptr || alarmPass) return;
    services.log.write("=============");
    alarmPass = std::make_shared<AlarmPass>();
    store->findEvents(
        hour, [this, weak = std::weak_ptr(alarmPass)](platform::CalendarAnswer answer) {
            const auto pass = weak.lock();
            if (!pass) return;
            services.log.write("s: " + inParentheses(answer.sources, std::identity()) + " ");
            services.log.write("events: " + inParentheses(answer.events, &CalendarEvent::id));
            pass->events = std::move(answer.events);
            rewriteAlarms(pass);
        });
}

void AppDelegate::rewriteAlarms(const std::shared_ptr<AlarmPass>& pass) {
    if (std::exchange(pass->isWalking, true)) return;
    while (pass->unanswered < mostUnanswered && pass->next < pass->events.size()) {
        CalendarEvent& event = pass->events[pass->next++];
        if (event.detached) continue;
        event.alarms = {theOneAlarm(event.alarms)};
        ++pass->unanswered;
        store->save(event, Calendar::Span::futureEvents,
                    [this, weak = std::weak_ptr(pass), id = event.id](const auto& error) {
                        const auto same = weak.lock();
                        if (same) alarmsSaved(same, id, error);
                    });
    }
    pass->isWalking = false;
    if (pass->unanswered == 0 && alarmPass == pass) alarmPass.reset();
}

/// The alarm that is kept is the last one that is not the calendar's own default.
CalendarAlarm AppDelegate::theOneAlarm(const std::vector<CalendarAlarm>& alarms) const {
    CalendarAlarm kept;
    for (const CalendarAlarm& alarm : alarms) {
        if (alarm.isDefault) continue;
        // Alarms have no more properties than these, and nothing observes them.
        services.log.write(
            "a.scriptingProperties): {Default = 0; relativeOffset = " + shortest(alarm.offset) +
            "; soundName = " + (alarm.sound.empty() ? "(null)" : alarm.sound) + "} ");
        services.log.write("a.observationInfo : (null)");
        kept = alarm;
    }
    kept.offset = services.settings.integerForKey(keys::OFFSET);
    kept.sound = services.settings.stringForKey(keys::ALARM_SOUND).value_or("");
    return kept;
}

/// The error of an earlier event stays where it is, so that one failure marks the rest of the pass.
void AppDelegate::alarmsSaved(const std::shared_ptr<AlarmPass>& pass, const std::string& id,
                              const std::optional<std::string>& error) {
    --pass->unanswered;
    if (error) pass->error = error;
    services.log.write(pass->error ? "err: " + *pass->error : "Edited ID: " + id);
    rewriteAlarms(pass);
}

} // namespace palisor
