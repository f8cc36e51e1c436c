#pragma once

#include "calendar/Ics.h"
#include "platform/calendar/Backend.h"

#include <gmock/gmock.h>

// Calendars at one known time, over which the program's passes go.

namespace calendartests {

using platform::CalendarAlarm;
using platform::CalendarEvent;
using platform::calendar::Found;
using platform::calendar::Refusal;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

// Half an hour after the clocks of Rome went back from three to two; New York follows a week later.
inline constexpr std::time_t now = 1792891800; // 2026-10-25T01:30:00Z
inline constexpr double hour = 3600;
inline constexpr std::time_t anHour = 3600;
inline constexpr std::time_t aDay = 24 * anHour;

inline const std::string inTenMinutes = "DTSTART:20261025T014000Z\nDTEND:20261025T021000Z\n";
/// Twenty minutes at three in Rome, for an event that began five days ago.
inline const std::string daily = "DTSTART;TZID=Europe/Rome:20261020T030000\n"
                                 "DTEND;TZID=Europe/Rome:20261020T032000\n";

/// The occurrence of that day of an event "daily", which was changed to begin elsewhen.
inline std::string detached(const std::string& day, const std::string& start) {
    return vevent("daily",
                  "RECURRENCE-ID;TZID=Europe/Rome:" + day +
                      "T030000\nDTSTART;TZID=Europe/Rome:" + start + "\n",
                  {{"-PT3M"}, {"-PT4M"}});
}

/// As the program wants an event: with the last of its alarms that is no default, or a new one.
inline CalendarEvent withOneAlarm(CalendarEvent event, double offset = 0,
                                  const std::string& sound = "Pop") {
    CalendarAlarm kept;
    for (const CalendarAlarm& alarm : event.alarms)
        if (!alarm.isDefault) kept = alarm;
    kept.offset = offset;
    kept.sound = sound;
    event.alarms = {kept};
    return event;
}

class CalendarPasses : public testing::Test {
  protected:
    explicit CalendarPasses(platform::calendar::Backend& tested) : backendOfTheTest(tested) {}

    Found find() { return backendOfTheTest.find(hour); }

    /// As the program does it; what the saves answered.
    std::vector<std::string> pass(double offset = 0, const std::string& sound = "Pop") {
        lastFound = find();
        std::vector<CalendarEvent> all;
        for (const CalendarEvent& event : lastFound.answer.events)
            if (!event.detached) all.push_back(withOneAlarm(event, offset, sound));
        std::vector<std::string> errors;
        for (const auto& error : backendOfTheTest.save(all))
            if (error) errors.push_back(*error);
        return errors;
    }
    std::vector<std::string> ids() {
        std::vector<std::string> all;
        for (const CalendarEvent& event : find().answer.events)
            all.push_back(event.id);
        return all;
    }
    std::vector<double> starts() {
        std::vector<double> all;
        for (const CalendarEvent& event : find().answer.events)
            all.push_back(event.start);
        return all;
    }

    std::time_t time = now;
    Found lastFound; ///< by the last pass

  private:
    platform::calendar::Backend& backendOfTheTest;
};

} // namespace calendartests
