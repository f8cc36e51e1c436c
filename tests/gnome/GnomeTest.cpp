#include "gnome/GnomeSession.h"

namespace desktop {
namespace {

using Place = PrivateShell::Place;

TEST_F(Gnome, HoldsTheCursorAtTheEdgeAtEverySpeed) {
    start();
    for (const auto& [step, rate] : {std::pair{24, 125}, {3, 1000}, {30, 1000}, {4000, 125}}) {
        hand->push(step, 0, 60, rate);
        EXPECT_EQ(shell->cursor(), (Place{1279, 300})) << step << " px at " << rate << " Hz";
        hand->push(-step, 0, 5, rate);
    }
}

TEST_F(Gnome, HoldsItWhileAButtonIsHeldToo) {
    start();
    hand->button(BTN_LEFT, true);
    hand->push(20, 0, 100, mouseRate);
    EXPECT_EQ(shell->cursor(), (Place{1279, 300}));
    hand->button(BTN_LEFT, false);
}

TEST_F(Gnome, APushAcrossTheEdgeTakesTheHoldAlong) {
    start({.pushOption = true, .velocity = 50});
    constexpr int slowRate = 125;
    shell->moveTo(1270, 300);
    hand->push(1, 0, 200, slowRate);
    EXPECT_EQ(shell->cursor().x, 1279) << "a slow one";
    hand->push(300, 0, 40, mouseRate);
    ASSERT_TRUE(waitUntil([&] { return veils() == firstIsDark; })) << program->errors();
    EXPECT_GE(shell->cursor().x, 1280);
    shell->moveTo(1290, 300);
    hand->push(-1, 0, 200, slowRate);
    EXPECT_EQ(shell->cursor().x, 1280) << "and there it is held";
}

// After a property or the icon's title a host may ask for all there is, and a crossing would wait.
TEST_F(Gnome, ACrossingHasTheShellAskForNothing) {
    start({.pushOption = true});
    ASSERT_TRUE(waitUntil([&] {
        return shell->isTrue("Main.panel.statusArea.quickSettings.menu._grid.get_children()"
                             ".some(c => (c.title ?? c.label) === 'Palisor' && c.checked)");
    }));
    const auto monitor =
        shell->spawn({"dbus-monitor", "--session", "type='method_call',member='GetAll'",
                      "type='signal',member='Crossed'"});
    ASSERT_TRUE(monitor->waitForText("NameAcquired"));
    const auto crossings = [&] {
        const std::string told = monitor->output(), crossed = "member=Crossed";
        int count = 0;
        for (auto at = told.find(crossed); at != std::string::npos; at = told.find(crossed, at + 1))
            ++count;
        return count;
    };
    // What the first one has the shell ask comes before the second.
    for (const int way : {1, -1}) {
        const int before = crossings();
        shell->moveTo(way > 0 ? 1270 : 1290, 300);
        hand->push(300 * way, 0, 40, mouseRate);
        ASSERT_TRUE(waitUntil([&] { return crossings() == before + 1; })) << program->errors();
        ASSERT_TRUE(waitUntil([&] { return veils() == (way > 0 ? firstIsDark : otherIsDark); }));
    }
    EXPECT_EQ(monitor->output().find("member=GetAll"), std::string::npos) << monitor->output();
}

TEST_F(Gnome, FreesEverythingWhenTheProgramIsKilled) {
    start();
    program->signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }, std::chrono::milliseconds(500)));
    hand->push(20, 0, 100, mouseRate);
    EXPECT_GE(shell->cursor().x, 1280);
}

TEST_F(Gnome, FreesEverythingWhileTheProgramHangsAndHoldsAgainAfterwards) {
    start();
    {
        const support::Stopped hung(program->pid());
        EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }, std::chrono::seconds(2)));
        hand->push(20, 0, 100, mouseRate);
        EXPECT_GE(shell->cursor().x, 1280);
    }
    ASSERT_TRUE(waitUntil([&] { return veils() == otherIsDark; }));
    EXPECT_TRUE(waitUntil([&] { return shell->cursor().x < 1280; }));
}

TEST_F(Gnome, HoldsOnWhileItIsTheBusThatIsLate) {
    // Patience in the shell is a fifth of what it is, and so is what this test sits out.
    shell->run("(() => { const {GLib} = imports.gi, {timeout_add: real} = GLib;"
               "GLib.timeout_add = (priority, time, ...rest) =>"
               "  real(priority, time >= 500 ? time / 5 : time, ...rest); })()");
    start();
    shell->run(std::string(covers) + "[0].isStillTheFirst = true");
    {
        const support::Stopped late(shell->busPid());
        // Nothing can be told meanwhile: longer than a program may be silent.
        (void)waitUntil([] { return false; }, std::chrono::milliseconds(600));
    }
    hand->push(20, 0, 100, mouseRate);
    EXPECT_EQ(shell->cursor().x, 1279);
    EXPECT_TRUE(shell->isTrue(std::string(covers) + "[0].isStillTheFirst")) << "nothing was freed";
}

