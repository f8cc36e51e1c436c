#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::CalendarAlarm;
using platform::CalendarEvent;
using platform::Value;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// The calendar product, whose main thread has done what was left for it.
struct CalendarProgram : Program {
    CalendarProgram() : Program(variants::calendarAlerts) {}

    CalendarProgram& launched() {
        Program::launched();
        return *this;
    }
    CalendarProgram& running() {
        launched();
        platform.runLoop.performPending();
        effects();
        return *this;
    }
    void add(CalendarEvent event) { platform.calendar.add(std::move(event)); }
    const std::vector<CalendarAlarm>& alarmsOf(std::size_t index) {
        return platform.calendar.events().at(index).alarms;
    }
    /// All that waits, and what is asked meanwhile.
    void answerAll() {
        while (platform.calendar.unanswered() > 0)
            platform.calendar.answer();
    }
    Lines passes() {
        Lines texts = effects({"log"});
        std::erase_if(texts,
                      [](const auto& line) { return line != R"(log {"text":"============="})"; });
        return texts;
    }
};

CalendarAlarm alarm(double offset, const std::string& sound = {}, bool isDefault = false) {
    return {.id = "a" + std::to_string(offset),
            .offset = offset,
            .sound = sound,
            .isDefault = isDefault};
}

TEST(CalendarAlarms, AnEventWithThreeAlarmsEndsWithOneOfTheUsersOffsetAndSound) {
    CalendarProgram program;
    program.setting(keys::OFFSET, Value{std::int64_t{-300}});
    program.setting(keys::ALARM_SOUND, Value{"Glass"});
    program.add(
        {.id = "e", .start = 600, .alarms = {alarm(-60), alarm(-120, "Basso"), alarm(-900)}});
    program.running();
    ASSERT_THAT(program.alarmsOf(0), SizeIs(1));
    EXPECT_EQ(program.alarmsOf(0)[0].offset, -300);
    EXPECT_EQ(program.alarmsOf(0)[0].sound, "Glass");
}

TEST(CalendarAlarms, RingAtTheStartWithTheSoundPopUnlessTheUserChoseOtherwise) {
    CalendarProgram program;
    program.add({.id = "e", .start = 600});
    program.running();
    ASSERT_THAT(program.alarmsOf(0), SizeIs(1));
    EXPECT_EQ(program.alarmsOf(0)[0].offset, 0);
    EXPECT_EQ(program.alarmsOf(0)[0].sound, "Pop");
}

TEST(CalendarAlarms, TheLastOneThatIsNotADefaultIsUsedAgain) {
    CalendarProgram program;
    program.add({.id = "e", .start = 600, .alarms = {alarm(-1), alarm(-2), alarm(-3, {}, true)}});
    program.add({.id = "f", .start = 600, .alarms = {alarm(-3, {}, true)}});
    program.running();
    ASSERT_THAT(program.alarmsOf(0), SizeIs(1));
    EXPECT_EQ(program.alarmsOf(0)[0].id, alarm(-2).id);
    ASSERT_THAT(program.alarmsOf(1), SizeIs(1));
    EXPECT_EQ(program.alarmsOf(1)[0].id, "") << "a default one is never used again";
    EXPECT_FALSE(program.alarmsOf(1)[0].isDefault);
}

TEST(CalendarAlarms, AnEventFurtherAwayThanAnHourIsLeftAloneUntilItComesWithinTheHour) {
    CalendarProgram program;
    program.add({.id = "near", .start = 3600});
    program.add({.id = "far", .start = 3601, .alarms = {alarm(-60), alarm(-120)}});
    program.running();
    EXPECT_THAT(program.alarmsOf(0), SizeIs(1));
    EXPECT_THAT(program.alarmsOf(1), SizeIs(2));
    program.platform.advance(10);
    EXPECT_THAT(program.alarmsOf(1), SizeIs(1));
}

