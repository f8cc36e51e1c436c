#include "replay/ReplayRun.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* threeEffects = R"({"do":"call","operation":"playTheSound"}
{"do":"call","operation":"forceMouseToPoint:","arguments":[[3,4]]}
{"do":"show","what":["menu"]}
)";

TEST(ReplayCommandLine, PrintsTheEffectsNamedAndEveryRecord) {
    const auto result = ReplayRun().play(threeEffects, "--only warp,sound s");
    EXPECT_EQ(result.output, R"({"t":0,"effect":"sound","name":"sound","volume":0.5}
{"t":0,"effect":"warp","to":[3,4]}
{"show":"menu","items":[]}
)");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

TEST(ReplayCommandLine, ReadsStandardInputForADash) {
    const ReplayRun run;
    const auto fromFile = run.play(threeEffects);
    const auto fromInput = run.play(threeEffects, "-");
    EXPECT_THAT(fromInput.output, HasSubstr("suppressionInterval"));
    EXPECT_EQ(fromInput.output, fromFile.output);
    EXPECT_EQ(fromInput.status, 0);
}

TEST(ReplayCommandLine, NamesStandardInputByTheDashInAnError) {
    EXPECT_EQ(ReplayRun().play("{}\n", "-").errors, "-:1: member \"do\" is missing\n");
}

TEST(ReplayCommandLine, ExplainsItself) {
    const auto result = ReplayRun().play("", "--help");
    EXPECT_THAT(result.output, StartsWith("Usage: palisor-replay"));
    EXPECT_EQ(result.status, 0);
}

TEST(ReplayCommandLine, RefusesArgumentsThatItDoesNotTake) {
    const ReplayRun run;
    for (const char* arguments :
         {"", "s s", "--nothing s", "--only", "--only '' s", "--only a, s", "missing", "."}) {
        const auto result = run.play("", arguments);
        EXPECT_EQ(result.status, 2) << arguments;
        EXPECT_EQ(result.output, "") << arguments;
        EXPECT_NE(result.errors, "") << arguments;
    }
}

TEST(ReplayCommandLine, FailsWhenItsOutputCannotBeWritten) {
    const auto result = ReplayRun().play(threeEffects, "s", "/dev/full");
    EXPECT_THAT(result.errors, HasSubstr("cannot write"));
    EXPECT_EQ(result.status, 1);
}

TEST(ReplayCommandLine, IgnoresWhatFollowsTheEndOfTheProgram) {
    const auto result = ReplayRun().play("{\"do\":\"call\",\"operation\":\"quit\"}\nnot JSON\n");
    EXPECT_EQ(result.output, R"({"t":0,"effect":"terminate"}
{"t":0,"effect":"exit","status":0}
)");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

} // namespace
} // namespace palisor