TEST_F(Gnome, HoldsInAShellThatHasMuchToDoWhenTheProgramStarts) {
    shell->run(
        "(() => { const {Gio, GLib} = imports.gi, {call: real} = Gio.DBusConnection.prototype;"
        "const later = time => new Promise(done => GLib.timeout_add(0, time, () => {"
        "  done(); return false; }));"
        "Gio.DBusConnection.prototype.call = function (...all) {"
        "  return all[3] === 'GetConnectionUnixProcessID'"
        "    ? later(1200).then(() => real.apply(this, all)) : real.apply(this, all); };"
        "})()");
    start();
    hand->push(20, 0, 100, mouseRate);
    EXPECT_EQ(shell->cursor().x, 1279);
}

TEST_F(Gnome, TheShellsOwnShortcutFreesEverything) {
    start();
    hand->chord({KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA, KEY_ESC});
    EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }));
    hand->push(20, 0, 100, mouseRate);
    EXPECT_GE(shell->cursor().x, 1280);
}

TEST_F(Gnome, TheShellsOwnShortcutFreesEverythingWhereItsKeysLetTheCursorGoAlready) {
    start({.more = {{"CTRLALTCMD", flag(true)}}});
    const unsigned keys[] = {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA};
    for (const unsigned key : keys)
        hand->key(key, true);
    ASSERT_TRUE(waitUntil([&] { return veils() == noneIsDark; }));
    hand->key(KEY_ESC, true);
    hand->key(KEY_ESC, false);
    for (const unsigned key : keys)
        hand->key(key, false);
    EXPECT_TRUE(
        waitUntil([&] { return command({"status"}).find("active yes") != std::string::npos; }));
    EXPECT_EQ(veils(), noneIsDark);
    hand->push(20, 0, 100, mouseRate);
    EXPECT_GE(shell->cursor().x, 1280);
    ASSERT_TRUE(waitUntil([&] {
        return shell->isTrue(std::string("[...Main.extensionManager.lookup('") + uuid +
                             "').stateObj._service._clients.values()].every(c => !c._deaf)");
    }));
    command({"off"});
    command({"on"});
    EXPECT_TRUE(waitUntil([&] { return veils() != noneIsDark; })) << "a moment later it is heard";
}

TEST_F(Gnome, TheShortcutSwitchesTheProduct) {
    start();
    hand->chord({KEY_LEFTCTRL, KEY_LEFTMETA, KEY_K});
    EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }));
    hand->chord({KEY_LEFTCTRL, KEY_LEFTMETA, KEY_K});
    EXPECT_TRUE(waitUntil([&] { return veils() == otherIsDark; }));
}

TEST_F(Gnome, HoldingTheThreeModifiersOfEitherSideLetsTheCursorGo) {
    start({.more = {{"CTRLALTCMD", flag(true)}}});
    for (const auto& keys : {std::vector<unsigned>{KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA},
                             {KEY_RIGHTCTRL, KEY_LEFTALT, KEY_RIGHTMETA}}) {
        for (const unsigned key : keys)
            hand->key(key, true);
        EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }));
        for (const unsigned key : keys)
            hand->key(key, false);
        EXPECT_TRUE(waitUntil([&] { return veils() == otherIsDark; }));
    }
}

TEST_F(Gnome, LockingTheScreenFreesEverythingAndUnlockingHoldsAgain) {
    start();
    shell->run("Main.sessionMode.pushMode('unlock-dialog')");
    EXPECT_TRUE(waitUntil([&] { return veils() == noneIsDark; }, std::chrono::milliseconds(500)));
    shell->run("Main.sessionMode.popMode('unlock-dialog')");
    EXPECT_TRUE(waitUntil([&] { return veils() == otherIsDark; })) << program->errors();
}