TEST(CalendarAlarms, ARecurringEventIsSavedForThisAndFutureOccurrences) {
    CalendarProgram program;
    for (const double start : {-86400.0, 60.0, 86460.0})
        program.add({.id = "daily", .start = start, .recurring = true, .alarms = {alarm(-900)}});
    program.launched().platform.runLoop.performPending();
    EXPECT_THAT(program.effects({"calendarSave"}),
                ElementsAre(R"(calendarSave {"id":"daily","span":1,"offset":0,"sound":"Pop"})"));
    for (const CalendarEvent& event : program.platform.calendar.events())
        EXPECT_EQ(event.alarms[0].offset, event.start < 0 ? -900 : 0) << event.start;
}

TEST(CalendarAlarms, ADetachedOccurrenceIsSkipped) {
    CalendarProgram program;
    program.add({.id = "daily",
                 .start = 60,
                 .recurring = true,
                 .detached = true,
                 .alarms = {alarm(-900), alarm(-60)}});
    program.launched().platform.runLoop.performPending();
    EXPECT_THAT(program.effects({"calendarSave"}), IsEmpty());
    EXPECT_THAT(program.alarmsOf(0), SizeIs(2));
}

TEST(CalendarAlarms, DisablingStopsThePassesAndLeavesWhatIsWritten) {
    CalendarProgram program;
    program.add({.id = "e", .start = 600});
    program.running();
    program.platform.advance(20);
    EXPECT_THAT(program.passes(), SizeIs(2));
    program.app.enableDisable();
    program.platform.advance(60);
    EXPECT_THAT(program.passes(), IsEmpty());
    EXPECT_FALSE(program.platform.runLoop.isRunning(program.app.customDefaultEventTimer));
    EXPECT_THAT(program.alarmsOf(0), SizeIs(1));
}

TEST(CalendarAlarms, EnablingAsksAgainAndStartsAtOnceWithOneTimer) {
    CalendarProgram program;
    program.running();
    for (int toggle = 0; toggle < 4; ++toggle)
        program.app.enableDisable();
    program.platform.runLoop.performPending();
    EXPECT_THAT(program.passes(), SizeIs(1));
    program.platform.advance(10);
    EXPECT_THAT(program.passes(), SizeIs(1));
}

TEST(CalendarAlarms, AnAnswerThatComesAfterDisablingStartsNothing) {
    CalendarProgram program;
    program.launched();
    program.app.enableDisable();
    program.platform.runLoop.performPending();
    program.platform.advance(20);
    EXPECT_THAT(program.passes(), IsEmpty());
}

TEST(CalendarAlarms, WithoutAccessThatIsLoggedAndTheProductStaysEnabled) {
    CalendarProgram program;
    program.platform.calendar.setGranted(false);
    program.add({.id = "e", .start = 600});
    program.launched().platform.runLoop.performPending();
    EXPECT_THAT(program.effects({"log", "notification", "alert", "write"}),
                ElementsAre(R"(log {"text":"!granted"})"));
    EXPECT_TRUE(program.platform.settings.boolForKey(keys::ATTIVO));
    program.platform.advance(20);
    EXPECT_THAT(program.passes(), IsEmpty());
}

TEST(CalendarAlarms, TheAnswerIsForwardedToTheMainThread) {
    CalendarProgram program;
    program.launched();
    EXPECT_FALSE(program.platform.runLoop.isRunning(program.app.customDefaultEventTimer));
    program.platform.runLoop.performPending();
    EXPECT_TRUE(program.platform.runLoop.isRunning(program.app.customDefaultEventTimer));
}

