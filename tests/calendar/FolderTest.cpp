#include "platform/calendar/folder/Folder.h"
#include "calendar/Passes.h"
#include "testing/TempFolder.h"

#include <filesystem>

// The folder of .ics files, and what holds for every calendar: zones, days, recurring events.

namespace calendartests {
namespace {

namespace fs = std::filesystem;
using platform::calendar::Folder;
using testing::UnorderedElementsAre;

class CalendarFolder : public CalendarPasses {
  protected:
    CalendarFolder() : CalendarPasses(backend) {
        ::setenv("TZ", "Europe/Rome", 1);
        ::tzset();
    }

    void write(const std::string& name, const std::string& components) {
        folder.write(name, vcalendar(components));
    }
    std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const std::string& name : folder.names())
            all[name] = folder.read(name);
        return all;
    }

    testing_support::TempFolder folder;
    Folder backend{folder.path(), [this] { return time; }};
};

TEST_F(CalendarFolder, AnEventWithThreeAlarmsKeepsEveryOtherByte) {
    const std::string lines = inTenMinutes +
                              "DESCRIPTION:A long text that is folded in an odd place\\, with\n"
                              "  two blanks at the fold\nx-lower-case:stays\nATTENDEE;CN=\"A: B\""
                              ";PARTSTAT=ACCEPTED:mailto:a@example.invalid\n";
    write("a.ics", vevent("a", lines,
                          {{"-PT15M"},
                           {"-PT5M", "X-EVOLUTION-ALARM-UID:one\n"},
                           {"PT0S", "X-DEFAULT-ALARM:1\n"}}));
    const std::string before = folder.read("a.ics");
    EXPECT_THAT(pass(-120, "Glass"), IsEmpty());
    const std::string after = folder.read("a.ics");
    EXPECT_EQ(withoutAlarms(after), withoutAlarms(before));
    EXPECT_EQ(partOf(after, "BEGIN:VALARM", "END:VALARM\r\n"),
              "BEGIN:VALARM\r\nACTION:DISPLAY\r\nDESCRIPTION:Soon\r\n"
              "X-EVOLUTION-ALARM-UID:one\r\nTRIGGER:-PT2M\r\nATTACH:Glass\r\nEND:VALARM\r\n");
    EXPECT_EQ(count(after, "BEGIN:VALARM"), 1U);
}

TEST_F(CalendarFolder, ASecondPassWritesNothing) {
    write("a.ics", vevent("a", inTenMinutes, {{"-PT15M"}, {"-PT5M"}}));
    write("b.ics", vevent("b", inTenMinutes));
    pass();
    const auto identity = platform::linux::identityOf(folder.path("a.ics"));
    const auto before = contents();
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(platform::linux::identityOf(folder.path("a.ics")), identity);
    EXPECT_EQ(contents(), before);
}

TEST_F(CalendarFolder, AnEventWithoutAlarmsGetsOneThatIsShown) {
    folder.write("a.ics", "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nUID:a\n"
                          "DTSTART:20261025T014000Z\nSUMMARY:Lunch\nEND:VEVENT\nEND:VCALENDAR\n");
    pass();
    EXPECT_EQ(folder.read("a.ics"),
              "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nUID:a\nDTSTART:20261025T014000Z\n"
              "SUMMARY:Lunch\nBEGIN:VALARM\nACTION:DISPLAY\nDESCRIPTION:Lunch\nTRIGGER:PT0S\n"
              "ATTACH:Pop\nEND:VALARM\nEND:VEVENT\nEND:VCALENDAR\n")
        << "lines end as they did";
}

TEST_F(CalendarFolder, AlarmsFromTheEndAtATimeOrByMailBecomeOnesFromTheStartThatAreShown) {
    write("end.ics", vevent("end", inTenMinutes, {{";RELATED=END:-PT10M"}}));
    write("time.ics", vevent("time", inTenMinutes, {{";VALUE=DATE-TIME:20261025T013500Z"}}));
    write("mail.ics", vevent("mail", inTenMinutes,
                             {{"PT0S", "ACTION:EMAIL\nATTENDEE:mailto:a@example.invalid\n"}}));
    std::map<std::string, double> offsets;
    for (const CalendarEvent& event : find().answer.events)
        offsets[event.id] = event.alarms.at(0).offset;
    EXPECT_THAT(offsets, ElementsAre(testing::Pair("end", 1200), testing::Pair("mail", 0),
                                     testing::Pair("time", -300)));
    pass();
    for (const auto& [name, text] : contents()) {
        EXPECT_EQ(valueOf(text, "TRIGGER"), "PT0S") << name;
        EXPECT_EQ(valueOf(text, "ACTION"), "DISPLAY") << name;
    }
}

