#include "replay/ReplayRun.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string_view>
#include <vector>

namespace palisor {
namespace {

constexpr std::array<unsigned, 7> variants{0, 1, 2, 3, 5, 7, 8};

/// A scenario in which the pointer wanders about, keys and modifiers change, settings are edited,
/// menu entries chosen, sliders moved, screens come and go and time passes. The same seed makes the
/// same one. What the program stores of being switched on is never edited from outside, and its
/// shortcut never cleared, so that nothing but the steps decides whether it is on.
class RandomScenario {
  public:
    RandomScenario(unsigned seed, unsigned productVariant)
        : random(seed * 10 + productVariant), variant(productVariant) {}

    std::string write() {
        text = R"({"do":"bundle","info":{"IDApp":)" + number(variant) + "}}\n" +
               R"({"do":"defaults","set":{"VELOCITY_OPTION":true,"VELOCITY":)" + number(below(60)) +
               R"(,"ATTIVO":)" + flag() + R"(,"STAY_HIDDEN":)" + flag() + R"(,"HOT_BOUNDS":")" +
               number(below(2)) + R"(","SCHEDULE":")" + number(below(3)) + "\"}}\n" +
               "{\"do\":\"launch\"}\n";
        for (int step = 0; step < 250; ++step)
            addStep();
        return text + R"({"do":"show","what":["fields","defaults","menu","windows","timers"]})" +
               "\n";
    }

  private:
    unsigned below(unsigned limit) { return random() % limit; }
    std::string flag() { return below(2) == 0 ? "false" : "true"; }
    static std::string number(unsigned n) { return std::to_string(n); }

    void addStep() {
        switch (below(16)) {
        case 0:
        case 1:
            text += R"({"do":"advance","seconds":)" + number(below(400)) + "e-3}\n";
            break;
        case 2:
            text += R"({"do":"flagsChanged","keyCode":)" + number(54 + below(9)) + "}\n";
            break;
        case 3:
            if (below(3) == 0) addScreens();
            break;
        case 4:
            addSetting();
            break;
        case 5:
            addChoice();
            break;
        case 6:
            addSlider();
            break;
        case 7:
            text += R"({"do":"hotKey","keyCode":40,"modifierFlags":1310720})"
                    "\n";
            break;
        case 8:
            text += R"({"do":"statusClick","button":)" + number(below(3)) + "}\n";
            break;
        case 9:
            text += R"({"do":"show","what":["timers"]})"
                    "\n";
            break;
        default:
            addPointer();
        }
    }

    void addPointer() {
        constexpr std::array<const char*, 6> types{"mouseMoved",  "leftMouseDragged",
                                                   "scrollWheel", "leftMouseDown",
                                                   "keyDown",     "mouseMoved"};
        // Near an edge half of the time.
        const unsigned x = below(2) == 0 ? below(3300) : (below(2) == 0 ? below(3) : 3198);
        text += R"({"do":"pointer","at":[)" + number(x) + "," + number(below(1100)) +
                R"(],"type":")" + types[below(types.size())] + "\"}\n";
    }

    /// Seldom a single one, which ends the barrier.
    void addScreens() {
        text += R"({"do":"screens","frames":[[0,0,1920,1080])";
        if (below(12) != 0) text += ",[1920," + number(below(200)) + ",1280,1024]";
        if (below(3) == 0) text += ",[-1280,-" + number(below(300)) + ",1280,800]";
        text += "]}\n";
    }