TEST(CalendarAlarms, APassLogsWhatItSeesAndDoes) {
    CalendarProgram program;
    program.add({.id = "e", .start = 60, .alarms = {alarm(-90, "Basso"), alarm(-1, {}, true)}});
    program.add({.id = "f", .start = 61});
    program.launched().platform.runLoop.performPending();
    EXPECT_THAT(
        program.effects({"log", "calendarSave", "timer"}),
        ElementsAre(
            R"-(log {"text":"============="})-", R"-(log {"text":"s: (calendar) "})-",
            R"-(log {"text":"events: (e, f)"})-",
            R"-(log {"text":"a.scriptingProperties): {Default = 0; relativeOffset = -90; soundName = Basso} "})-",
            R"-(log {"text":"a.observationInfo : (null)"})-",
            R"-(calendarSave {"id":"e","span":1,"offset":0,"sound":"Pop"})-",
            R"-(log {"text":"Edited ID: e"})-",
            R"-(calendarSave {"id":"f","span":1,"offset":0,"sound":"Pop"})-",
            R"-(log {"text":"Edited ID: f"})-",
            R"-(timer {"selector":"ReplaceDefaultEvents","interval":10,"repeats":true})-"));
}

TEST(CalendarAlarms, OfTwoThatAreNotDefaultsBothAreLoggedWithTheirOwnSounds) {
    CalendarProgram program;
    program.add({.id = "e", .start = 60, .alarms = {alarm(-90, "Basso"), alarm(-30.5)}});
    program.launched().platform.runLoop.performPending();
    Lines lines = program.effects({"log"});
    std::erase_if(lines, [](const auto& line) { return line.find("scripting") == line.npos; });
    EXPECT_THAT(
        lines,
        ElementsAre(
            R"-(log {"text":"a.scriptingProperties): {Default = 0; relativeOffset = -90; soundName = Basso} "})-",
            R"-(log {"text":"a.scriptingProperties): {Default = 0; relativeOffset = -30.5; soundName = (null)} "})-"));
    ASSERT_THAT(program.alarmsOf(0), SizeIs(1));
    EXPECT_EQ(program.alarmsOf(0)[0].id, alarm(-30.5).id);
    EXPECT_EQ(program.alarmsOf(0)[0].sound, "Pop");
}

// ---- a calendar that answers late
// -----------------------------------------------------------------

/// Running, with every answer from now on given by the test.
struct LateCalendar : CalendarProgram {
    explicit LateCalendar(int events) {
        for (int i = 0; i < events; ++i)
            add({.id = "e" + std::to_string(i), .start = 600});
        running();
        platform.calendar.setLate(true);
    }
    std::size_t saves() { return effects({"calendarSave"}).size(); }
};

TEST(LateCalendar, IsAskedForOnePassAtATime) {
    LateCalendar program(2);
    program.platform.advance(35);
    EXPECT_THAT(program.passes(), SizeIs(1)) << "while the events are awaited";
    program.platform.calendar.answer();
    EXPECT_EQ(program.saves(), 2U);
    program.platform.advance(10);
    program.platform.calendar.answer();
    program.platform.advance(10);
    EXPECT_THAT(program.passes(), IsEmpty()) << "while the second save is awaited";
    program.platform.calendar.answer();
    program.platform.advance(10);
    EXPECT_THAT(program.passes(), SizeIs(1));
}

TEST(LateCalendar, HasNoMoreThan32SavesToAnswerAndGetsTheNextForEachAnswer) {
    LateCalendar program(40);
    program.platform.advance(10);
    program.platform.calendar.answer();
    EXPECT_EQ(program.saves(), 32U);
    for (int i = 0; i < 8; ++i) {
        program.platform.calendar.answer();
        EXPECT_EQ(program.saves(), 1U);
        EXPECT_EQ(program.platform.calendar.unanswered(), 32U);
    }
    program.answerAll();
    EXPECT_THAT(program.effects({"log"}), SizeIs(32)) << "and nothing more is saved";
    program.platform.advance(10);
    EXPECT_THAT(program.passes(), SizeIs(1));
}

TEST(LateCalendar, SwitchedOffMeanwhileIsAskedAndToldNothingMore) {
    for (const bool eventsKnown : {false, true}) {
        LateCalendar program(40);
        program.platform.advance(10);
        if (eventsKnown) program.platform.calendar.answer();
        program.app.enableDisable();
        program.effects();
        program.answerAll();
        program.platform.advance(60);
        EXPECT_THAT(program.effects({"log", "calendarSave"}), IsEmpty());
    }
}

