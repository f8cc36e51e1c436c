#include "calendar/Session.h"
#include "platform/linux/system/ModuleCalendar.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "testing/KeptLog.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

#include <optional>

// The thread and the module behind the calendar service, in a session without a calendar server.

namespace {

using platform::CalendarAnswer;
using platform::calendar::Refusal;
using platform::linux::ModuleCalendar;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CalendarModule : public testing::Test {
  protected:
    void make(const std::string& module, const std::string& folder, double patience = 60) {
        calendar = std::make_unique<ModuleCalendar>(
            ModuleCalendar::Place{.module = module, .folder = folder}, loop, log,
            [this](Refusal why) { refusals.push_back(why); }, patience);
    }
    /// Until the main thread has the answer.
    bool access() {
        std::optional<bool> result;
        calendar->requestAccess([this, &result](bool granted) {
            loop.performOnMainThread(
                [this, &result, granted] {
                    result = granted;
                    loop.stop();
                },
                false);
        });
        run();
        return result.value_or(false);
    }
    CalendarAnswer find() {
        CalendarAnswer result;
        calendar->findEvents(3600, [this, &result](CalendarAnswer answer) {
            result = std::move(answer);
            loop.stop();
        });
        run();
        return result;
    }
    void run() {
        const auto limit = loop.schedule(60, false, "limit", [this] {
            ADD_FAILURE() << "no answer";
            loop.stop();
        });
        loop.run();
        loop.invalidate(limit);
    }

    platform::qt::QtRunLoop loop;
    testing_support::KeptLog log;
    std::vector<Refusal> refusals;
    std::unique_ptr<ModuleCalendar> calendar;
};

TEST_F(CalendarModule, ThatIsNotThereRefusesAndIsNamedInTheLog) {
    make("/nowhere/calendar.so", "");
    EXPECT_FALSE(access());
    EXPECT_THAT(refusals, ElementsAre(Refusal::noModule));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("/nowhere/calendar.so")));
    EXPECT_FALSE(access()) << "and again";
}

TEST_F(CalendarModule, IsNotLoadedBeforeAccessIsAskedFor) {
    make("/nowhere/calendar.so", "");
    calendar.reset();
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(CalendarModule, WithoutAServerRefuses) {
    make(CALENDAR_MODULE, "");
    EXPECT_FALSE(access());
    EXPECT_THAT(refusals, ElementsAre(Refusal::noServer));
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("the desktop's calendars cannot be reached")));
}

TEST_F(CalendarModule, WithoutTheFolderRefuses) {
    make(CALENDAR_MODULE, "/nowhere/at/all");
    EXPECT_FALSE(access());
    EXPECT_THAT(refusals, ElementsAre(Refusal::noFolder));
}

TEST_F(CalendarModule, WithoutCalendarsSaysWhy) {
    make(STAND_IN, "/elsewhere");
    EXPECT_FALSE(access());
    EXPECT_THAT(refusals, ElementsAre(Refusal::noCalendar));
    EXPECT_THAT(log.lines, ElementsAre("none here"));
}

TEST_F(CalendarModule, HasEachRemarkLoggedOnceAsLongAsItHolds) {
    make(STAND_IN, "/remarks");
    EXPECT_TRUE(access());
    for (int pass = 0; pass < 4; ++pass)
        find();
    EXPECT_THAT(log.lines, ElementsAre("a", "b", "a"));
}

TEST_F(CalendarModule, AnswersEachOfManySavesWithItsOwnResultInOrder) {
    make(STAND_IN, "/saves");
    EXPECT_TRUE(access());
    std::string answers;
    for (const char* id : {"good", "bad", "good", "good", "bad"})
        calendar->save({.id = id}, platform::Calendar::Span::futureEvents,
                       [&answers](const auto& error) { answers += error ? *error + " " : "- "; });
    find();
    EXPECT_EQ(answers, "- refused - - refused ");
}

TEST_F(CalendarModule, ThatThrowsFailsAndEndsNothing) {
    make(STAND_IN, "/throws");
    EXPECT_TRUE(access());
    EXPECT_THAT(find().events, IsEmpty());
    std::string answers;
    calendar->save({.id = "a"}, platform::Calendar::Span::futureEvents,
                   [&answers](const auto& error) { answers += error.value_or("-"); });
    find();
    EXPECT_EQ(answers, "no memory for this");
    EXPECT_FALSE(access());
    EXPECT_THAT(log.lines, testing::Contains(HasSubstr("no memory for this")));
}

TEST_F(CalendarModule, HasASaveThatFailedLoggedOnceAsLongAsItFails) {
    make(STAND_IN, "/saves");
    EXPECT_TRUE(access());
    for (int pass = 0; pass < 3; ++pass) {
        for (const char* id : {"good", "bad"})
            calendar->save({.id = id}, platform::Calendar::Span::futureEvents, [](const auto&) {});
        find();
    }
    EXPECT_THAT(log.lines, ElementsAre(HasSubstr("refused")));
}

TEST_F(CalendarModule, ThatDoesNotAnswerIsInterrupted) {
    make(STAND_IN, "/waits", 0.05);
    EXPECT_TRUE(access());
    EXPECT_THAT(find().sources, ElementsAre("interrupted"));
    EXPECT_THAT(find().sources, ElementsAre("interrupted"));
}

TEST_F(CalendarModule, GivesNoAnswerAfterTheObjectHasGone) {
    make(STAND_IN, "/waits");
    EXPECT_TRUE(access());
    bool answered = false;
    calendar->findEvents(3600, [&answered](const auto&) { answered = true; });
    calendar.reset();
    loop.schedule(0, false, "end", [this] { loop.stop(); });
    run();
    EXPECT_FALSE(answered);
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const calendartests::Session session(calendartests::Session::Server::absent);
    const QCoreApplication toolkit(argc, argv);
    return RUN_ALL_TESTS();
}