TEST_F(Gnome, SaysWhatMendsItWhereTheExtensionIsOff) {
    shell->run(std::string("Main.extensionManager.disableExtension('") + uuid + "')");
    ASSERT_TRUE(waitUntil([&] { return extensionIs(2); }));
    start({.active = false});
    EXPECT_TRUE(waitUntil([&] {
        return command({"status"}).find("Run \"palisor setup gnome\": the extension") !=
               std::string::npos;
    })) << command({"status"});
    const std::string report = command({"doctor"});
    EXPECT_NE(report.find("switched off"), std::string::npos) << report;
    EXPECT_NE(report.find("palisor setup gnome"), std::string::npos) << report;
    command({"setup", "gnome"});
    EXPECT_TRUE(waitUntil([&] {
        return command({"status"}).find("can hold: yes") != std::string::npos;
    })) << command({"status"});
}

TEST_F(Gnome, TheQuickSettingsHaveASwitchWithTheMenuAndItsSlider) {
    start();
    const std::string item = "(() => { const q = Main.panel.statusArea.quickSettings.menu;"
                             "const t = q._grid.get_children().find(c => (c.title ?? c.label) === "
                             "'Palisor' && c.menu); ";
    const auto of = [&](const std::string& script) { return shell->run(item + script + "})()"); };
    ASSERT_TRUE(waitUntil([&] { return of("return t?.checked ?? false;") == "true"; }));
    of("q.open(false); t.menu.open(false);");
    const std::string sliders = "const found = []; const look = a => { if "
                                "(a.constructor.name.endsWith('Slider')) found.push(a);"
                                "a.get_children().forEach(look); }; look(t.menu.actor); ";
    EXPECT_TRUE(waitUntil([&] { return of(sliders + "return found.length > 0;") == "true"; }));
    of(sliders + "found[0].value = 0;");
    EXPECT_TRUE(waitUntil([&] { return veils() != otherIsDark; })) << "the slider darkens";
    of("t.emit('clicked', 1);");
    EXPECT_TRUE(waitUntil([&] { return of("return t.checked;") == "false"; }));
}

TEST_F(Gnome, TheMenuThatIsAskedForOpensInTheQuickSettings) {
    start();
    const std::string menu = "Main.panel.statusArea.quickSettings.menu";
    EXPECT_TRUE(
        waitUntil([&] { return command({"status"}).find("can tray: yes") != std::string::npos; }));
    EXPECT_EQ(command({"menu"}), "");
    EXPECT_TRUE(waitUntil([&] {
        return shell->isTrue(menu + ".isOpen && " + menu +
                             "._grid.get_children().some(c => (c.title ?? c.label) === 'Palisor' "
                             "&& c.menu?.isOpen)");
    }));
}

TEST_F(Gnome, AnotherProcessIsRefused) {
    start();
    bus::Error error;
    EXPECT_LT(sd_bus_call_method(shell->bus(), "com.tamberlo.Shell", "/com/tamberlo/Shell",
                                 "com.tamberlo.Shell1", "Release", error.get(), nullptr, ""),
              0);
    EXPECT_TRUE(error.is("com.tamberlo.Shell1.Error.NotJoined")) << error.name();
    bus::Error second;
    EXPECT_LT(sd_bus_call_method(shell->bus(), "com.tamberlo.Shell", "/com/tamberlo/Shell",
                                 "com.tamberlo.Shell1", "Join", second.get(), nullptr, "s",
                                 "com.tamberlo.palisor"),
              0);
    EXPECT_TRUE(second.is("com.tamberlo.Shell1.Error.NotAProgram")) << second.name();
}

TEST_F(Gnome, TheCursorHiderHidesTheCursorAndShowsItOnMotion) {
    start({.product = "vellumor", .more = {{"TIME_MODE", flag(true)}, {"SCHEDULE", number(1)}}});
    const std::string isSeen = std::string(support::cursorTracker) + ".get_pointer_visible()";
    hand->push(1, 0, 5, mouseRate);
    EXPECT_TRUE(waitUntil([&] { return !shell->isTrue(isSeen); })) << program->errors();
    hand->push(1, 0, 5, mouseRate);
    EXPECT_TRUE(waitUntil([&] { return shell->isTrue(isSeen); })) << program->errors();
}

TEST_F(Gnome, TheCrossHairFollowsTheCursor) {
    start({.product = "crosshair"});
    shell->moveTo(300, 200);
    hand->relative(10, 20);
    EXPECT_TRUE(waitUntil([&] {
        const std::string lines = veils();
        return lines.find("[0,219,1280,2,128]") != std::string::npos &&
               lines.find("[309,0,2,720,128]") != std::string::npos;
    })) << veils();
}

} // namespace
} // namespace desktop

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Who asks for their names has them written to a file beside the program.
    if (!GTEST_FLAG_GET(list_tests)) support::becomeAUser();
    return RUN_ALL_TESTS();
}