TEST(LateCalendar, SwitchedOffAndOnAgainBeginsAPassOfItsOwnWithOneTimer) {
    LateCalendar program(2);
    program.platform.advance(10);
    program.platform.calendar.answer();
    program.app.enableDisable();
    program.app.enableDisable();
    program.effects();
    while (program.platform.calendar.unanswered() > 0) {
        program.platform.calendar.answer();
        program.platform.runLoop.performPending();
    }
    EXPECT_THAT(program.effects({"calendarSave"}), SizeIs(2)) << "those of the new pass";
    const auto timers = [&] {
        return std::ranges::count_if(program.platform.runLoop.timers(), [](const auto* timer) {
            return timer->selector == "ReplaceDefaultEvents";
        });
    };
    EXPECT_EQ(timers(), 1);
    program.app.enableDisable();
    EXPECT_EQ(timers(), 0);
}

TEST(LateCalendar, ThatGrantsAccessTwiceGetsOneTimer) {
    CalendarProgram program;
    program.platform.calendar.setLate(true);
    program.launched();
    for (int toggle = 0; toggle < 2; ++toggle)
        program.app.enableDisable();
    ASSERT_EQ(program.platform.calendar.unanswered(), 2U);
    program.platform.calendar.setLate(false);
    program.answerAll();
    program.platform.runLoop.performPending();
    EXPECT_THAT(program.effects({"timer"}),
                Contains(testing::HasSubstr("ReplaceDefault")).Times(1));
    program.platform.advance(10);
    EXPECT_THAT(program.passes(), SizeIs(1));
}

TEST(CalendarAlarms, GrantedAgainWhileRunningHaveOneTimer) {
    CalendarProgram program;
    program.running();
    program.app.turnOnCustomDefaultAlert();
    program.platform.runLoop.performPending();
    program.effects();
    program.platform.advance(10);
    EXPECT_THAT(program.passes(), SizeIs(1));
}

TEST(CalendarAlarms, AFailedSaveMarksTheRestOfThePassButNotTheNext) {
    CalendarProgram program;
    for (const char* id : {"a", "b", "c"})
        program.add({.id = id, .start = 600});
    program.platform.calendar.failSaves("b", "read-only");
    program.launched().platform.runLoop.performPending();
    const auto results = [&program] {
        Lines lines = program.effects({"log"});
        std::erase_if(lines, [](const auto& line) {
            return line.find("Edited") == std::string::npos &&
                   line.find("err") == std::string::npos;
        });
        return lines;
    };
    EXPECT_THAT(results(),
                ElementsAre(R"(log {"text":"Edited ID: a"})", R"(log {"text":"err: read-only"})",
                            R"(log {"text":"err: read-only"})"));
    EXPECT_THAT(program.alarmsOf(2), SizeIs(1)) << "saved all the same";
    program.platform.calendar.failSaves("b", std::nullopt);
    program.platform.advance(10);
    EXPECT_THAT(results(), Not(Contains(R"(log {"text":"err: read-only"})")));
}

TEST(CalendarAlarms, TheSettingsAreReadAtEachPass) {
    CalendarProgram program;
    program.add({.id = "e", .start = 600});
    program.running();
    program.setting(keys::OFFSET, Value{std::int64_t{-60}});
    program.platform.advance(10);
    EXPECT_EQ(program.alarmsOf(0)[0].offset, -60);
}

TEST(CalendarAlarms, TheOtherProductsTouchNoCalendar) {
    for (int variant = 0; variant < 9; ++variant) {
        Program program(variant);
        program.platform.calendar.add({.id = "e", .start = 600, .alarms = {}});
        program.launched();
        program.app.turnOnCustomDefaultAlert();
        program.app.ReplaceDefaultEvents();
        program.platform.runLoop.performPending();
        EXPECT_THAT(program.platform.calendar.events()[0].alarms, IsEmpty()) << variant;
    }
}

} // namespace
} // namespace palisor
