#include "testing/TempFolder.h"
#include "testing/desktop/Product.h"

#include <algorithm>
#include <gtest/gtest.h>

// Sessions that the program cannot work in. It says so in one line and ends.

namespace desktop {
namespace {

using support::ChildProcess;
using support::Environment;

struct WaylandSession {
    WaylandSession() {
        compositor = std::make_unique<ChildProcess>(ChildProcess::Start{
            .command = {"weston", "--backend=headless-backend.so", "--socket=wayland-test",
                        "--idle-time=0", "--no-config"},
            .environment = environment});
        if (!waitUntil([&] { return std::filesystem::exists(folder.path("wayland-test")); }))
            throw std::runtime_error("no Wayland session: " + compositor->errors());
        environment["WAYLAND_DISPLAY"] = "wayland-test";
    }

    /// The display that Xwayland shows X clients on.
    std::string startXwayland() {
        server =
            support::startServer({"Xwayland", "-displayfd", "3", "-nolisten", "tcp"}, environment);
        return ":" + server.line;
    }

    testing_support::TempFolder folder;
    Environment environment{{"PATH", std::getenv("PATH")},
                            {"HOME", folder.path()},
                            {"XDG_RUNTIME_DIR", folder.path()},
                            {"XDG_CONFIG_HOME", folder.path()}};
    std::unique_ptr<ChildProcess> compositor;
    support::Announced server;
};

/// What the program says as it ends with status 1.
std::string refusal(const Environment& environment) {
    ChildProcess program({.command = {programs() + "/palisor"}, .environment = environment});
    EXPECT_EQ(program.wait(), 1);
    const std::string said = program.errors();
    EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
    return said;
}

TEST(Refusal, OnXwaylandItSaysWhatToLogInTo) {
    WaylandSession session;
    session.environment["DISPLAY"] = session.startXwayland();
    const std::string said = refusal(session.environment);
    EXPECT_NE(said.find("this is Xwayland"), said.npos) << said;
    EXPECT_NE(said.find("log in to an X11 session"), said.npos) << said;
}

TEST(Refusal, OnWaylandWithoutAnXDisplayItSaysWhatToLogInTo) {
    const WaylandSession session;
    const std::string said = refusal(session.environment);
    EXPECT_NE(said.find("this is a Wayland session"), said.npos) << said;
    EXPECT_NE(said.find("log in to an X11 session"), said.npos) << said;
}

TEST(Refusal, WithoutADisplayItSaysWhatToSet) {
    const testing_support::TempFolder folder;
    const std::string said = refusal({{"PATH", std::getenv("PATH")}, {"HOME", folder.path()}});
    EXPECT_NE(said.find("DISPLAY"), said.npos) << said;
}

} // namespace
} // namespace desktop
