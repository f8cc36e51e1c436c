#include "Scenes.h"

#include "testing/desktop/Watcher.h"

#include <cstdio>

namespace demo {

using namespace support;

namespace {

std::string format(const char* pattern, double first, double second, double third = 0) {
    char text[200];
    std::snprintf(text, sizeof text, pattern, first, second, third);
    return text;
}

std::string describe(const Watcher::Report& report) {
    return format("%.0f looks, outside by %.0f px at most, for %.1f ms at most",
                  static_cast<double>(report.looks), report.farthestOutside,
                  report.longestOutsideMs);
}

constexpr double frameMs = 1000.0 / 60;

bool isBackSoon(const Stage& stage, const Area& monitor) {
    const auto isBack = [&] {
        const Spot spot = stage.eye.cursor();
        return monitor.contains(spot.x, spot.y);
    };
    return waitUntil(isBack, milliseconds(2'000));
}

// Pushes while the cursor is watched, and tells whether it stayed on its monitor: whenever it was
// out, it was back within a frame.
void pushAgainstTheEdge(Stage& stage, const Area& monitor, int dx, int steps, int hz,
                        std::string_view what) {
    Watcher watcher(stage.desktop.display(), monitor);
    const double seconds = stage.hand.push(dx, 0, steps, hz);
    const bool isBack = isBackSoon(stage, monitor);
    const Watcher::Report report = watcher.finish();
    const int edge = dx > 0 ? monitor.x + monitor.width - 1 : monitor.x;
    const int reached = dx > 0 ? report.rightmost : report.leftmost;
    // Within two points of the edge: a push that never got there would prove nothing.
    const bool atTheEdge = dx > 0 ? reached >= edge - 2 : reached <= edge + 2;
    stage.tell(isBack && report.longestOutsideMs <= frameMs && atTheEdge, what,
               describe(report) + format("; %.1f s, reached x = %.0f", seconds, reached));
}

} // namespace

void startsAndDarkens(Stage& stage) {
    stage.startProgram();
    stage.tell(stage.waitForDark(Stage::right, Stage::left),
               "started with the cursor on the left: the right monitor is dark, the left is not");
    stage.takePicture("1-started");
}

void holdsTheCursor(Stage& stage) {
    pushAgainstTheEdge(stage, Stage::left, 7, 2500, 1000,
                       "2,500 steps of 7 px at 1000 Hz do not pass the right edge");
    stage.tell(stage.isDark(Stage::right) && stage.isBright(Stage::left),
               "the right monitor is still the dark one");
    stage.takePicture("2-held");
}

void catchesClicks(Stage& stage) {
    stage.hand.clickAt(Stage::rightMiddle.x, Stage::rightMiddle.y);
    // The click on the left comes after the one on the right: when it is there, the other would be.
    stage.hand.clickAt(Stage::leftMiddle.x, Stage::leftMiddle.y);
    const bool fence = stage.leftWindow.waitForPresses(1, milliseconds(10'000));
    const int through = stage.rightWindow.presses();
    stage.tell(fence && through == 0,
               "a click on the dark monitor reaches no window, one on the left does",
               format("right window %.0f, left window %.0f", through, stage.leftWindow.presses()));
}

void letsGoWhileTheKeysAreHeld(Stage& stage) {
    stage.hand.moveTo(Stage::leftMiddle.x, Stage::leftMiddle.y);
    for (const xcb_keysym_t held : {key::leftControl, key::leftAlt, key::leftSuper})
        stage.hand.press(held);
    const bool bright = stage.waitForAllBright();
    stage.takePicture("3-keys-held");
    stage.hand.push(8, 0, 110, 500);
    const Spot spot = stage.eye.cursor();
    stage.tell(Stage::right.contains(spot.x, spot.y), "with CTRL+ALT+CMD held the cursor crosses",
               format("at %.0f, %.0f", spot.x, spot.y));
    stage.tell(bright && stage.isBright(Stage::left) && stage.isBright(Stage::right),
               "nothing is dark meanwhile");

    for (const xcb_keysym_t held : {key::leftSuper, key::leftAlt, key::leftControl})
        stage.hand.release(held);
    stage.tell(stage.waitForDark(Stage::left, Stage::right),
               "released on the right monitor: the left one is dark now");
    stage.takePicture("4-keys-released");
    pushAgainstTheEdge(stage, Stage::right, -7, 500, 1000,
                       "and 500 steps of 7 px do not pass its left edge");
}

void letsAPushThrough(Stage& stage) {
    stage.program->end();
    stage.tell(stage.waitForAllBright(), "ended, to be started with the push option on");
    stage.startProgram({.pushOption = true, .velocity = 10});
    stage.tell(stage.waitForDark(Stage::right, Stage::left), "the right monitor is dark again");
    stage.hand.moveTo(Stage::left.x + Stage::left.width - 30, Stage::leftMiddle.y);
    pushAgainstTheEdge(stage, Stage::left, 1, 90, 60, "90 steps of 1 px at 60 Hz do not pass");
    stage.hand.moveTo(Stage::leftMiddle.x, Stage::leftMiddle.y);
    stage.hand.push(40, 0, 20, 60);
    const bool darkened = stage.waitForDark(Stage::left, Stage::right);
    const Spot spot = stage.eye.cursor();
    stage.tell(darkened && Stage::right.contains(spot.x, spot.y),
               "a push of 40 px steps at 60 Hz passes, and the left monitor is dark",
               format("at %.0f, %.0f", spot.x, spot.y));
    stage.takePicture("5-pushed-through");
}

void leavesNothingBehind(Stage& stage) {
    const int status = stage.program->end();
    stage.tell(status == 0, "SIGTERM ends it", format("status %.0f", status, 0));
    stage.tell(stage.waitForAllBright(), "and nothing is dark");
    const int before = stage.leftWindow.presses();
    stage.hand.clickAt(Stage::leftMiddle.x, Stage::leftMiddle.y);
    stage.tell(stage.leftWindow.waitForPresses(before + 1, milliseconds(10'000)),
               "a click where it was dark reaches the window again");
    stage.takePicture("6-ended");
}

} // namespace demo
