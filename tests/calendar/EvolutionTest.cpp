#include "platform/calendar/Evolution.h"
#include "calendar/Passes.h"
#include "calendar/Session.h"

#include <algorithm>
#include <memory>

// The calendars of the desktop's own server, on a private bus. Another program puts the events
// there and looks at what became of them.

namespace calendartests {
namespace {

using platform::calendar::checksumOf;
using platform::calendar::CutJournal;
using platform::calendar::Evolution;
using platform::calendar::own;

std::unique_ptr<Session> session;

/// What an event has whoever saves it.
std::string withoutStamps(std::string text) {
    for (const char* name : {"LAST-MODIFIED:", "CREATED:"}) {
        for (auto at = text.find(name); at != std::string::npos; at = text.find(name))
            text.erase(at, text.find('\n', at) + 1 - at);
    }
    return withoutAlarms(text);
}

class EvolutionCalendars : public CalendarPasses {
  protected:
    static void SetUpTestSuite() { session = std::make_unique<Session>(); }
    static void TearDownTestSuite() { session.reset(); }

    EvolutionCalendars() : CalendarPasses(backend) {
        other.ask("new work" + number);
        other.ask("new home" + number);
    }
    ~EvolutionCalendars() override {
        other.ask("disable work" + number);
        other.ask("disable home" + number);
    }

    void add(const std::string& components, const std::string& calendar = "work") {
        other.add(calendar + number, vcalendar(components));
    }
    std::string get(const std::string& uid, const std::string& calendar = "work") {
        return other.ask("get " + calendar + number + " " + uid);
    }
    std::string list(const std::string& calendar = "work") {
        return other.ask("list " + calendar + number);
    }

    std::optional<std::string> save(const CalendarEvent& event) {
        return backend.save({event}).at(0);
    }
    const std::string number = std::to_string(++made);
    Client other;
    testing_support::TempFolder folder;
    Evolution backend{[this] { return time; }, folder.path("cuts")};

