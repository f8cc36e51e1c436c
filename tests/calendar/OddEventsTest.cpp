#include "calendar/Passes.h"
#include "platform/calendar/folder/Folder.h"
#include "testing/TempFolder.h"

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// Events that nobody means, or that somebody means ill: the others go on. And what a kill leaves.

namespace calendartests {
namespace {

namespace fs = std::filesystem;
using platform::calendar::Folder;

class OddCalendarFolder : public CalendarPasses {
  protected:
    OddCalendarFolder() : CalendarPasses(backend) {
        ::setenv("TZ", "Europe/Rome", 1);
        ::tzset();
    }

    void write(const std::string& name, const std::string& components) {
        folder.write(name, vcalendar(components));
    }
    void addOrdinary() { write("good.ics", vevent("good", inTenMinutes)); }
    void expectThatTheOrdinaryOneGotItsAlarm() {
        EXPECT_THAT(pass(), IsEmpty());
        EXPECT_EQ(count(folder.read("good.ics"), "BEGIN:VALARM"), 1U);
    }
    std::unique_ptr<Folder> anotherStart() {
        return std::make_unique<Folder>(
            folder.path(), [this] { return time; }, journal());
    }
    std::string journal() const { return elsewhere.path("cuts"); }

    testing_support::TempFolder folder;
    testing_support::TempFolder elsewhere;
    bool isInterrupted = false;
    Folder backend{folder.path(),
                   [this] {
                       // The first thing that a pass asks for.
                       if (isInterrupted) backend.interrupt();
                       return time;
                   },
                   elsewhere.path("cuts")};
};

TEST_F(OddCalendarFolder, RulesThatRecurTooOftenOrAreHardToTellAreNamedAndLeftAlone) {
    const std::pair<const char*, const char*> rules[] = {
        {"20200101T000000Z", "FREQ=SECONDLY"},
        {"20000101T000000Z", "FREQ=MINUTELY"},
        {"20000101T000000Z", "FREQ=MINUTELY;COUNT=2000000000"},
        {"20000101T000000Z", "FREQ=SECONDLY;INTERVAL=60;BYSECOND=1"},
        {"20000101T000000Z", "FREQ=HOURLY;BYMONTH=2;BYMONTHDAY=30"},
        {"20000101T000000Z", "FREQ=HOURLY;INTERVAL=2;BYHOUR=7"},
        {"20000101T000000Z", "FREQ=MINUTELY;INTERVAL=7;BYMINUTE=1"}};
    int number = 0;
    for (const auto& [start, rule] : rules) {
        const std::string name = "odd" + std::to_string(++number);
        write(name + ".ics",
              vevent(name, "DTSTART:" + std::string(start) + "\nRRULE:" + rule + "\n"));
    }
    addOrdinary();
    expectThatTheOrdinaryOneGotItsAlarm();
    EXPECT_THAT(lastFound.answer.events, SizeIs(1));
    EXPECT_THAT(lastFound.remarks, SizeIs(std::size(rules)));
    for (const std::string& remark : lastFound.remarks)
        EXPECT_THAT(remark, HasSubstr(".ics is left as it is: it recurs "));
    const auto remarks = lastFound.remarks;
    EXPECT_EQ(find().remarks, remarks);
}

TEST_F(OddCalendarFolder, RulesThatNeverComeTrueAreOnlyQuiet) {
    write("never.ics",
          vevent("never", "DTSTART:20000101T000000Z\nRRULE:FREQ=DAILY;BYMONTH=2;BYMONTHDAY=30\n"));
    addOrdinary();
    expectThatTheOrdinaryOneGotItsAlarm();
    EXPECT_THAT(lastFound.answer.events, SizeIs(1));
}

TEST_F(OddCalendarFolder, EveryTwentyMinutesOfSomeHoursIsAnOrdinaryRule) {
    write("often.ics", vevent("often", "DTSTART:20000101T010000Z\n"
                                       "RRULE:FREQ=MINUTELY;INTERVAL=20;BYHOUR=1,2\n"));
    EXPECT_THAT(find().remarks, IsEmpty());
    EXPECT_THAT(starts(), ElementsAre(600, 1800, 3000));
}

TEST_F(OddCalendarFolder, OldSeriesAreKnownForTheNextDayAsWell) {
    for (int number = 0; number < 300; ++number) {
        const std::string name = "series" + std::to_string(number);
        const std::time_t start = 946684800 + number * 271; // in the first days of 2000
        write(name + ".ics",
              vevent(name, "DTSTART:" + stamp(start) + "\nDURATION:PT5M\nRRULE:" +
                               (number % 2 == 0 ? "FREQ=DAILY\n" : "FREQ=WEEKLY;BYDAY=MO,SU\n")));
    }
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(lastFound.answer.events, Not(IsEmpty()));
    EXPECT_THAT(pass(), IsEmpty()); // reads what the first has written
    const auto known = lastFound.answer.events;
    time += aDay;
    EXPECT_THAT(known, SizeIs(starts().size()));
}

TEST_F(OddCalendarFolder, APassThatIsGivenUpSaysSoAndTheNextOneGoesOn) {
    write("daily.ics", vevent("daily", daily + "RRULE:FREQ=DAILY\n"));
    isInterrupted = true;
    const Found given = find();
    EXPECT_THAT(given.answer.events, IsEmpty());
    EXPECT_THAT(given.remarks, ElementsAre(HasSubstr("given up")));
    isInterrupted = false;
    EXPECT_THAT(starts(), ElementsAre(1800));
}

TEST_F(OddCalendarFolder, FilesThatWouldExhaustTheParserAreNamedAndLeftAlone) {
    const auto nested = [](const std::string& begin, int depth) {
        std::string text = "BEGIN:VCALENDAR\r\n";
        for (int level = 0; level < depth; ++level)
            text += begin + ":VEVENT\r\n";
        for (int level = 0; level < depth; ++level)
            text += "END:VEVENT\r\n";
        return text + "END:VCALENDAR\r\n";
    };
    folder.write("nested.ics", nested("BEGIN", 140'000));
    folder.write("folded.ics", nested("BE\r\n GIN", 140'000));
    std::string lines;
    while (lines.size() < 200'000)
        lines += "X-A:\n";
    write("lines.ics", vevent("lines", inTenMinutes + lines));
    write("long.ics", vevent("long", inTenMinutes + "X-A:" + std::string(5'000'000, 'a') + "\n"));
    addOrdinary();
    const auto before = folder.read("nested.ics");
    expectThatTheOrdinaryOneGotItsAlarm();
    EXPECT_THAT(
        lastFound.remarks,
        ElementsAre(HasSubstr("folded.ics is left as it is: "),
                    HasSubstr("lines.ics is left as it is: it has too many lines"),
                    HasSubstr("long.ics is left as it is: it is too long"),
                    HasSubstr("nested.ics is left as it is: its parts are nested too deep")));
    EXPECT_EQ(folder.read("nested.ics"), before);
}

TEST_F(OddCalendarFolder, PropertiesWithoutAValueAreNoHarm) {
    folder.write("bare.ics", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:bare\nLOCATION:\nX-EMPTY:\n" +
                                 inTenMinutes + "END:VEVENT\nEND:VCALENDAR\n");
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(count(folder.read("bare.ics"), "BEGIN:VALARM"), 1U);
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(lastFound.remarks, IsEmpty()) << "also where its alarm has nothing to show";
    EXPECT_THAT(folder.read("bare.ics"), HasSubstr("\nLOCATION:\nX-EMPTY:\n"));
}

TEST_F(OddCalendarFolder, AnAlarmThatRepeatsItselfGoesOffOnceFromThenOn) {
    const std::string repeated = "REPEAT:2\nDURATION:PT5M\n";
    write("a.ics", vevent("a", inTenMinutes, {{"-PT15M", repeated}}));
    write("right.ics", vevent("right", inTenMinutes, {{"PT0S", repeated + "ATTACH:Pop\n"}}));
    EXPECT_THAT(pass(), IsEmpty());
    for (const std::string& name : folder.names()) {
        EXPECT_EQ(count(folder.read(name), "BEGIN:VALARM"), 1U);
        EXPECT_EQ(valueOf(folder.read(name), "TRIGGER"), "PT0S");
        EXPECT_EQ(valueOf(folder.read(name), "REPEAT"), "") << name;
        EXPECT_EQ(valueOf(folder.read(name), "DURATION"), "") << name;
    }
}

TEST_F(OddCalendarFolder, ASeriesWithOtherPeopleIsNeverCutInTwo) {
    for (const std::string people :
         {"ATTENDEE:mailto:a@example.invalid\n", "ORGANIZER:mailto:b@example.invalid\n"})
        write(people.substr(0, 8) + ".ics",
              vevent(people.substr(0, 8), daily + people + "RRULE:FREQ=DAILY\n", {{"-PT15M"}}));
    write("new.ics",
          vevent("new", inTenMinutes + "ATTENDEE:mailto:a@example.invalid\nRRULE:FREQ=DAILY\n",
                 {{"-PT15M"}}));
    const std::string before = folder.read("ATTENDEE.ics") + folder.read("ORGANIZE.ics");
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(folder.read("ATTENDEE.ics") + folder.read("ORGANIZE.ics"), before);
    EXPECT_THAT(folder.names(), SizeIs(3));
    EXPECT_THAT(lastFound.remarks, ElementsAre(HasSubstr("ATTENDEE.ics keeps its alarms"),
                                               HasSubstr("ORGANIZE.ics keeps its alarms")));
    EXPECT_EQ(valueOf(folder.read("new.ics"), "TRIGGER"), "PT0S") << "one that begins now is whole";
}

// The first half is made larger than the later one, and than files may be: the signal for that
// kills just between the two.
TEST_F(OddCalendarFolder, AKillBetweenTheTwoHalvesOfACutLeavesOneEvent) {
    std::string past;
    for (const char* day : {"20261021", "20261022", "20261023"})
        past += detached(day, std::string(day) + "T050000");
    write("daily.ics", vevent("daily", daily + "RRULE:FREQ=DAILY\n", {{"-PT15M"}}) + past);
    const std::string before = folder.read("daily.ics");
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limit{1000, 1000};
        ::signal(SIGXFSZ, SIG_DFL);
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        pass();
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "it was to be killed";
    EXPECT_EQ(folder.read("daily.ics"), before);
    ASSERT_THAT(folder.names(), SizeIs(2)) << "the later half, and nothing that is half-written";

    EXPECT_EQ(anotherStart()->open().refusal, Refusal::none);
    EXPECT_THAT(folder.names(), ElementsAre("daily.ics")) << "undone";
    EXPECT_THAT(starts(), ElementsAre(1800));
    EXPECT_THAT(pass(), IsEmpty()) << "and done again";
    EXPECT_THAT(folder.names(), SizeIs(2));
    EXPECT_EQ(anotherStart()->open().refusal, Refusal::none);
    EXPECT_THAT(folder.names(), SizeIs(2)) << "a cut that was finished stays";
    EXPECT_THAT(starts(), ElementsAre(1800));
}

TEST_F(OddCalendarFolder, WhatTheUserDidAfterAKillIsNotUndone) {
    std::string past;
    for (const char* day : {"20261021", "20261022", "20261023"})
        past += detached(day, std::string(day) + "T050000");
    write("daily.ics", vevent("daily", daily + "RRULE:FREQ=DAILY\n", {{"-PT15M"}}) + past);
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limit{1000, 1000};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        pass();
        ::_exit(0);
    }
    ASSERT_EQ(::waitpid(child, nullptr, 0), child);
    ASSERT_THAT(folder.names(), SizeIs(2));
    folder.write("daily.ics", vcalendar(vevent("daily", daily)));
    EXPECT_EQ(anotherStart()->open().refusal, Refusal::none);
    EXPECT_THAT(folder.names(), SizeIs(2));
}

TEST_F(OddCalendarFolder, FilesOfOthersAreNotTakenForItsOwn) {
    addOrdinary();
    folder.write("good.ics.new", "somebody else's");
    expectThatTheOrdinaryOneGotItsAlarm();
    EXPECT_EQ(folder.read("good.ics.new"), "somebody else's");
    EXPECT_THAT(folder.names(), ElementsAre("good.ics", "good.ics.new"));
}

} // namespace
} // namespace calendartests