TEST_F(CalendarFolder, WhatIsMoreThanAnHourAwayOrOverIsLeftAlone) {
    write("far.ics", vevent("far", "DTSTART:20261025T023100Z\n", {{"-PT1M"}, {"-PT2M"}}));
    write("over.ics", vevent("over", "DTSTART:20261025T000000Z\nDTEND:20261025T013000Z\n"));
    write("begun.ics", vevent("begun", "DTSTART:20261025T010000Z\nDTEND:20261025T020000Z\n"));
    write("border.ics", vevent("border", "DTSTART:20261025T023000Z\n"));
    EXPECT_THAT(starts(), ElementsAre(-1800, 3600));
    const std::string before = folder.read("far.ics");
    pass();
    EXPECT_EQ(folder.read("far.ics"), before);
    time += 60;
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(count(folder.read("far.ics"), "BEGIN:VALARM"), 1U);
}

TEST_F(CalendarFolder, AWholeDayIsTheSessionsOwnDay) {
    write("today.ics", vevent("today", "DTSTART;VALUE=DATE:20261025\nDTEND;VALUE=DATE:20261026\n"));
    write("next.ics", vevent("next", "DTSTART;VALUE=DATE:20261026\n"));
    // Midnight was still summer time.
    EXPECT_THAT(starts(), ElementsAre(-(3.5 * hour)));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(folder.read("today.ics"), HasSubstr("DTSTART;VALUE=DATE:20261025\r\n"));
    EXPECT_EQ(count(folder.read("today.ics"), "BEGIN:VALARM"), 1U);
}

TEST_F(CalendarFolder, ZonesFollowTheirOwnClockChanges) {
    // Daily since the summer, at three in Rome, which is two hours after two this night.
    write("rome.ics", vevent("rome", "DTSTART;TZID=Europe/Rome:20260701T030000\n"
                                     "DTEND;TZID=Europe/Rome:20260701T032000\nRRULE:FREQ=DAILY\n"));
    // Since the winter, at ten in the evening of New York, where it is summer time still.
    write("york.ics", vevent("york", "DTSTART;TZID=America/New_York:20260115T220500\n"
                                     "DURATION:PT10M\nRRULE:FREQ=DAILY\n"));
    write("floating.ics", vevent("floating", "DTSTART:20261025T031500\n"));
    EXPECT_THAT(starts(), ElementsAre(1800, 2100, 2700));
}

TEST_F(CalendarFolder, AZoneThatTheFileDefinesIsTheFilesOwn) {
    write("a.ics", "BEGIN:VTIMEZONE\nTZID:Office\nBEGIN:STANDARD\nDTSTART:19700101T000000\n"
                   "TZOFFSETFROM:+0530\nTZOFFSETTO:+0530\nEND:STANDARD\nEND:VTIMEZONE\n" +
                       vevent("a", "DTSTART;TZID=Office:20261025T071000\n"));
    EXPECT_THAT(starts(), ElementsAre(600));
    const std::string before = folder.read("a.ics");
    pass();
    EXPECT_EQ(withoutAlarms(folder.read("a.ics")), before);
}