  private:
    static inline int made = 0;
};

TEST_F(EvolutionCalendars, AnEventWithThreeAlarmsKeepsEveryOtherByte) {
    add(vevent("a", inTenMinutes + "LOCATION:Here\nATTENDEE;CN=\"A: B\":mailto:a@example.invalid\n",
               {{"-PT15M"}, {"-PT5M"}, {"PT0S", "X-DEFAULT-ALARM:1\n"}}));
    ASSERT_EQ(backend.open().refusal, Refusal::none);
    const std::string before = get("a");
    ASSERT_EQ(count(before, "BEGIN:VALARM"), 3U);
    EXPECT_THAT(pass(), IsEmpty());
    const std::string after = get("a");
    EXPECT_EQ(withoutStamps(after), withoutStamps(before));
    EXPECT_EQ(count(after, "BEGIN:VALARM"), 1U);
    EXPECT_EQ(valueOf(after, "TRIGGER"), "PT0S");
    EXPECT_EQ(valueOf(after, "ATTACH"), "Pop");
    EXPECT_EQ(valueOf(after, "ACTION"), "DISPLAY");
    EXPECT_EQ(valueOf(after, "X-DEFAULT-ALARM"), "") << "the last that is not a default is kept";
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(get("a"), after) << "a second pass writes nothing";
}

TEST_F(EvolutionCalendars, EveryEnabledCalendarIsLookedAtInTheOrderOfTheEvents) {
    add(vevent("later", "DTSTART:20261025T020000Z\n"));
    add(vevent("sooner", inTenMinutes), "home");
    EXPECT_THAT(ids(), ElementsAre("sooner", "later"));
    other.ask("disable home" + number);
    ASSERT_TRUE(support::waitUntil([&] { return ids() == std::vector<std::string>{"later"}; }));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(valueOf(get("later"), "TRIGGER"), "PT0S");
    EXPECT_EQ(count(get("sooner", "home"), "BEGIN:VALARM"), 0U);
}

TEST_F(EvolutionCalendars, WhatIsMoreThanAnHourAwayIsLeftAloneUntilItComesNear) {
    add(vevent("far", "DTSTART:20261025T023100Z\n", {{"-PT1M"}, {"-PT2M"}}));
    const std::string before = get("far");
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(get("far"), before);
    time += 60;
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(count(get("far"), "BEGIN:VALARM"), 1U);
}

TEST_F(EvolutionCalendars, DaysAndZonesAreThoseOfTheirClocks) {
    add(vevent("day", "DTSTART;VALUE=DATE:20261025\nDTEND;VALUE=DATE:20261026\n", {{"-PT1H"}}));
    add(vevent("rome", "DTSTART;TZID=Europe/Rome:20261001T030000\n"
                       "DTEND;TZID=Europe/Rome:20261001T032000\nRRULE:FREQ=DAILY\n"));
    add(vevent("york", "DTSTART;TZID=America/New_York:20260115T220500\nDURATION:PT10M\n"
                       "RRULE:FREQ=DAILY\n"));
    add("BEGIN:VTIMEZONE\nTZID:Office\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
        "TZOFFSETFROM:+0530\nTZOFFSETTO:+0530\nEND:STANDARD\nEND:VTIMEZONE\n" +
        vevent("office", "DTSTART;TZID=Office:20261025T071000\n"));
    EXPECT_THAT(ids(), ElementsAre("day", "office", "rome", "york"));
    const std::string before = get("day") + get("office");
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(withoutStamps(get("day") + get("office")), withoutStamps(before));
    EXPECT_EQ(count(list(), "BEGIN:VALARM"), 4U);
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(count(list(), "BEGIN:VEVENT"), 6U) << "two were cut, once";
}

TEST_F(EvolutionCalendars, ARecurringEventIsCutWithItsDetachedOccurrences) {
    add(vevent("daily",
               daily + "RRULE:FREQ=DAILY;COUNT=10\nEXDATE;TZID=Europe/Rome:20261027T030000\n",
               {{"-PT15M"}}) +
        detached("20261021", "20261021T050000") + detached("20261024", "20261025T031000") +
        detached("20261026", "20261026T050000"));
    EXPECT_THAT(pass(), IsEmpty());
    ASSERT_THAT(lastFound.answer.events, SizeIs(2));
    EXPECT_TRUE(lastFound.answer.events[1].detached);

    const std::string before = get("daily");
    EXPECT_EQ(valueOf(before, "TRIGGER"), "-PT15M");
    EXPECT_THAT(before, HasSubstr("COUNT=5"));
    EXPECT_EQ(count(before, "RECURRENCE-ID"), 2U);
    const std::string uid = ids().at(0);
    ASSERT_NE(uid, "daily");
    const std::string after = get(uid);
    EXPECT_EQ(valueOf(after, "TRIGGER"), "PT0S");
    EXPECT_THAT(after, HasSubstr("COUNT=5"));
    EXPECT_EQ(count(after, "RECURRENCE-ID"), 1U);
    EXPECT_EQ(count(after, "TRIGGER:-PT3M"), 1U) << "a detached one keeps its alarms";
    EXPECT_EQ(count(after, "X-KEPT;X-ODD=\"a,b\":as it is"), 2U);

    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(get("daily") + get(uid), before + after) << "a second pass writes nothing";
    time += aDay;
    EXPECT_THAT(ids(), IsEmpty()) << "moved to five";
    time += aDay;
    EXPECT_THAT(ids(), IsEmpty()) << "taken out";
    time += aDay;
    EXPECT_THAT(ids(), ElementsAre(uid));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(get("daily") + get(uid), before + after);
}

TEST_F(EvolutionCalendars, AnOccurrenceThatWasJustDetachedCountsAsDetached) {
    add(vevent("daily", "DTSTART:20261025T014000Z\nRRULE:FREQ=DAILY\n", {{"-PT15M"}}));
    EXPECT_THAT(ids(), ElementsAre("daily"));
    add(vevent("daily", "RECURRENCE-ID:20261025T014000Z\nDTSTART:20261025T015000Z\n"));
    const Found again = find();
    ASSERT_THAT(again.answer.events, SizeIs(1));
    EXPECT_TRUE(again.answer.events[0].detached);
    EXPECT_EQ(again.answer.events[0].start, 1200);
}

TEST_F(EvolutionCalendars, ASeriesThatBeginsNowIsNotCutAndKeepsItsDetachedOccurrences) {
    add(vevent("new", "DTSTART:20261025T014000Z\nRRULE:FREQ=DAILY\n", {{"-PT15M"}}) +
        vevent("new", "RECURRENCE-ID:20261026T014000Z\nDTSTART:20261026T050000Z\n", {{"-PT3M"}}));
    EXPECT_THAT(pass(), IsEmpty());
    const std::string after = get("new");
    EXPECT_EQ(count(after, "TRIGGER:PT0S"), 1U);
    EXPECT_EQ(count(after, "TRIGGER:-PT3M"), 1U);
    EXPECT_EQ(count(list(), "BEGIN:VEVENT"), 2U);
}

TEST_F(EvolutionCalendars, WhatAnotherProgramChangedMeanwhileIsNotOverwritten) {
    add(vevent("a", inTenMinutes));
    const CalendarEvent event = find().answer.events.at(0);
    other.ask("remove work" + number + " a");
    add(vevent("a", inTenMinutes + "LOCATION:Elsewhere\n"));
    EXPECT_TRUE(save(withOneAlarm(event)));
    EXPECT_EQ(count(get("a"), "BEGIN:VALARM"), 0U);
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(get("a"), HasSubstr("LOCATION:Elsewhere"));
    EXPECT_EQ(count(get("a"), "BEGIN:VALARM"), 1U);
}

TEST_F(EvolutionCalendars, TheServerKilledDuringAPassIsBackForTheNext) {
    add(vevent("a", inTenMinutes) + vevent("b", inTenMinutes));
    const Found first = find();
    ASSERT_THAT(first.answer.events, SizeIs(2));
    EXPECT_EQ(save(withOneAlarm(first.answer.events[0])), std::nullopt);
    ASSERT_GE(session->kill("evolution-calendar-factory"), 1);
    // It may be that the bus has not noticed yet; what it answers is not the point.
    (void)save(withOneAlarm(first.answer.events[1]));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(lastFound.answer.events, SizeIs(2));
    Client fresh;
    EXPECT_EQ(count(fresh.ask("list work" + number), "TRIGGER:PT0S"), 2U);
}

TEST_F(EvolutionCalendars, TheRegistryKilledBetweenPassesIsBackForTheNext) {
    add(vevent("a", inTenMinutes));
    EXPECT_THAT(ids(), ElementsAre("a"));
    ASSERT_GE(session->kill("evolution-source-registry"), 1);
    ASSERT_GE(session->kill("evolution-calendar-factory"), 1);
    ASSERT_TRUE(support::waitUntil([&] { return ids() == std::vector<std::string>{"a"}; }));
    EXPECT_THAT(pass(), IsEmpty());
    Client fresh;
    EXPECT_EQ(count(fresh.ask("get work" + number + " a"), "TRIGGER:PT0S"), 1U);
    fresh.ask("get work" + number + " a");
}

TEST_F(EvolutionCalendars, AnEventOfEverySecondIsNamedAndLeftAloneAndTheOthersGoOn) {
    add(vevent("odd", "DTSTART:20200101T000000Z\nRRULE:FREQ=SECONDLY\n"));
    add(vevent("a", inTenMinutes));
    const std::string before = get("odd");
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(count(get("a"), "BEGIN:VALARM"), 1U);
    EXPECT_EQ(get("odd"), before);
    EXPECT_THAT(lastFound.answer.events, SizeIs(1));
    EXPECT_THAT(lastFound.remarks,
                Contains(HasSubstr("\"A meeting\" is left as it is: it recurs")));
}

TEST_F(EvolutionCalendars, ASeriesIsFoundOnEachOfItsDays) {
    add(vevent("daily", "DTSTART:20201025T014000Z\nDURATION:PT30M\nRRULE:FREQ=DAILY\n"));
    add(vevent("weekly", "DTSTART:20201025T030000Z\nRRULE:FREQ=WEEKLY\n"));
    for (int day = 0; day < 8; ++day, time += aDay) {
        const bool isSunday = day % 7 == 0;
        EXPECT_THAT(starts(), ElementsAre(600)) << day;
        time += anHour;
        EXPECT_THAT(starts(), isSunday ? testing::Matcher<std::vector<double>>(ElementsAre(1800))
                                       : testing::Matcher<std::vector<double>>(IsEmpty()))
            << day;
        time += anHour;
        EXPECT_THAT(starts(), IsEmpty()) << day;
        time -= 2 * anHour;
    }
}

TEST_F(EvolutionCalendars, ASeriesWithOtherPeopleIsNeverCutInTwo) {
    add(vevent("daily", daily + "ORGANIZER:mailto:b@example.invalid\nRRULE:FREQ=DAILY\n",
               {{"-PT15M"}}));
    const std::string before = list();
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(list(), before);
    EXPECT_THAT(lastFound.answer.events, IsEmpty());
    EXPECT_THAT(lastFound.remarks, Contains(HasSubstr("\"A meeting\" keeps its alarms")));
}

TEST_F(EvolutionCalendars, ACutThatAKillHasEndedHalfWayIsUndoneAtTheNextStart) {
    const std::string series = daily + "RRULE:FREQ=DAILY\n";
    add(vevent("daily", series, {{"-PT15M"}}));
    const auto kept = own(i_cal_parser_parse_string(get("daily").c_str()));
    // As it is after the first write.
    const CutJournal journal(folder.path("cuts"));
    ASSERT_TRUE(journal.add({.place = "work" + number,
                             .before = "daily",
                             .after = "later",
                             .wholeSum = checksumOf(platform::calendar::textOf(kept.get())),
                             .partSum = "none"}));
    add(vevent("later", series));
    Evolution next([this] { return time; }, folder.path("cuts"));
    EXPECT_EQ(next.open().refusal, Refusal::none);
    EXPECT_EQ(count(list(), "BEGIN:VEVENT"), 1U);
    EXPECT_EQ(count(list(), "UID:daily"), 1U);
    EXPECT_THAT(journal.cuts(), IsEmpty());
}

TEST_F(EvolutionCalendars, ACutThatAKillHasEndedLateIsFinishedAtTheNextStart) {
    add(vevent("daily", daily + "RRULE:FREQ=DAILY;UNTIL=20261025T015959Z\n", {{"-PT15M"}}) +
        detached("20261024", "20261025T031000"));
    const auto kept = own(
        i_cal_parser_parse_string(partOf(get("daily"), "BEGIN:VEVENT", "END:VEVENT\r\n").c_str()));
    const CutJournal journal(folder.path("cuts"));
    ASSERT_TRUE(journal.add({.place = "work" + number,
                             .before = "daily",
                             .after = "later",
                             .wholeSum = "another",
                             .partSum = checksumOf(platform::calendar::rulesOf(kept.get())),
                             .moved = {"20261024T030000"}}));
    add(vevent("later", daily + "RRULE:FREQ=DAILY\n"));
    Evolution next([this] { return time; }, folder.path("cuts"));
    EXPECT_EQ(next.open().refusal, Refusal::none);
    EXPECT_EQ(count(get("daily"), "RECURRENCE-ID"), 0U);
    EXPECT_EQ(count(list(), "BEGIN:VEVENT"), 2U);
    EXPECT_THAT(journal.cuts(), IsEmpty());
}

TEST_F(EvolutionCalendars, AReadOnlyCalendarIsSkippedWithOneRemark) {
    add(vevent("a", inTenMinutes));
    other.ask("readonly birthdays" + number);
    const std::string remark =
        "the calendar birthdays" + number + " cannot be changed and is left alone";
    ASSERT_TRUE(support::waitUntil([&] {
        lastFound = find();
        return std::ranges::count(lastFound.remarks, remark) > 0;
    }));
    EXPECT_EQ(std::ranges::count(lastFound.remarks, remark), 1);
    EXPECT_THAT(lastFound.answer.sources, Not(Contains("birthdays" + number)));
    EXPECT_THAT(lastFound.answer.events, SizeIs(1));
    other.ask("disable birthdays" + number);
}

} // namespace
} // namespace calendartests
