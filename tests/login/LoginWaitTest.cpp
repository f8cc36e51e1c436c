#include "program/LoginWait.h"
#include "platform/memory/Displays.h"
#include "platform/memory/Log.h"
#include "platform/memory/RunLoop.h"
#include "testing/Layouts.h"

#include <gtest/gtest.h>

namespace {

using palisor::screensFromLayout;

constexpr const char* one = "1920x1080+0+0";
constexpr const char* smaller = "1280x1024+0+0";
constexpr const char* two = "1920x1080+0+0,1280x1024+1920+56";

struct WaitAtLogin : testing::Test {
    void startWith(const char* layout) {
        displays.replace(screensFromLayout(layout));
        wait.start([this] { ++overs; });
    }
    void change(const char* layout) { displays.change(screensFromLayout(layout)); }

    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::RunLoop loop{effects, clock};
    platform::memory::Displays displays;
    platform::memory::Log log{effects};
    LoginWait wait{loop, displays, log};
    int overs = 0;
};

TEST_F(WaitAtLogin, IsNoneWhereThereAreTwoScreens) {
    startWith(two);
    EXPECT_EQ(overs, 1);
    change(one);
    loop.advance(60);
    EXPECT_EQ(overs, 1);
}

TEST_F(WaitAtLogin, OfOneScreenIsOverAfterTwoSecondsOfQuiet) {
    startWith(one);
    loop.advance(1.9);
    EXPECT_EQ(overs, 0);
    loop.advance(0.1);
    EXPECT_EQ(overs, 1);
    loop.advance(60);
    EXPECT_EQ(overs, 1);
}

TEST_F(WaitAtLogin, BeginsAnewWithEachChange) {
    startWith(one);
    loop.advance(1.5);
    change(smaller);
    loop.advance(1.9);
    EXPECT_EQ(overs, 0);
    loop.advance(0.1);
    EXPECT_EQ(overs, 1);
}

TEST_F(WaitAtLogin, IsOverAsSoonAsThereIsASecondScreen) {
    startWith(one);
    loop.advance(1.5);
    change(two);
    loop.advance(0.001);
    EXPECT_EQ(overs, 1);
}

TEST_F(WaitAtLogin, GoesOnWhereTheSecondScreenWentAtOnce) {
    startWith(one);
    change(two);
    change(one);
    loop.advance(1.9);
    EXPECT_EQ(overs, 0);
    loop.advance(0.1);
    EXPECT_EQ(overs, 1);
}

TEST_F(WaitAtLogin, LastsTenSecondsAtMost) {
    startWith(one);
    for (int changes = 0; changes < 9; ++changes) {
        loop.advance(1);
        change(changes % 2 == 0 ? smaller : one);
    }
    loop.advance(0.9);
    EXPECT_EQ(overs, 0);
    loop.advance(0.1);
    EXPECT_EQ(overs, 1);
}

TEST_F(WaitAtLogin, LeavesTheDisplaysToWhoeverComesAfterIt) {
    displays.replace(screensFromLayout(one));
    int changes = 0;
    wait.start([&] { displays.onChange([&changes] { ++changes; }); });
    loop.advance(2);
    change(two);
    loop.advance(60);
    EXPECT_EQ(changes, 1);
}

TEST_F(WaitAtLogin, EndsWithoutAWordWithItsObject) {
    displays.replace(screensFromLayout(one));
    {
        LoginWait other(loop, displays, log);
        other.start([this] { ++overs; });
    }
    change(two);
    loop.advance(60);
    EXPECT_EQ(overs, 0);
}

} // namespace
