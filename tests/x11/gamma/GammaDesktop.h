#pragma once

#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"
#include "x11/Session.h"

#include <cmath>
#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>

namespace x11tests {

using support::GammaRamp;

inline GammaRamp scaled(GammaRamp ramp, double factor) {
    for (auto* colour : {&ramp.red, &ramp.green, &ramp.blue})
        for (auto& value : *colour)
            value = static_cast<std::uint16_t>(std::lround(value * factor));
    return ramp;
}

/// Two monitors without a compositor, and the services to darken them.
struct GammaDesktop : testing::Test {
    explicit GammaDesktop(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56")
        : desktop(layout) {}

    void SetUp() override {
        if (!desktop.canGamma()) GTEST_SKIP() << "needs Xorg with the dummy driver";
        first = eye.gamma("DUMMY0");
        if (desktop.monitors().size() > 1) second = eye.gamma("DUMMY1");
    }

    std::unique_ptr<platform::Window> darkOf(Session& by, std::size_t screen, float alpha) {
        platform::WindowStyle style;
        style.frame = by.displays.screens()[screen].frame;
        style.alpha = alpha;
        style.background = platform::WindowColour::black;
        auto window = by.windows.create(style);
        window->makeKeyAndOrderFront();
        by.connection.sync();
        return window;
    }
    std::unique_ptr<platform::Window> dark(std::size_t screen, float alpha) {
        return darkOf(*session, screen, alpha);
    }

    /// What another program sets.
    void xrandr(const std::vector<std::string>& arguments) {
        ASSERT_EQ(desktop.spawn("xrandr", arguments)->wait(), 0);
    }
    /// The colours of a night, on the second monitor.
    GammaRamp setNightLight() {
        xrandr({"--output", "DUMMY1", "--gamma", "1:0.8:0.6"});
        return eye.gamma("DUMMY1");
    }

    bool waitForGamma(const std::string& output, const GammaRamp& wanted) {
        return session->loop.runUntil([&] { return eye.gamma(output) == wanted; });
    }

    /// A program that darkens every monitor to a quarter, until it is killed.
    std::unique_ptr<support::ChildProcess> startDarkener() {
        auto darkener = desktop.spawn(DARKENER, {GAMMA_GUARD, "0.75"});
        EXPECT_TRUE(darkener->waitForText("shown")) << darkener->errors();
        EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
        return darkener;
    }
    static pid_t guardOf(pid_t process) {
        const auto guards = support::childrenOf(process, "gamma-guard");
        EXPECT_EQ(guards.size(), 1u);
        return guards.empty() ? 0 : guards.front();
    }
    /// The desktop made this process the one that inherits orphans.
    static void expectItEnds(pid_t guard) {
        ASSERT_GT(guard, 0);
        int status = -1;
        ASSERT_EQ(waitpid(guard, &status, 0), guard);
        EXPECT_EQ(status, 0);
    }
    static void kill(support::ChildProcess& program) {
        program.signal(SIGKILL);
        ASSERT_EQ(program.wait(), -SIGKILL);
    }
    /// The program cannot see that its guard is gone.
    static void killBoth(support::ChildProcess& program) {
        const pid_t guard = guardOf(program.pid());
        program.signal(SIGSTOP);
        ASSERT_EQ(::kill(guard, SIGKILL), 0);
        kill(program);
        ASSERT_EQ(waitpid(guard, nullptr, 0), guard);
    }
    std::unique_ptr<Session> sessionInTheRuntimeFolder() {
        return std::make_unique<Session>(desktop.display(), GAMMA_GUARD, true,
                                         desktop.runtimeFolder());
    }
    std::vector<std::string> keptFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(desktop.runtimeFolder()))
            if (entry.path().filename().string().starts_with("gamma-"))
                names.push_back(entry.path());
        std::sort(names.begin(), names.end());
        return names;
    }
    std::size_t logged(const std::string& part) const {
        return static_cast<std::size_t>(
            std::ranges::count_if(session->log.lines, [&](const std::string& line) {
                return line.find(part) != std::string::npos;
            }));
    }

    support::PrivateDesktop desktop;
    support::Eye eye{desktop.display()};
    std::unique_ptr<Session> session = std::make_unique<Session>(desktop.display(), GAMMA_GUARD);
    GammaRamp first, second;
};

} // namespace x11tests
