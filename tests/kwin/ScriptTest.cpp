#include <QCoreApplication>
#include <QFile>
#include <QJSEngine>
#include <gtest/gtest.h>

// The script that runs inside the compositor, in the engine that the compositor has, on a model of
// the compositor.

namespace {

constexpr const char* closed = "100000000 0";
constexpr const char* users = "100 1";

class KWinScript : public testing::Test {
  protected:
    // One text, as what it declares is seen in no other.
    KWinScript() {
        const QString text = read(TESTS "/compositor.js") + read(RESOURCES "/kwin/session.js") +
                             QStringLiteral("\nfunction run(text) { return eval(text); }");
        const QJSValue result = engine.evaluate(text);
        if (result.isError()) throw std::runtime_error(result.toString().toStdString());
    }

    static QString read(const char* path) {
        QFile file(QString::fromUtf8(path));
        if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error(path);
        return QString::fromUtf8(file.readAll());
    }

    std::string run(const char* text) {
        const QJSValue result =
            engine.globalObject().property("run").call({QJSValue(QString::fromUtf8(text))});
        EXPECT_FALSE(result.isError()) << text << ": " << result.toString().toStdString();
        return result.toString().toStdString();
    }
    void hold() { run("command('hold', [0, 0, 1280, 720])"); }
    std::string barrier() { return run("barrier()"); }

