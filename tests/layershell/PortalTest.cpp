#include "layershell/LayerShellSession.h"
#include "platform/layershell/portal/Shortcuts.h"

// A shortcut where the compositor binds none and the desktop's portal does.

namespace desktop {
namespace {

constexpr int f2 = 120, option = 0x80000;

class LayerShellPortal : public LayerShell {
  protected:
    void startWithPortal(const std::vector<std::string>& arguments = {}) {
        portal = compositor->spawn(SHORTCUT_PORTAL, arguments);
        ASSERT_TRUE(portal->waitForText("ready")) << portal->errors();
        start({.more = {{"customShortcut", shortcut(f2, option)}}});
    }
    void press(const std::string& id) const {
        const auto call = compositor->spawn(
            "busctl",
            {"--user", "call", "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
             "org.freedesktop.portal.GlobalShortcuts", "Press", "s", id});
        EXPECT_EQ(call->wait(), 0) << call->errors();
    }
    bool tells(const std::string& line) const {
        return waitUntil([&] { return told({"status"}).find(line) != std::string::npos; });
    }

    std::unique_ptr<support::ChildProcess> portal;
};

TEST_P(LayerShellPortal, BindsTheStoredShortcutWhichSwitches) {
    startWithPortal();
    EXPECT_TRUE(portal->waitForText("bind toggle ALT+F2\n")) << program->errors();
    EXPECT_TRUE(tells("can binding: yes (The desktop's portal")) << told({"status"});
    press("toggle");
    EXPECT_TRUE(brightSoon()) << program->errors();
    press("toggle");
    EXPECT_TRUE(darkSoon(2)) << program->errors();
    press("another");
    told({"status"});
    EXPECT_TRUE(isDark(2));
}

TEST_P(LayerShellPortal, IsAskedOnceForOneShortcutAndAgainForAnother) {
    startWithPortal();
    ASSERT_TRUE(portal->waitForText("bind toggle ALT+F2\n")) << program->errors();
    told({"settings", "set", "shortcut", "Ctrl+F2"});
    EXPECT_TRUE(portal->waitForText("bind toggle CTRL+F2\n")) << program->errors();
    EXPECT_TRUE(tells("can binding: yes"));
    press("toggle");
    EXPECT_TRUE(brightSoon()) << program->errors();
    std::size_t binds = 0;
    for (std::size_t at = 0; (at = portal->output().find("bind", at)) != std::string::npos; ++at)
        ++binds;
    EXPECT_EQ(binds, 2) << portal->output();
}

TEST_P(LayerShellPortal, ThatBindsNothingLeavesTheLineOfTheConfiguration) {
    startWithPortal({"none"});
    EXPECT_TRUE(program->waitForText("no program can have a shortcut")) << program->errors();
    EXPECT_TRUE(tells("can binding: no"));
}

INSTANTIATE_TEST_SUITE_P(On, LayerShellPortal, testing::Values("labwc"));

using platform::Shortcut;
using platform::layershell::portal::triggerOf;

TEST(PortalTrigger, IsWrittenAsThePortalWantsIt) {
    EXPECT_EQ(triggerOf({f2, Shortcut::option}), "ALT+F2");
    EXPECT_EQ(triggerOf({0, Shortcut::control | Shortcut::shift}), "CTRL+SHIFT+a");
    EXPECT_EQ(triggerOf({18, Shortcut::command}), "LOGO+1");
}

TEST(PortalTrigger, IsNoneForAKeyThatIsCalledOtherwiseElsewhere) {
    constexpr int space = 49;
    EXPECT_EQ(triggerOf({space, Shortcut::command}), "");
}

} // namespace
} // namespace desktop
