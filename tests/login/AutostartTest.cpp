#include "login/AutostartStage.h"

namespace {

using namespace logintests;

TEST_F(Autostart, IsAValidEntryOfTheHelperAndIsGoneWhenSwitchedOff) {
    enable();
    expectValid(helperFile);
    EXPECT_EQ(parsed().string("Exec"), "/opt/example/bin/example-helper --product example");
    EXPECT_EQ(parsed().string("Name"), "Example");
    EXPECT_FALSE(parsed().isTrue("Hidden"));
    disable();
    EXPECT_FALSE(hasHelperEntry());
    disable();
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Autostart, StaysValidWithAnyCharacterInThePath) {
    for (const std::string name : {"with space", "100%", "$x", odd}) {
        itemsOf("/opt/" + name).setEnabled("org.example.appHelper", true);
        expectValid(helperFile);
        const auto command = platform::linux::execArguments(parsed().string("Exec"));
        ASSERT_TRUE(command && command->size() >= 3);
        EXPECT_EQ(command->end()[-3], "/opt/" + name + "/example-helper");
        items().insertLast("/opt/" + name);
        EXPECT_EQ(list().back(), "/opt/" + name);
    }
}

// gio is what GNOME, Cinnamon and others start entries with.
TEST_F(Autostart, IsRunByTheDesktopWithItsArgumentsWhereverItLies) {
    for (const std::string name : {"plain", "with space", "100%", odd}) {
        const std::string bin = folder.path(name);
        std::filesystem::create_directories(bin);
        folder.write(name + "/example-helper", "#!/bin/sh\nprintf '[%s]' \"$0\" \"$@\"\n");
        std::filesystem::permissions(bin + "/example-helper", std::filesystem::perms::owner_all);
        std::filesystem::create_symlink("example-helper", bin + "/app");
        itemsOf(bin).setEnabled("org.example.appHelper", true);
        support::ChildProcess desktop(
            {{"gio", "launch", folder.path(helperFile)},
             {{"PATH", std::getenv("PATH")}, {"HOME", folder.path()}, {"LANG", "C.UTF-8"}}});
        EXPECT_TRUE(desktop.waitForText("[" + bin + "/example-helper][--product][example]"))
            << desktop.output() << desktop.errors() << helperEntry();
        EXPECT_EQ(desktop.wait(), 0);
    }
}

TEST_F(Autostart, IsNoEntryAnyMoreWhereTheProductIsRemovedAndTheHelperIsThere) {
    const std::string bin = folder.path("bin");
    std::filesystem::create_directories(bin);
    std::filesystem::create_symlink("/bin/true", bin + "/example-helper");
    std::filesystem::create_symlink("/bin/true", bin + "/app");
    itemsOf(bin).setEnabled("org.example.appHelper", true);
    const auto launched = [&] {
        support::ChildProcess desktop(
            {{"gio", "launch", folder.path(helperFile)},
             {{"PATH", std::getenv("PATH")}, {"HOME", folder.path()}, {"LANG", "C.UTF-8"}}});
        return desktop.wait() == 0;
    };
    EXPECT_TRUE(launched());
    std::filesystem::remove(bin + "/app");
    EXPECT_FALSE(launched());
}

TEST_F(Autostart, SwitchedOffInTheDesktopsSettingsComesBackAsItWas) {
    for (const std::string desktop : {"xfce", "lxqt", "gnome", "mate"}) {
        enable();
        const std::string before = helperEntry();
        switchOffIn(desktop);
        ASSERT_NE(helperEntry(), before);
        enable();
        EXPECT_EQ(helperEntry(), before) << desktop;
        switchOffIn(desktop);
        disable();
        EXPECT_FALSE(hasHelperEntry()) << desktop;
    }
}

TEST_F(Autostart, FollowsTheProgramToItsNewPlaceAlsoAfterBeingSwitchedOff) {
    enable();
    switchOffIn("gnome");
    itemsOf("/usr/bin").setEnabled("org.example.appHelper", true);
    EXPECT_EQ(parsed().string("Exec"), "/usr/bin/example-helper --product example");
    EXPECT_TRUE(parsed().isTrue("X-GNOME-Autostart-enabled"));
}

TEST_F(Autostart, EditedByTheUserKeepsEveryLineThroughOffAndOn) {
    enable();
    edit("Exec=/opt", "Exec=nice /opt");
    edit("Terminal=", "# slow machine\nX-GNOME-Autostart-Delay=9\nTerminal=");
    const std::string edited = helperEntry();
    enable();
    EXPECT_EQ(helperEntry(), edited);
    disable();
    EXPECT_TRUE(parsed().isTrue("Hidden"));
    EXPECT_NE(helperEntry().find("# slow machine\n"), std::string::npos);
    expectValid(helperFile);
    enable();
    EXPECT_EQ(helperEntry(), edited);
}

TEST_F(Autostart, EditedAndSwitchedOffInTheDesktopsSettingsIsOnlySwitchedOn) {
    for (const std::string desktop : {"xfce", "gnome", "mate"}) {
        enable();
        edit("Exec=/opt", "Exec=nice /opt");
        switchOffIn(desktop);
        enable();
        EXPECT_EQ(parsed().string("Exec"),
                  "nice /opt/example/bin/example-helper --product example");
        EXPECT_FALSE(parsed().isTrue("Hidden") || parsed().isFalse("X-GNOME-Autostart-enabled") ||
                     parsed().isFalse("X-MATE-Autostart-enabled"))
            << helperEntry();
        std::filesystem::remove(folder.path(helperFile));
    }
}

TEST_F(Autostart, RewrittenInAnotherOrderIsStillItsOwn) {
    enable();
    std::string group;
    auto lines = parsed().lines();
    std::ranges::sort(lines);
    for (const auto& line : lines)
        group += line + "\n";
    folder.write(helperFile, "[Desktop Entry]\n" + group);
    disable();
    EXPECT_FALSE(hasHelperEntry());
}

TEST_F(Autostart, ADamagedFileIsKeptAsideAndReplaced) {
    std::filesystem::create_directories(folder.path("autostart"));
    folder.write(helperFile, "junk");
    disable();
    EXPECT_EQ(helperEntry(), "junk");
    enable();
    expectValid(helperFile);
    EXPECT_EQ(folder.read(std::string(helperFile) + ".damaged"), "junk");
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(Autostart, ALinkToTheUsersOwnPlaceStaysALink) {
    enable();
    edit("Name=Example", "Name=Mine");
    std::filesystem::rename(folder.path(helperFile), folder.path("kept.desktop"));
    std::filesystem::create_symlink(folder.path("kept.desktop"), folder.path(helperFile));
    disable();
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path(helperFile)));
    EXPECT_NE(folder.read("kept.desktop").find("Hidden=true"), std::string::npos);
}

