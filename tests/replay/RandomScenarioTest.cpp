#include "replay/RandomScenario.h"
#include "replay/ReplayRun.h"

#include <gtest/gtest.h>

namespace palisor {
namespace {

constexpr std::array<unsigned, 7> variants{0, 1, 2, 3, 5, 7, 8};

class RandomScenarios : public testing::TestWithParam<unsigned> {};

TEST_P(RandomScenarios, PrintTheSameBytesEachTime) {
    const ReplayRun run;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        const std::string scenario = RandomScenario(seed, GetParam()).write();
        EXPECT_EQ(run.play(scenario).output, run.play(scenario).output) << "seed " << seed;
    }
}

TEST_P(RandomScenarios, KeepWhatAlwaysHolds) {
    const ReplayRun run;
    std::map<std::string, int> outcomes;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomScenario scenario(seed, GetParam());
        const std::string text = scenario.write();
        const auto played = run.play(text);
        ASSERT_EQ(played.status, 0) << played.errors;
        RunCheck check(GetParam(), scenario.startsOn(), scenario.events());
        std::istringstream lines(played.output);
        int number = 0;
        for (std::string line; std::getline(lines, line);) {
            ++number;
            ASSERT_EQ(check.read(line), "") << "line " << number << ": " << line;
        }
        for (const auto& [outcome, count] : check.outcomes)
            outcomes[outcome] += count;
    }
    // Else nothing was proved.
    std::vector<const char*> expected{"inside", "off"};
    if (GetParam() == 8) expected.push_back("crossed");
    if (GetParam() == 8 || GetParam() == 5 || GetParam() == 2) expected.push_back("put back");
    for (const char* outcome : expected)
        EXPECT_GT(outcomes[outcome], 20) << outcome;
}

INSTANTIATE_TEST_SUITE_P(Variants, RandomScenarios, testing::ValuesIn(variants),
                         [](const auto& variant) { return std::to_string(variant.param); });

} // namespace
} // namespace palisor