TEST_F(CalendarFolder, ARecurringEventIsCutWhereItGetsTheAlarm) {
    write("daily.ics", vevent("daily",
                              daily + "RRULE:FREQ=DAILY;COUNT=10\n"
                                      "EXDATE;TZID=Europe/Rome:20261022T030000,20261027T030000\n",
                              {{"-PT15M"}}));
    EXPECT_THAT(pass(), IsEmpty());
    const auto files = contents();
    ASSERT_THAT(files, SizeIs(2));
    const std::string& before = files.at("daily.ics");
    const auto other =
        std::ranges::find_if(files, [](const auto& file) { return file.first != "daily.ics"; });
    const std::string& after = other->second;
    EXPECT_EQ(valueOf(before, "TRIGGER"), "-PT15M");
    EXPECT_EQ(valueOf(before, "RRULE"), "FREQ=DAILY;COUNT=5");
    EXPECT_EQ(valueOf(before, "UID"), "daily");
    EXPECT_THAT(valueOf(before, "EXDATE"), Not(HasSubstr("20261027")));
    EXPECT_EQ(valueOf(after, "TRIGGER"), "PT0S");
    EXPECT_EQ(valueOf(after, "RRULE"), "FREQ=DAILY;COUNT=5");
    EXPECT_EQ(valueOf(after, "DTSTART"), "TZID=Europe/Rome:20261025T030000");
    EXPECT_EQ(valueOf(after, "DTEND"), "TZID=Europe/Rome:20261025T032000");
    EXPECT_THAT(valueOf(after, "EXDATE"), HasSubstr("20261027T030000"));
    EXPECT_EQ(valueOf(after, "UID") + ".ics", other->first);
    EXPECT_THAT(after, HasSubstr("X-KEPT;X-ODD=\"a,b\":as it is\r\n"));

    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(contents(), files) << "the next pass finds the later half as it should be";
    time += aDay;
    EXPECT_THAT(starts(), ElementsAre(1800));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(contents(), files) << "and so does the next day";
    time += aDay;
    EXPECT_THAT(starts(), IsEmpty()) << "the day that was taken out stays so";
}

TEST_F(CalendarFolder, ARecurringEventThatBeginsNowIsNotCut) {
    write("new.ics", vevent("new", "DTSTART;TZID=Europe/Rome:20261025T030000\nRRULE:FREQ=WEEKLY\n",
                            {{"-PT15M"}}));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(folder.names(), ElementsAre("new.ics"));
    EXPECT_EQ(valueOf(folder.read("new.ics"), "TRIGGER"), "PT0S");
}

TEST_F(CalendarFolder, ManyOccurrencesInTheHourCutItOnce) {
    write("often.ics", vevent("often",
                              "DTSTART:20261024T013000Z\nDURATION:PT5M\n"
                              "RRULE:FREQ=MINUTELY;INTERVAL=15\n",
                              {{"-PT15M"}}));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(folder.names(), SizeIs(2));
    EXPECT_THAT(starts(), ElementsAre(0, 900, 1800, 2700, 3600));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_THAT(folder.names(), SizeIs(2));
}

TEST_F(CalendarFolder, DetachedOccurrencesStayAndGoWithTheirHalf) {
    write("daily.ics", vevent("daily", daily + "RRULE:FREQ=DAILY\n", {{"-PT15M"}}) +
                           detached("20261021", "20261021T050000") +
                           detached("20261024", "20261025T031000") +
                           detached("20261026", "20261026T050000"));
    Found found = find();
    ASSERT_THAT(found.answer.events, SizeIs(2));
    EXPECT_FALSE(found.answer.events[0].detached);
    EXPECT_TRUE(found.answer.events[1].detached);
    EXPECT_EQ(found.answer.events[1].start, 2400);
    EXPECT_THAT(pass(), IsEmpty());
    const auto files = contents();
    ASSERT_THAT(files, SizeIs(2));
    std::string later;
    for (const auto& [name, text] : files)
        if (name != "daily.ics") later = text;
    EXPECT_THAT(files.at("daily.ics"), HasSubstr("RECURRENCE-ID;TZID=Europe/Rome:20261021T030000"));
    EXPECT_THAT(files.at("daily.ics"), HasSubstr("RECURRENCE-ID;TZID=Europe/Rome:20261024T030000"));
    EXPECT_THAT(files.at("daily.ics"), Not(HasSubstr("20261026T050000")));
    EXPECT_THAT(later, HasSubstr("RECURRENCE-ID;TZID=Europe/Rome:20261026T030000"));
    EXPECT_EQ(count(later, "UID:"), 2U);
    EXPECT_EQ(count(later, "UID:daily\r"), 0U);
    EXPECT_EQ(count(later, "TRIGGER:-PT3M"), 1U);
    time += aDay;
    EXPECT_THAT(starts(), IsEmpty()) << "it was moved to five";
    time += 2 * anHour;
    EXPECT_THAT(starts(), ElementsAre(1800));
}

