#pragma once

#include "testing/gnome/ShellMonitors.h"

#include <ostream>
#include <string>
#include <vector>

// The ways to put monitors together that the cursor is held in.

namespace desktop {

struct ShellLayout {
    std::string name;
    std::vector<std::string> outputs; ///< sizes
    std::vector<support::ShellMonitor> monitors;
    std::size_t held = 0; ///< of the monitors
    bool fractions = false;

    support::PrivateShell::Options options() const {
        support::PrivateShell::Options made{.monitors = outputs};
        if (fractions)
            made.before.push_back({"gsettings", "set", "org.gnome.mutter", "experimental-features",
                                   "['scale-monitor-framebuffer']"});
        return made;
    }
};

inline void PrintTo(const ShellLayout& layout, std::ostream* text) {
    *text << layout.name;
}

inline std::vector<ShellLayout> shellLayouts() {
    const std::string small = "1024x768", middle = "1280x720", large = "1920x1080",
                      dense = "2560x1440";
    return {
        {"SideBySide", {middle, middle}, {{{0}, 0, 0}, {{1}, 1280, 0}}},
        {"SideBySideOnTheRight", {middle, middle}, {{{0}, 0, 0}, {{1}, 1280, 0}}, 1},
        {"Stacked", {middle, middle}, {{{0}, 0, 0}, {{1}, 0, 720}}},
        {"StackedBelow", {middle, middle}, {{{0}, 0, 0}, {{1}, 0, 720}}, 1},
        {"InAGridOfFour",
         {small, small, small, small},
         {{{0}, 0, 0}, {{1}, 1024, 0}, {{2}, 0, 768}, {{3}, 1024, 768}}},
        {"InAGridOfFourAtTheBottomRight",
         {small, small, small, small},
         {{{0}, 0, 0}, {{1}, 1024, 0}, {{2}, 0, 768}, {{3}, 1024, 768}},
         3},
        {"InTheMiddleOfThree",
         {small, small, small},
         {{{0}, 0, 0}, {{1}, 1024, 0}, {{2}, 2048, 0}},
         1},
        {"OfUnequalSize", {large, middle}, {{{0}, 0, 0}, {{1}, 1920, 200}}},
        {"OfUnequalSizeOnTheSmaller", {large, middle}, {{{0}, 0, 0}, {{1}, 1920, 200}}, 1},
        {"WithAGap", {middle, middle, middle}, {{{0}, 0, 0}, {{1}, 1280, 400}, {{2}, 640, 1120}}},
        {"OverACorner", {middle, middle, middle}, {{{0}, 0, 0}, {{1}, 1280, 0}, {{2}, 1280, 720}}},
        {"Scaled", {middle, dense}, {{{0}, 0, 0, 1.25}, {{1}, 1024, 0, 2}}, 0, true},
        {"ScaledTwice", {middle, dense}, {{{0}, 0, 0, 1.25}, {{1}, 1024, 0, 2}}, 1, true},
        {"Mirrored", {middle, middle, middle}, {{{0, 1}, 0, 0}, {{2}, 1280, 0}}},
    };
}

} // namespace desktop
