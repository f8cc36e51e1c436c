#include "replay/ReplayRun.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace palisor {
namespace {

/// A scenario of every variant, in which the pointer wanders about, modifiers change, screens come
/// and go and time passes. The same seed makes the same one.
std::string randomScenario(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&random](unsigned limit) { return random() % limit; };
    const auto number = [](unsigned n) { return std::to_string(n); };
    constexpr std::array<const char*, 4> types{"mouseMoved", "leftMouseDragged", "scrollWheel",
                                               "keyDown"};
    std::string text = R"({"do":"bundle","info":{"IDApp":)" + number(below(10)) + "}}\n" +
                       R"({"do":"defaults","set":{"VELOCITY_OPTION":true,"VELOCITY":)" +
                       number(below(60)) + R"(,"HOT_BOUNDS":"1","SCHEDULE":")" + number(below(3)) +
                       "\"}}\n{\"do\":\"launch\"}\n";
    for (int step = 0; step < 200; ++step) {
        switch (below(8)) {
        case 0:
            text += R"({"do":"advance","seconds":)" + number(below(400)) + "e-3}\n";
            break;
        case 1:
            text += R"({"do":"flagsChanged","keyCode":)" + number(54 + below(6)) + "}\n";
            break;
        case 2:
            text += R"({"do":"screens","frames":[[0,0,1920,1080],[1920,)" + number(below(200)) +
                    ",1280,1024]]}\n";
            break;
        default:
            text += R"({"do":"pointer","at":[)" + number(below(3300)) + "," + number(below(1100)) +
                    R"(],"type":")" + types[below(types.size())] + "\"}\n";
        }
    }
    return text + R"({"do":"show","what":["fields","defaults","windows","timers"]})" + "\n";
}

TEST(RandomScenario, PrintsTheSameBytesEachTime) {
    const ReplayRun run;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const std::string scenario = randomScenario(seed);
        const auto first = run.play(scenario);
        const auto second = run.play(scenario);
        EXPECT_EQ(first.status, 0) << "seed " << seed << ": " << first.errors;
        EXPECT_NE(first.output, "") << "seed " << seed;
        EXPECT_EQ(first.output, second.output) << "seed " << seed;
    }
}

} // namespace
} // namespace palisor
