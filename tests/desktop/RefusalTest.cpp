#include "testing/TempFolder.h"
#include "testing/WaylandSession.h"
#include "testing/desktop/Product.h"

#include <algorithm>
#include <gtest/gtest.h>

// Sessions that the program cannot work in. It says so in one line and ends.

namespace desktop {
namespace {

using support::ChildProcess;
using support::Environment;
using support::WaylandSession;

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