    void addSetting() {
        constexpr std::array<const char*, 12> flags{
            "TIME_MODE",  "SHOW_ON_SCROLL", "CTRLALTCMD", "BREAK_AFTER_SWITCH",
            "BUTLATO1",   "BUTLATO2",       "BUTLATO3",   "BUTLATO4",
            "BUTANGOLO1", "BUTANGOLO2",     "BUTANGOLO3", "BUTANGOLO4"};
        text += R"({"do":"defaults","set":{")";
        text += flags[below(flags.size())];
        text += R"(":)" + flag() + R"(,"VELOCITY":)" + number(below(101)) + "}}\n";
    }

    void addChoice() {
        std::vector<const char*> titles{"AVVIA_AL_LOGIN", "SHORTCUT"};
        if (variant == 1)
            titles = {"STAY_HIDDEN", "Hot Borders Mode", "TEMPO", "CTRLALTCMDTextVellumor",
                      "SHOW_ON_SCROLL"};
        else
            titles.push_back("CTRLALTCMDText");
        if (variant == 5) titles.push_back("BREAK_AFTER_SWITCHText");
        text += R"({"do":"choose","title":")";
        text += titles[below(static_cast<unsigned>(titles.size()))];
        text += "\"}\n";
    }

    /// The menu holds the sliders of these variants; that of the time only in time mode. After a
    /// right click there is no menu for a while.
    void addSlider() {
        text += R"({"do":"advance","seconds":0.4})"
                "\n";
        std::string name;
        unsigned largest = 20;
        if (variant == 8 && below(2) == 0) {
            name = "dark";
        } else if (variant == 2 || variant == 5 || variant == 8) {
            name = "velocity";
            largest = 100;
        } else if (variant == 1) {
            name = "time";
            text += R"({"do":"defaults","set":{"TIME_MODE":true}})"
                    "\n"
                    R"({"do":"call","operation":"updateMenuItems"})"
                    "\n";
        } else {
            return;
        }
        constexpr std::array<const char*, 3> events{"up", "drag", "none"};
        text += R"({"do":"slider","name":")" + name + R"(","value":)" + number(below(largest + 5)) +
                R"(,"event":")" + events[below(events.size())] + "\"}\n";
    }

    std::mt19937 random;
    unsigned variant;
    std::string text;
};

std::size_t count(std::string_view line, std::string_view part) {
    std::size_t found = 0;
    for (auto at = line.find(part); at != std::string_view::npos; at = line.find(part, at + 1))
        ++found;
    return found;
}

/// What holds whatever happens.
void checkInvariants(const std::string& output, unsigned variant) {
    const bool isCrossHair = variant == 7;
    int hidden = 0;
    int assertions = 0;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
        const auto is = [&line](const char* effect) {
            return line.find(std::string(R"("effect":")") + effect + '"') != std::string::npos;
        };
        if (is("hideCursor")) ++hidden;
        if (is("showCursor")) --hidden;
        if (is("assertionCreate")) ++assertions;
        if (is("assertionRelease")) --assertions;
        ASSERT_GE(hidden, 0) << line;
        if (!isCrossHair) {
            ASSERT_LE(hidden, 1) << line;
        }
        ASSERT_FALSE(isCrossHair && is("showCursor")) << line;
        ASSERT_GE(assertions, 0) << line;
        ASSERT_LE(assertions, variant == 3 ? 1 : 0) << line;
        if (line.starts_with(R"({"show":"timers")")) {
            ASSERT_LE(count(line, R"("selector":"hidecursor2")"), 1U) << line;
            ASSERT_LE(count(line, R"("selector":"hidecursor")"), 2U) << line;
            ASSERT_EQ(count(line, R"("selector":"updateScreensSize")"), 1U) << line;
        }
    }
}

class RandomScenarios : public testing::TestWithParam<unsigned> {};

TEST_P(RandomScenarios, PrintTheSameBytesEachTimeAndKeepWhatAlwaysHolds) {
    const ReplayRun run;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const std::string scenario = RandomScenario(seed, GetParam()).write();
        const auto first = run.play(scenario);
        const auto second = run.play(scenario);
        ASSERT_EQ(first.status, 0) << first.errors;
        EXPECT_NE(first.output, "");
        EXPECT_EQ(first.output, second.output);
        checkInvariants(first.output, GetParam());
    }
}

INSTANTIATE_TEST_SUITE_P(Variants, RandomScenarios, testing::ValuesIn(variants),
                         [](const auto& variant) { return std::to_string(variant.param); });

} // namespace
} // namespace palisor
