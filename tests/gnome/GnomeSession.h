#pragma once

#include "testing/desktop/Product.h"
#include "testing/gnome/PrivateShell.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

// The program itself in a private GNOME Shell, with the shell's remote desktop for input and the
// shell's own word for evidence.

namespace desktop {

using support::PrivateShell;
using support::ShellHand;

constexpr const char* uuid = "palisor@tamberlo.com";

class Gnome : public testing::Test {
  protected:
    void SetUp() override {
        if (const auto reason = PrivateShell::missing()) GTEST_SKIP() << *reason;
        begin();
    }
    /// Starts the shell with the extension in it.
    void begin(PrivateShell::Options options = {}) {
        options.before.push_back({programs() + "/palisor", "setup", "gnome"});
        shell.emplace(options);
        hand.emplace(*shell);
        ASSERT_TRUE(waitUntil([&] { return extensionIs(1); })) << shell->log();
        // From 50 on there is no cursor before the first motion.
        hand->relative(1, 0);
        shell->moveTo(640, 300);
    }
    void TearDown() override {
        program.reset();
        if (shell) {
            EXPECT_EQ(shell->log().find("JS ERROR"), std::string::npos) << shell->log();
            EXPECT_EQ(shell->log().find(std::string(uuid) + "/"), std::string::npos)
                << shell->log();
        }
    }

    /// The shell's number for it: 1 on, 2 off.
    bool extensionIs(int state) const {
        return shell->run(std::string("Main.extensionManager.lookup('") + uuid +
                          "')?.state ?? 0") == std::to_string(state);
    }

    /// Returns when everything is in place: a barrier that is on has darkened the other monitors.
    void start(const Setting& setting = {}) {
        launch(setting);
        if (setting.active && setting.product == "palisor") {
            ASSERT_TRUE(waitUntil([&] { return othersAreDark(); })) << program->errors();
        }
    }
    /// Returns when the program has started, and may still be at work.
    void launch(const Setting& setting) {
        Entries entries = setting.more;
        entries.insert({{"ATTIVO", flag(setting.active)},
                        {"VELOCITY_OPTION", flag(setting.pushOption)},
                        {"VELOCITY", number(setting.velocity)},
                        {"OTHERS_DARK", number(setting.othersDark)}});
        entries.merge(pastTheFirstStart());
        std::ofstream(shell->configFolder() + "/com.tamberlo." + setting.product + ".plist")
            << propertyList(entries);
        std::vector<std::string> line{programs() + "/" + setting.product, "--verbose"};
        if (!setting.hold) line.insert(line.end(), {"--hold", "off"});
        program = shell->spawn(line);
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    }

    /// All monitors but one are covered.
    bool othersAreDark() const {
        return shell->isTrue(std::string(covers) +
                             ".length === Main.layoutManager.monitors.length - 1");
    }

    std::string command(const std::vector<std::string>& words) const {
        std::vector<std::string> line{programs() + "/palisor"};
        line.insert(line.end(), words.begin(), words.end());
        const auto process = shell->spawn(line);
        process->wait();
        return process->output() + process->errors();
    }

    bool hasSwitch(const std::string& title) const {
        return shell->isTrue("Main.panel.statusArea.quickSettings.menu._grid.get_children()"
                             ".some(c => (c.title ?? c.label) === '" +
                             title + "')");
    }

    /// The areas that are covered above everything, and how opaque each is, of 255.
    std::string veils() const {
        return shell->run(std::string(covers) +
                          ".map(a => [a.x, a.y, a.width, a.height, a.opacity])");
    }
    static constexpr const char* covers =
        "Main.layoutManager.uiGroup.get_children()"
        ".filter(a => a.style?.startsWith('background-color: #'))";
    static constexpr const char* otherIsDark = "[[1280,0,1280,720,191]]";
    static constexpr const char* firstIsDark = "[[0,0,1280,720,191]]";
    static constexpr const char* noneIsDark = "[]";

    std::optional<PrivateShell> shell;
    std::optional<ShellHand> hand;
    std::unique_ptr<support::ChildProcess> program;
};

} // namespace desktop