TEST_F(CalendarFolder, BrokenFilesAreLeftAsTheyAreAndNamed) {
    folder.write("cut.ics", vcalendar(vevent("cut", inTenMinutes)).substr(0, 120));
    folder.write("empty.ics", "");
    folder.write("noise.ics", std::string("\x00\xff\x01garbage", 10));
    folder.write("nested.ics", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nEND:VCALENDAR\nEND:VEVENT\n");
    folder.write("start.ics", vcalendar(vevent("start", "")));
    folder.write("uid.ics",
                 "BEGIN:VCALENDAR\nBEGIN:VEVENT\n" + inTenMinutes + "END:VEVENT\nEND:VCALENDAR\n");
    folder.write("date.ics", vcalendar(vevent("date", "DTSTART:tomorrow\n")));
    folder.write("rule.ics", vcalendar(vevent("rule", inTenMinutes + "RRULE:FREQ=SOMETIMES\n")));
    folder.write("two.ics", vcalendar(vevent("one", inTenMinutes) + vevent("two", inTenMinutes)));
    fs::create_directory(folder.path("folder.ics"));
    write("task.ics", "BEGIN:VTODO\nUID:task\nDTSTART:20261025T014000Z\nEND:VTODO\n");
    folder.write("note.txt", "not a calendar");
    write("good.ics", vevent("good", inTenMinutes));
    fs::remove(folder.path("folder.ics"));
    const auto before = contents();
    const Found found = find();
    EXPECT_THAT(found.answer.events, SizeIs(1));
    std::vector<std::string> named;
    for (const std::string& remark : found.remarks)
        named.push_back(fs::path(remark.substr(0, remark.find(" is left as it is: "))).filename());
    EXPECT_THAT(named,
                UnorderedElementsAre("cut.ics", "empty.ics", "noise.ics", "nested.ics", "start.ics",
                                     "uid.ics", "date.ics", "rule.ics", "two.ics"));
    EXPECT_THAT(pass(), IsEmpty());
    auto after = contents();
    EXPECT_NE(after.at("good.ics"), before.at("good.ics"));
    after["good.ics"] = before.at("good.ics");
    EXPECT_EQ(after, before);
}

TEST_F(CalendarFolder, AMendedFileCountsAgain) {
    folder.write("a.ics", "broken");
    EXPECT_THAT(find().remarks, SizeIs(1));
    write("a.ics", vevent("a", inTenMinutes));
    const Found found = find();
    EXPECT_THAT(found.remarks, IsEmpty());
    EXPECT_THAT(found.answer.events, SizeIs(1));
}

TEST_F(CalendarFolder, WhatAnotherProgramChangedMeanwhileIsNotOverwritten) {
    write("a.ics", vevent("a", inTenMinutes));
    CalendarEvent event = find().answer.events.at(0);
    const std::string theirs = vcalendar(vevent("a", inTenMinutes + "LOCATION:Elsewhere\n"));
    folder.write("a.ics", theirs);
    event.alarms = {{.offset = 0, .sound = "Pop"}};
    EXPECT_TRUE(backend.save({event}).at(0));
    EXPECT_EQ(folder.read("a.ics"), theirs);
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_EQ(withoutAlarms(folder.read("a.ics")), theirs);
}

TEST_F(CalendarFolder, AFileIsReplacedAsAWholeAndKeepsItsModeAndItsLink) {
    testing_support::TempFolder elsewhere;
    elsewhere.write("real.ics", vcalendar(vevent("a", inTenMinutes)));
    fs::permissions(elsewhere.path("real.ics"), fs::perms(0644));
    fs::create_symlink(elsewhere.path("real.ics"), folder.path("a.ics"));
    const auto before = platform::linux::identityOf(elsewhere.path("real.ics"));
    EXPECT_THAT(pass(), IsEmpty());
    EXPECT_NE(platform::linux::identityOf(elsewhere.path("real.ics"))->inode, before->inode);
    EXPECT_TRUE(fs::is_symlink(folder.path("a.ics")));
    EXPECT_EQ(fs::status(elsewhere.path("real.ics")).permissions(), fs::perms(0644));
    EXPECT_THAT(elsewhere.names(), ElementsAre("real.ics")) << "nothing is left beside it";
}

TEST_F(CalendarFolder, WithoutTheFolderThereIsNoAccess) {
    EXPECT_EQ(backend.open().refusal, Refusal::none);
    Folder none("/nowhere/at/all", [] { return now; });
    EXPECT_EQ(none.open().refusal, Refusal::noFolder);
    EXPECT_THAT(none.open().detail, HasSubstr("/nowhere/at/all"));
    EXPECT_THAT(none.find(hour).remarks, Contains(HasSubstr("/nowhere/at/all")));
}

} // namespace
} // namespace calendartests
