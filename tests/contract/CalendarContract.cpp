#include "calendar/Ics.h"
#include "calendar/Session.h"
#include "platform/calendar/Evolution.h"
#include "platform/calendar/folder/Folder.h"
#include "platform/linux/system/ModuleCalendar.h"
#include "platform/memory/Calendar.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

#include <atomic>
#include <ctime>
#include <memory>

// What every calendar promises. Nothing is told of how long an answer takes.

namespace {

using platform::CalendarAlarm;
using platform::CalendarAnswer;
using platform::CalendarEvent;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double hour = 3600;
constexpr double day = 24 * hour;
constexpr std::time_t aDay = 86400;

/// What a test puts into a calendar; a series recurs daily, from `daysBefore` on.
struct Put {
    std::string id;
    double start = 600; ///< seconds from now
    std::vector<CalendarAlarm> alarms{};
    bool daily = false;
    bool hasDetached = false; ///< today's occurrence was changed by itself
};

struct MemoryCalendar {
    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::Calendar calendar{effects, clock};

    platform::Calendar& get() { return calendar; }
    void put(const Put& put) {
        CalendarEvent event{
            .id = put.id, .start = put.start, .recurring = put.daily, .alarms = put.alarms};
        if (!put.daily) {
            calendar.add(event);
            return;
        }
        for (const int days : {-1, 0, 1}) {
            event.start = put.start + days * day;
            event.detached = days == 0 && put.hasDetached;
            calendar.add(event);
        }
    }
    /// The alarms of the occurrence that began a day ago.
    std::vector<CalendarAlarm> yesterdays(const std::string& id) {
        for (const CalendarEvent& event : calendar.events())
            if (event.id == id && event.start < 0) return event.alarms;
        return {};
    }
    void wait(const std::atomic<bool>& answered) { EXPECT_TRUE(answered); }
};

std::string icsOf(const Put& put, std::time_t now) {
    using namespace calendartests;
    std::vector<Alarm> alarms;
    for (const CalendarAlarm& alarm : put.alarms)
        alarms.push_back({"-PT" + std::to_string(-std::lround(alarm.offset)) + "S",
                          (alarm.sound.empty() ? "" : "ATTACH:" + alarm.sound + "\n") +
                              (alarm.isDefault ? "X-DEFAULT-ALARM:1\n" : "")});
    const auto start = now + static_cast<std::time_t>(put.start);
    const auto first = put.daily ? start - 10 * static_cast<std::time_t>(day) : start;
    std::string text = vevent(put.id,
                              "DTSTART:" + stamp(first) + "\nDURATION:PT30M\n" +
                                  (put.daily ? "RRULE:FREQ=DAILY\n" : ""),
                              alarms);
    if (put.hasDetached)
        text += vevent(put.id, "RECURRENCE-ID:" + stamp(start) + "\nDTSTART:" + stamp(start) + "\n",
                       alarms);
    return vcalendar(text);
}

/// A module's calendar with the toolkit's loop.
class RealCalendar {
  public:
    explicit RealCalendar(const std::string& folder)
        : calendar({.module = CALENDAR_MODULE, .folder = folder}, loop, log, {}) {}

    platform::Calendar& get() { return calendar; }
    void wait(const std::atomic<bool>& answered) {
        const auto limit = loop.schedule(60, false, "test", [this] { loop.stop(); });
        const auto look = loop.schedule(0.001, true, "test", [&] {
            if (answered) loop.stop();
        });
        if (!answered) loop.run();
        loop.invalidate(limit);
        loop.invalidate(look);
        EXPECT_TRUE(answered);
    }
    platform::qt::QtRunLoop loop;
    testing_support::KeptLog log;
    const std::time_t now = std::time(nullptr);

