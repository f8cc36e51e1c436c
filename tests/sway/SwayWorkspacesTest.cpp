#include "platform/json/Parser.h"
#include "sway/SwaySession.h"

// The desktop switcher: the left and the right end of the desktop lead to the workspace beside the
// one that is shown there.

namespace desktop {
namespace {

struct SwayWorkspaces : Sway {
    /// Three of them with a window each on the second monitor, one of which is shown.
    void arrange(const std::string& atFirst) {
        for (const char* name : {"a", "b", "c"}) {
            sway->run("focus output HEADLESS-2");
            sway->run("workspace " + std::string(name));
            const std::size_t before = windows.size();
            windows.push_back(sway->spawn("foot", {"--app-id=window" + std::to_string(before)}));
            ASSERT_TRUE(waitUntil([&] {
                return sway->ask("get_tree").find("window" + std::to_string(before)) !=
                       std::string::npos;
            })) << windows.back()->errors();
        }
        sway->run("workspace " + atFirst);
    }
    std::string shown(const std::string& output) const {
        const platform::json::Parser parser;
        const auto answer = parser.parse(sway->ask("get_workspaces"));
        if (!answer) return {};
        for (const auto& one : std::get<platform::JsonValue::List>(answer->held))
            if (std::get<std::string>(one.member("output")->held) == output &&
                std::get<bool>(one.member("visible")->held))
                return std::get<std::string>(one.member("name")->held);
        return {};
    }
    bool shows(const std::string& name) const {
        return waitUntil([&] { return shown("HEADLESS-2") == name; });
    }
    void startSwitcher(bool active = true) {
        spawn({.product = "quenlow", .active = active});
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    }
    void pushRight() {
        hand->moveTo(3150, 500);
        hand->push(7, 0, 7, 125);
    }

    std::vector<std::unique_ptr<support::ChildProcess>> windows;
};

TEST_F(SwayWorkspaces, AreSwitchedOncePerPushWhereTheCursorIsAndEndAtTheLastOne) {
    arrange("b");
    startSwitcher();
    const std::string first = shown("HEADLESS-1");
    ASSERT_EQ(shown("HEADLESS-2"), "b");
    pushRight();
    EXPECT_TRUE(shows("c")) << shown("HEADLESS-2") << program->errors();
    hand->push(7, 0, 20, 125);
    hand->push(-20, 0, 3, 125);
    pushRight(); // there is none beyond
    hand->push(-20, 0, 3, 125);
    EXPECT_TRUE(shows("c"));
    // On the other monitor there is one workspace alone.
    hand->moveTo(49, 500);
    hand->push(-7, 0, 7, 125);
    EXPECT_EQ(shown("HEADLESS-1"), first);
}

TEST_F(SwayWorkspaces, AreNotSwitchedWhileTheProductIsSwitchedOff) {
    arrange("a");
    startSwitcher(false);
    pushRight();
    hand->moveTo(2500, 500);
    ASSERT_EQ(sway->spawn(programs() + "/quenlow", {"on"})->wait(), 0);
    pushRight();
    EXPECT_TRUE(shows("b")) << "and not one further";
}

} // namespace
} // namespace desktop
