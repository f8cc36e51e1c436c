#include "engine/Decisions.h"
#include "unit/Program.h"

#include <gmock/gmock.h>

// Why the cursor was held, or let through.

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

/// The barrier with pushes of 75 pixels on, the cursor last seen at (1900, 500), and what it says.
struct Explained : Program, DecisionObserver {
    Explained() : Program(variants::barrier) {
        setting(keys::VELOCITY_OPTION, Value{true});
        platform.pointer.place({960, 500});
        launched();
        app.explainTo(this);
        pointer({1900, 500});
    }
    void decided(const Decision& decision) override { lines.push_back(explained(decision)); }

    Lines lines;
};

TEST(Decisions, SayWhereTheCursorIsHeldAndWhatWasMissing) {
    const struct {
        Point outside;
        const char* line;
    } cases[] = {
        {{1938, 500}, "held at 1919,500: step 38 px, 75 needed"},
        {{1975, 500}, "held at 1919,500: step 75 px, 75 needed"},
        {{1990, 520},
         "held at 1919,520: step 90 px, 75 needed, but 20 px up or down, a tenth at "
         "most"},
        {{1920, 600},
         "held at 1919,600: step 20 px, 75 needed, and 100 px up or down do not "
         "count"},
        {{2100, 500}, "crossed to 2100,500: step 200 px, 75 needed"},
    };
    for (const auto& [outside, line] : cases) {
        Explained program;
        program.pointer(outside);
        EXPECT_THAT(program.lines, ElementsAre(line));
    }
}

TEST(Decisions, SayThatNoPushCrossesWhileThatIsOff) {
    Explained program;
    program.setting(keys::VELOCITY_OPTION, Value{false});
    program.pointer({2100, 500});
    EXPECT_THAT(program.lines, ElementsAre("held at 1919,500: no push crosses now"));
}

TEST(Decisions, AreNoneInsideTheScreenAndWhileSwitchedOff) {
    Explained program;
    program.pointer({1910, 500});
    program.app.enableDisable();
    program.pointer({2100, 500});
    EXPECT_THAT(program.lines, IsEmpty());
}

TEST(Decisions, AreToldToNobodyAnyMore) {
    Explained program;
    program.app.explainTo(nullptr);
    program.pointer({2100, 500});
    EXPECT_THAT(program.lines, IsEmpty());
}

TEST(DecisionLog, WritesFourLinesASecondAndCountsTheOthers) {
    Lines lines;
    double now = 100;
    DecisionLog log([&](std::string_view line) { lines.emplace_back(line); }, [&] { return now; });
    Decision decision{.at = {1919, 500}};
    const std::string plain = "held at 1919,500: no push crosses now";
    const auto decide = [&](int times) {
        for (int i = 0; i < times; ++i)
            log.decided(decision);
        return std::exchange(lines, {});
    };
    EXPECT_EQ(decide(10), (Lines{plain, plain, plain, plain}));
    now += 0.99;
    EXPECT_THAT(decide(1), IsEmpty());
    now += 0.01;
    EXPECT_EQ(decide(5), (Lines{plain + " (7 before it left out)", plain, plain, plain}));
    now += 5;
    EXPECT_EQ(decide(1), (Lines{plain + " (1 before it left out)"}));
    decide(10);
    decision.outcome = Decision::Outcome::crossed;
    EXPECT_EQ(decide(1),
              (Lines{"crossed to 1919,500: step 0 px, 0 needed (7 before it left out)"}));
}

} // namespace
} // namespace palisor