  private:
    platform::linux::ModuleCalendar calendar;
};

/// As someone saw it a day ago.
template <class Backend>
std::vector<CalendarAlarm> alarmsADayAgo(Backend&& backend, const std::string& id) {
    (void)backend.open();
    for (const CalendarEvent& event : backend.find(hour).answer.events)
        if (event.id == id) return event.alarms;
    return {};
}

struct FolderCalendar : testing_support::TempFolder, RealCalendar {
    FolderCalendar() : RealCalendar(path()) {}
    void put(const Put& put) { write(put.id + ".ics", icsOf(put, now)); }
    std::vector<CalendarAlarm> yesterdays(const std::string& id) {
        return alarmsADayAgo(platform::calendar::Folder(path(), [this] { return now - aDay; }), id);
    }
};

struct ServerCalendar : RealCalendar {
    ServerCalendar() : RealCalendar("") { client.ask("new " + name); }
    ~ServerCalendar() { client.ask("disable " + name); }
    void put(const Put& put) { client.add(name, icsOf(put, now)); }
    std::vector<CalendarAlarm> yesterdays(const std::string& id) {
        return alarmsADayAgo(platform::calendar::Evolution([this] { return now - aDay; }), id);
    }
    static inline int made = 0;
    const std::string name = "calendar" + std::to_string(++made);
    calendartests::Client client;
};

template <class Backend>
class CalendarContract : public testing::Test {
  protected:
    bool access() {
        std::atomic<bool> answered = false;
        bool result = false;
        // On another thread: the loop looks at it.
        backend.get().requestAccess([&](bool granted) {
            result = granted;
            answered = true;
        });
        backend.wait(answered);
        return result;
    }
    CalendarAnswer find(double seconds = hour) {
        std::atomic<bool> answered = false;
        CalendarAnswer result;
        backend.get().findEvents(seconds, [&](CalendarAnswer answer) {
            result = std::move(answer);
            answered = true;
        });
        backend.wait(answered);
        return result;
    }
    std::optional<std::string> save(const CalendarEvent& event) {
        std::atomic<bool> answered = false;
        std::optional<std::string> result;
        backend.get().save(event, platform::Calendar::Span::futureEvents, [&](const auto& error) {
            result = error;
            answered = true;
        });
        backend.wait(answered);
        return result;
    }
    std::vector<std::string> ids(double seconds = hour) {
        std::vector<std::string> all;
        for (const CalendarEvent& event : find(seconds).events)
            all.push_back(event.id);
        return all;
    }
    CalendarEvent only(double seconds = hour) {
        auto events = find(seconds).events;
        EXPECT_THAT(events, SizeIs(1));
        return events.empty() ? CalendarEvent{} : events.front();
    }