    QJSEngine engine;
};

TEST_F(KWinScript, AsksForCommandsAndTellsTheLastOneThatIsDone) {
    EXPECT_EQ(run("JSON.stringify(calls[0].slice(0, 2))"), R"(["Poll",["hold-1-1","0"]])");
    hold();
    EXPECT_EQ(run("JSON.stringify(calls[calls.length - 1].slice(0, 2))"),
              R"(["Poll",["hold-1-1","1"]])");
}

TEST_F(KWinScript, AsksAnewBeforeTheBusGivesTheQuestionUp) {
    run("pass(19500)");
    EXPECT_EQ(run("count('Poll')"), "1");
    run("pass(5000)");
    EXPECT_EQ(run("count('Poll')"), "2");
    run("calls.find(call => call[0] === 'Poll')[2]('[]')");
    EXPECT_EQ(run("count('Poll')"), "2") << "the old question is answered, the new one waits";
    hold();
    EXPECT_EQ(run("count('Poll')"), "3");
}

TEST_F(KWinScript, CarriesOutWhatTheOldQuestionIsAnsweredWithAndTellsSo) {
    run("pass(20000); calls.find(call => call[0] === 'Poll')[2]('[[7,\"places\",16]]')");
    EXPECT_EQ(run("JSON.stringify(calls.filter(call => call[0] === 'Poll').pop()[1])"),
              R"(["hold-1-1","7"])");
}

TEST_F(KWinScript, ClosesTheBarrierOnlyWhileTheCursorIsOnTheHeldMonitor) {
    hold();
    EXPECT_EQ(barrier(), closed);
    run("at(1300, 10); pass(250)");
    EXPECT_EQ(barrier(), users) << "the edges of the others are as they were";
    run("at(1279, 10)");
    EXPECT_EQ(barrier(), closed);
    run("command('hold')");
    EXPECT_EQ(barrier(), users);
}

TEST_F(KWinScript, TellsAtOnceOfACursorBesideTheHeldMonitor) {
    hold();
    run("at(1300, 10); pass(250); at(1310, 12)");
    EXPECT_EQ(run("allTold()"), R"(["place",1300,10],["place",1310,12])");
}

TEST_F(KWinScript, IsNotCalledForMotionsInsideTheHeldMonitor) {
    hold();
    EXPECT_EQ(run("workspace.cursorPosChanged.handlers.length"), "0");
    run("command('places', 8); pass(8)");
    EXPECT_EQ(run("workspace.cursorPosChanged.handlers.length"), "1");
}

TEST_F(KWinScript, OpensTheBarrierForAWarpAndClosesItWhenItIsDone) {
    hold();
    run("command('hold', [1280, 0, 1280, 720]); command('pass', 1300, 50)");
    EXPECT_EQ(barrier(), "0 0");
    run("at(1300, 50)");
    EXPECT_EQ(barrier(), closed);
}

TEST_F(KWinScript, WaitsATenthOfASecondForAWarp) {
    run("command('hold', [1280, 0, 1280, 720]); command('pass', 1300, 50); pass(99)");
    EXPECT_EQ(barrier(), "0 0");
    run("pass(1)");
    EXPECT_EQ(barrier(), users) << "the cursor is beside the held monitor";
}

TEST_F(KWinScript, OpensNoBarrierForAWarpInsideTheHeldMonitor) {
    hold();
    run("command('pass', 1278, 50)");
    EXPECT_EQ(barrier(), closed);
}

TEST_F(KWinScript, HoldsAgainAfterAnotherValueWasSetAndGivesThatOneBack) {
    hold();
    run("options.edgeBarrier = 30; options.cornerBarrier = true");
    EXPECT_EQ(barrier(), closed);
    run("command('end')");
    EXPECT_EQ(barrier(), "30 1");
}

TEST_F(KWinScript, DoesNotQuarrelWithoutAnEnd) {
    hold();
    run("options.edgeBarrierChanged.connect(() => options.edgeBarrier = 50)");
    run("options.edgeBarrier = 50");
    EXPECT_EQ(barrier(), "50 0");
}

TEST_F(KWinScript, PutsTheUsersValuesBackAndEndsWhenTheProgramHasGone) {
    hold();
    run("pass(250); answerAlive(true)");
    EXPECT_EQ(barrier(), closed);
    run("pass(250); answerAlive(false)");
    EXPECT_EQ(barrier(), users);
    EXPECT_EQ(run("JSON.stringify(calls[calls.length - 1].slice(0, 2))"),
              R"(["unloadScript",["hold-1-1"]])");
}

TEST_F(KWinScript, TellsPlacesAtTheirPaceAndTheLastOneToo) {
    run("command('places', 8); at(20, 20); at(21, 20)");
    EXPECT_EQ(run("allTold()"), R"(["place",10,10])") << "where the cursor is to begin with";
    run("pass(8)");
    EXPECT_EQ(run("allTold()"), R"(["place",10,10],["place",21,20])");
    run("pass(100); at(30, 20)");
    EXPECT_EQ(run("allTold()"), R"(["place",10,10],["place",21,20],["place",30,20])")
        << "at once after a rest";
}

TEST_F(KWinScript, IsNotCalledForMotionsBetweenTwoPlacesNorForARestingCursor) {
    constexpr const char* listeners = "workspace.cursorPosChanged.handlers.length";
    run("command('places', 8); pass(8)");
    EXPECT_EQ(run(listeners), "1");
    run("at(20, 20)");
    EXPECT_EQ(run(listeners), "0");
    run("pass(16)");
    EXPECT_EQ(run(listeners), "1");
    EXPECT_EQ(run("timers.filter(one => one.active && one.singleShot).length"), "0");
    run("at(21, 20); command('places', 0); pass(50)");
    EXPECT_EQ(run(listeners), "0");
}

/// The cursor rests on the last column of the held output, and pushes of 75 pixels cross.
struct KWinDrag : KWinScript {
    KWinDrag() {
        hold();
        run("command('crossing', 75); pass(25)");
    }
    std::string told() { return run("allTold()"); }
    void toEdge() { run("at(1279, 300); pass(25)"); }
    void drag() {
        toEdge();
        run("command('drag', 1)");
    }
};

TEST_F(KWinDrag, TellsOnceOfACursorThatHasComeToAnInnerEdge) {
    run("at(0, 300); pass(100); at(640, 719); pass(100)");
    EXPECT_EQ(told(), "") << "nothing lies beyond";
    toEdge();
    EXPECT_EQ(told(), R"(["edge"])");
    run("at(1279, 310); pass(25)");
    EXPECT_EQ(told(), R"(["edge"])") << "it is still there";
    run("at(1200, 310); pass(25)");
    toEdge();
    EXPECT_EQ(told(), R"(["edge"],["edge"])");
}

TEST_F(KWinDrag, IsNotWatchedForWherePushesDoNotCross) {
    run("command('crossing', 0)");
    EXPECT_EQ(run("workspace.cursorPosChanged.handlers.length"), "0");
    toEdge();
    run("command('drag', 1)");
    EXPECT_EQ(told(), "");
    EXPECT_EQ(barrier(), closed);
}

TEST_F(KWinDrag, HasABarrierAsLongAsAPush) {
    drag();
    EXPECT_EQ(barrier(), "75 0");
    run("command('drag', 0)");
    EXPECT_EQ(barrier(), closed);
}

TEST_F(KWinDrag, HasALowerOneForAWindowThatIsMovedAsKWinMakesItHigher) {
    run("workspace.activeWindow = {move: true, resize: false}");
    drag();
    EXPECT_EQ(barrier(), "50 0");
}

TEST_F(KWinDrag, HasTheClosedBarrierAgainAwayFromTheEdge) {
    drag();
    run("at(1270, 300)");
    EXPECT_EQ(barrier(), closed);
    EXPECT_EQ(told(), R"(["edge"],["inside"])");
    run("command('drag', 1)");
    EXPECT_EQ(barrier(), closed);
}

TEST_F(KWinDrag, TellsOfACrossingFromWhereTheCursorWasAFrameBefore) {
    drag();
    run("at(1279, 301); pass(20); at(1279, 302); pass(5); at(1279, 303); at(1283, 305)");
    EXPECT_EQ(told(), R"(["edge"],["crossed",1279,301,1283,305])");
    EXPECT_EQ(barrier(), users);
}

TEST_F(KWinDrag, IsNotWaitedForWithoutAnEndByAHandThatRests) {
    drag();
    run("pass(3000)");
    EXPECT_EQ(barrier(), closed);
    EXPECT_EQ(told(), R"(["edge"],["inside"])");
    run("pass(500)");
    EXPECT_EQ(told(), R"(["edge"],["inside"])");
    run("at(1279, 301); pass(25)");
    EXPECT_EQ(told(), R"(["edge"],["inside"],["edge"])");
}

TEST_F(KWinDrag, EndsWithTheHold) {
    drag();
    run("command('hold', [1280, 0, 1280, 720]); at(1300, 300)");
    EXPECT_EQ(barrier(), closed);
}

TEST_F(KWinScript, TakesTheHidingEffectBackOnceWhenItIsToldToOrEnds) {
    const auto undone = [this] {
        return run("JSON.stringify(calls.filter(call => call[1][0] === 'hidecursor')"
                   ".map(call => call[0]))");
    };
    run("command('effect', '')");
    EXPECT_EQ(undone(), "[]") << "nothing was done";
    run("command('effect', 'unloadEffect'); command('effect', '')");
    EXPECT_EQ(undone(), R"(["unloadEffect"])");
    run("command('effect', 'reconfigureEffect'); pass(250); answerAlive(false)");
    EXPECT_EQ(undone(), R"(["unloadEffect","reconfigureEffect"])");
}

TEST_F(KWinScript, TellsOfAKeyAndSwitchesDesktops) {
    run("command('key', 'name', 'Alt+F9'); shortcuts['Alt+F9']()");
    EXPECT_EQ(run("allTold()"), R"(["key","Alt+F9"])");
    run("command('desktop', 'left'); command('desktop', 'right')");
    EXPECT_EQ(run("calls.filter(call => call[0] === 'desktop').map(call => call[1][0]).join()"),
              "Left,Right");
}

} // namespace

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    const QCoreApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
