#pragma once

#include "platform/json/Writer.h"
#include "replay/RunCheck.h"

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace palisor {

/// A scenario in which the pointer wanders about, keys and modifiers change, settings are edited,
/// menu entries chosen, sliders moved, screens come and go and time passes. The same seed makes the
/// same one. What the program stores of being switched on is never edited from outside, and its
/// shortcut never cleared, so that nothing but the steps decides whether it is on. The fields are
/// shown before and after each pointer event.
class RandomScenario {
  public:
    RandomScenario(unsigned seed, unsigned productVariant)
        : random(seed * 10 + productVariant), variant(productVariant) {}

    std::string write() {
        on = below(2) != 0;
        text = R"({"do":"bundle","info":{"IDApp":)" + number(variant) + "}}\n" +
               R"({"do":"defaults","set":{"VELOCITY_OPTION":true,"VELOCITY":)" + number(below(60)) +
               R"(,"ATTIVO":)" + (on ? "true" : "false") + R"(,"STAY_HIDDEN":)" + flag() +
               R"(,"HOT_BOUNDS":")" + number(below(2)) + R"(","SCHEDULE":")" + number(below(3)) +
               "\"}}\n" + "{\"do\":\"launch\"}\n";
        for (int step = 0; step < 150; ++step)
            addStep();
        return text + R"({"do":"show","what":["fields","defaults","menu","windows","timers"]})" +
               "\n";
    }

    /// Whether the product is on at the start.
    bool startsOn() const { return on; }
    /// For each record of the fields the pointer event that alone lies between it and the one
    /// before.
    const std::vector<std::optional<PointerStep>>& events() const { return steps; }

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
            addPointers();
        }
    }

    void showFields(std::optional<PointerStep> since) {
        text += R"({"do":"show","what":["fields"]})"
                "\n";
        steps.push_back(since);
    }

    /// Some steps at nearly the same height, as a hand pushes, near an edge half of the time.
    void addPointers() {
        constexpr std::array<const char*, 6> types{"mouseMoved",  "leftMouseDragged",
                                                   "scrollWheel", "leftMouseDown",
                                                   "keyDown",     "mouseMoved"};
        constexpr std::array<int, 6> edges{0, 2, 1919, 1921, 3198, -1279};
        showFields(std::nullopt);
        const int height = static_cast<int>(below(1100));
        for (unsigned left = 1 + below(4); left > 0; --left) {
            const int x =
                below(2) == 0 ? static_cast<int>(below(4500)) - 1280 : edges[below(edges.size())];
            const platform::Point at{static_cast<double>(x),
                                     static_cast<double>(height + below(3))};
            const std::string type = types[below(types.size())];
            text += R"({"do":"pointer","at":[)" + std::to_string(x) + "," +
                    std::to_string(static_cast<int>(at.y)) + R"(],"type":")" + type + "\"}\n";
            showFields(PointerStep{at, type, isOnAScreen(at)});
        }
    }

    /// Seldom a single one, which ends the barrier. The cursor is on the first one then.
    void addScreens() {
        frames = {{0, 0, 1920, 1080}};
        if (below(12) != 0) frames.push_back({1920, double(below(200)), 1280, 1024});
        if (below(3) == 0) frames.push_back({-1280, -double(below(300)), 1280, 800});
        text += R"({"do":"cursor","at":[100,100]})"
                "\n"
                R"({"do":"screens","frames":)";
        platform::json::writeJson(text, frames);
        text += "}\n";
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
        if (variant == 2 || variant == 5 || variant == 8) titles.push_back("VELOCITYText");
        if (variant == 5) titles.push_back("BREAK_AFTER_SWITCHText");
        text += R"({"do":"choose","title":")";
        text += titles[below(static_cast<unsigned>(titles.size()))];
        text += "\"}\n";
    }

    /// The menu holds the sliders of these variants; those of a mode only while it is on. After a
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
        } else {
            return;
        }
        text += R"({"do":"defaults","set":{"TIME_MODE":true,"VELOCITY_OPTION":true}})"
                "\n"
                R"({"do":"call","operation":"updateMenuItems"})"
                "\n";
        constexpr std::array<const char*, 3> events{"up", "drag", "none"};
        text += R"({"do":"slider","name":")" + name + R"(","value":)" + number(below(largest + 5)) +
                R"(,"event":")" + events[below(events.size())] + "\"}\n";
    }

    /// The frames are bottom-left ones, the first of which is 1080 points high.
    bool isOnAScreen(platform::Point at) const {
        return std::ranges::any_of(frames, [at](const platform::Rect& frame) {
            const platform::Rect topLeft{frame.x, 1080 - frame.height - frame.y, frame.width,
                                         frame.height};
            return topLeft.contains(at);
        });
    }

    std::mt19937 random;
    unsigned variant;
    bool on = true;
    std::vector<platform::Rect> frames{{0, 0, 1920, 1080}, {1920, 0, 1920, 1080}};
    std::vector<std::optional<PointerStep>> steps;
    std::string text;
};

} // namespace palisor