    Backend backend;
};

using Backends = testing::Types<MemoryCalendar, FolderCalendar, ServerCalendar>;
TYPED_TEST_SUITE(CalendarContract, Backends);

TYPED_TEST(CalendarContract, GrantsAccessWhereThereAreCalendarsAndNamesThem) {
    EXPECT_TRUE(this->access());
    EXPECT_TRUE(this->access()) << "and again";
    EXPECT_FALSE(this->find().sources.empty());
    EXPECT_THAT(this->ids(), IsEmpty());
}

TYPED_TEST(CalendarContract, FindsWhatIsWithinTheTimeAndTellsOfItsAlarms) {
    this->access();
    this->backend.put(
        {.id = "near",
         .start = 600,
         .alarms = {{.offset = -300, .sound = "Basso"}, {.offset = -60, .isDefault = true}}});
    this->backend.put({.id = "far", .start = 61 * 60});
    const CalendarEvent event = this->only();
    EXPECT_EQ(event.id, "near");
    EXPECT_NEAR(event.start, 600, 60);
    EXPECT_FALSE(event.recurring || event.detached);
    ASSERT_THAT(event.alarms, SizeIs(2));
    EXPECT_EQ(event.alarms[0].offset, -300);
    EXPECT_EQ(event.alarms[0].sound, "Basso");
    EXPECT_FALSE(event.alarms[0].isDefault);
    EXPECT_EQ(event.alarms[1].offset, -60);
    EXPECT_EQ(event.alarms[1].sound, "");
    EXPECT_TRUE(event.alarms[1].isDefault);
    EXPECT_THAT(this->ids(2 * hour), SizeIs(2));
}

TYPED_TEST(CalendarContract, SavesTheAlarmsThatItIsGiven) {
    this->access();
    this->backend.put({.id = "a", .alarms = {{.offset = -300}, {.offset = -60}}});
    CalendarEvent event = this->only();
    event.alarms = {event.alarms[1]};
    event.alarms[0].offset = 120;
    event.alarms[0].sound = "Glass";
    EXPECT_EQ(this->save(event), std::nullopt);
    event = this->only();
    ASSERT_THAT(event.alarms, SizeIs(1));
    EXPECT_EQ(event.alarms[0].offset, 120);
    EXPECT_EQ(event.alarms[0].sound, "Glass");
}

TYPED_TEST(CalendarContract, SavesNewAlarmsWithTheirAttributeAndTakesThemAway) {
    this->access();
    this->backend.put({.id = "a"});
    CalendarEvent event = this->only();
    event.alarms = {{.offset = 0, .sound = "Pop"}, {.offset = -30, .isDefault = true}};
    EXPECT_EQ(this->save(event), std::nullopt);
    event = this->only();
    ASSERT_THAT(event.alarms, SizeIs(2));
    EXPECT_FALSE(event.alarms[0].isDefault);
    EXPECT_TRUE(event.alarms[1].isDefault);
    event.alarms[1].isDefault = false;
    EXPECT_EQ(this->save(event), std::nullopt);
    event = this->only();
    EXPECT_FALSE(event.alarms[1].isDefault);
    event.alarms.clear();
    EXPECT_EQ(this->save(event), std::nullopt);
    EXPECT_THAT(this->only().alarms, IsEmpty());
}

TYPED_TEST(CalendarContract, ARecurringEventIsSavedForThisAndTheLaterOccurrences) {
    this->access();
    this->backend.put({.id = "daily", .alarms = {{.offset = -300}}, .daily = true});
    CalendarEvent event = this->only();
    EXPECT_TRUE(event.recurring);
    EXPECT_FALSE(event.detached);
    event.alarms[0].offset = -120;
    EXPECT_EQ(this->save(event), std::nullopt);
    const auto both = this->find(day + hour).events;
    ASSERT_THAT(both, SizeIs(2));
    for (const CalendarEvent& occurrence : both) {
        EXPECT_TRUE(occurrence.recurring);
        EXPECT_EQ(occurrence.alarms.at(0).offset, -120);
    }
    const auto earlier = this->backend.yesterdays("daily");
    ASSERT_THAT(earlier, SizeIs(1));
    EXPECT_EQ(earlier[0].offset, -300);
}

TYPED_TEST(CalendarContract, AnOccurrenceThatWasChangedByItselfIsDetached) {
    this->access();
    this->backend.put(
        {.id = "daily", .alarms = {{.offset = -300}}, .daily = true, .hasDetached = true});
    const CalendarEvent event = this->only();
    EXPECT_TRUE(event.detached);
    EXPECT_TRUE(event.recurring);
    auto both = this->find(day + hour).events;
    ASSERT_THAT(both, SizeIs(2));
    EXPECT_FALSE(both[1].detached);
    both[1].alarms[0].offset = -120;
    EXPECT_EQ(this->save(both[1]), std::nullopt);
    for (const CalendarEvent& occurrence : this->find(day + hour).events)
        EXPECT_EQ(occurrence.alarms.at(0).offset, occurrence.detached ? -300 : -120)
            << "it stands for itself";
}

TYPED_TEST(CalendarContract, AnUnknownEventIsAnError) {
    this->access();
    EXPECT_TRUE(this->save({.id = "nobody", .alarms = {{.offset = 0}}}));
}

TYPED_TEST(CalendarContract, AnswersInTheOrderOfAsking) {
    this->access();
    this->backend.put({.id = "a"});
    CalendarEvent event = this->only();
    std::string order;
    std::atomic<bool> answered = false;
    event.alarms = {{.offset = -1}};
    auto& calendar = this->backend.get();
    calendar.save(event, platform::Calendar::Span::futureEvents,
                  [&](const auto&) { order += 's'; });
    calendar.findEvents(hour, [&](const auto& answer) {
        order += 'f';
        EXPECT_THAT(answer.events.at(0).alarms, SizeIs(1)) << "what was asked for before is done";
    });
    calendar.findEvents(hour, [&](const auto&) {
        order += 'g';
        answered = true;
    });
    this->backend.wait(answered);
    EXPECT_EQ(order, "sfg");
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const calendartests::Session session;
    const QCoreApplication toolkit(argc, argv);
    return RUN_ALL_TESTS();
}