TEST_F(Autostart, WhatCannotBeWrittenIsLoggedAndLeftAlone) {
    folder.write("autostart", "a file in the place of the folder");
    enable();
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_NE(log.lines[0].find("org.example.appHelper.desktop"), std::string::npos);
    EXPECT_EQ(folder.read("autostart"), "a file in the place of the folder");
}

TEST_F(Autostart, OfTheProductAreToldWithWhatTheyStart) {
    const std::string bin = folder.path("100%");
    std::filesystem::create_directories(bin);
    folder.write("100%/example-helper", "");
    std::filesystem::permissions(bin + "/example-helper", std::filesystem::perms::owner_all);
    itemsOf(bin).setEnabled("org.example.appHelper", true);
    items().insertLast("/gone/app");
    folder.write("autostart/org.other.app.desktop", "[Desktop Entry]\nExec=/gone/other\n");

    auto found = items().entries();
    ASSERT_EQ(found.size(), 2U) << "another's is none";
    EXPECT_EQ(found[0].path, folder.path("autostart/org.example.app.desktop"));
    EXPECT_EQ(found[0].command, (std::vector<std::string>{"/gone/app", "--early"}));
    EXPECT_FALSE(found[0].isThere || found[0].isOff || found[0].isEdited);
    EXPECT_EQ(found[1].command,
              (std::vector<std::string>{bin + "/example-helper", "--product", "example"}));
    EXPECT_TRUE(found[1].isThere);

    switchOffIn("gnome");
    EXPECT_TRUE(items().entries()[1].isOff);
    EXPECT_FALSE(items().entries()[1].isEdited) << "only switched off";
    edit("Name=", "Mine=1\nName=");
    EXPECT_TRUE(items().entries()[1].isEdited);
    folder.write(helperFile, "");
    EXPECT_EQ(items().entries()[1].command, std::vector<std::string>{}) << "an empty file";
}

TEST_F(Autostart, WithoutAHomeThereIsNoSessionList) {
    AutostartItems homeless(
        {}, {.identifier = "a", .name = "A", .comment = "", .icon = "", .helper = {"/a"}}, log);
    EXPECT_FALSE(homeless.hasSessionList());
    homeless.setEnabled("aHelper", true);
    EXPECT_EQ(log.lines.size(), 1u);
    homeless.setEnabled("aHelper", false);
    EXPECT_TRUE(homeless.sessionList().empty());
    EXPECT_EQ(log.lines.size(), 1u);
}

} // namespace
