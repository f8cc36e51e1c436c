#include "platform/linux/login/AutostartItems.h"
#include "testing/Child.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using platform::linux::AutostartItems;
using testing_support::KeptLog;
using testing_support::TempFolder;
using Paths = std::vector<std::optional<std::string>>;

constexpr const char* helperFile = "autostart/org.example.appHelper.desktop";
constexpr const char* odd = "odd \"dir\" $HOME \\back 100% `tick` 'q' & ; *?#()~|<> \xc3\xbc";

struct Autostart : testing::Test {
    AutostartItems itemsOf(const std::string& bin) {
        return {folder.path("autostart"),
                {.identifier = "org.example.app",
                 .name = "Example",
                 .comment = "Start at Login",
                 .icon = bin + "/icon.svg",
                 .helper = {bin + "/example-helper", "--product", "example"},
                 .options = {"--early"},
                 .program = bin + "/app",
                 .helperName = "Example (helper)"},
                log};
    }
    AutostartItems items() { return itemsOf("/opt/example/bin"); }

    void enable() { items().setEnabled("org.example.appHelper", true); }
    void disable() { items().setEnabled("org.example.appHelper", false); }

    std::string helperEntry() const { return folder.read(helperFile); }
    bool hasHelperEntry() const { return std::filesystem::exists(folder.path(helperFile)); }
    platform::linux::DesktopEntry parsed() const {
        return platform::linux::DesktopEntry(helperEntry());
    }

    void edit(const std::string& what, const std::string& by) {
        std::string text = helperEntry();
        const auto at = text.find(what);
        ASSERT_NE(at, std::string::npos) << what;
        folder.write(helperFile, text.replace(at, what.size(), by));
    }

    /// What a desktop's settings do to switch an entry off.
    void switchOffIn(const std::string& desktop) {
        if (desktop == "xfce" || desktop == "lxqt")
            edit("Terminal=", "Hidden=true\nTerminal=");
        else if (desktop == "gnome")
            edit("X-GNOME-Autostart-enabled=true", "X-GNOME-Autostart-enabled=false");
        else
            edit("Terminal=", "X-MATE-Autostart-enabled=false\nTerminal=");
    }

    Paths list() {
        Paths paths;
        for (const auto& item : items().sessionList())
            paths.push_back(item.path);
        return paths;
    }

    void expectValid(const std::string& file) const {
        support::ChildProcess validator(
            {{"desktop-file-validate", folder.path(file)}, {{"PATH", std::getenv("PATH")}}});
        EXPECT_EQ(validator.wait(), 0) << folder.read(file);
        EXPECT_EQ(validator.output() + validator.errors(), "");
    }

    TempFolder folder;
    KeptLog log;
};

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
        itemsOf(bin).setEnabled("org.example.appHelper", true);
        support::ChildProcess desktop(
            {{"gio", "launch", folder.path(helperFile)},
             {{"PATH", std::getenv("PATH")}, {"HOME", folder.path()}, {"LANG", "C.UTF-8"}}});
        EXPECT_TRUE(desktop.waitForText("[" + bin + "/example-helper][--product][example]"))
            << desktop.output() << desktop.errors() << helperEntry();
        EXPECT_EQ(desktop.wait(), 0);
    }
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

TEST_F(Autostart, EveryInsertionIsAnItemOfItsOwn) {
    items().insertLast("/opt/example/bin/app");
    items().insertLast("/opt/example/bin/app");
    items().insertLast("/opt/with space/app");
    EXPECT_EQ(list(),
              (Paths{"/opt/example/bin/app", "/opt/example/bin/app", "/opt/with space/app"}));
    for (const char* name : {"org.example.app", "org.example.app-2", "org.example.app-3"})
        expectValid("autostart/" + std::string(name) + ".desktop");
}

TEST_F(Autostart, ListsTheItemsOfOthersAndOneThatResolvesToNothing) {
    std::filesystem::create_directories(folder.path("autostart"));
    const auto write = [this](const std::string& name, const std::string& lines) {
        folder.write("autostart/" + name + ".desktop",
                     "[Desktop Entry]\nType=Application\nName=x\n" + lines);
    };
    write("a", "Exec=sh -c true\n");
    write("b", "Exec=no-such-command-anywhere\n");
    write("c", "Exec=\"open quote\n");
    write("d", "Exec=/opt/off\nHidden=true\n");
    write("e", "Exec=/opt/off\nX-GNOME-Autostart-enabled=false\n");
    write("f", "Exec=\"/opt/a b/c\" %U\n");
    folder.write("autostart/notes.txt", "Exec=/opt/no\n");
    std::filesystem::create_symlink("/dev/null", folder.path("autostart/g.desktop"));
    enable();
    const auto paths = list();
    ASSERT_EQ(paths.size(), 4u);
    ASSERT_TRUE(paths[0]);
    EXPECT_TRUE(paths[0]->ends_with("/sh")) << *paths[0];
    EXPECT_EQ(paths[1], std::nullopt);
    EXPECT_EQ(paths[2], std::nullopt);
    EXPECT_EQ(paths[3], "/opt/a b/c");
}

TEST_F(Autostart, RemovesEachDuplicateAndNothingElse) {
    AutostartItems all = items();
    enable();
    all.insertLast("/opt/example/bin/app");
    all.insertLast("/opt/example/bin/app");
    all.insertLast("/opt/other");
    for (const auto& item : all.sessionList())
        if (item.path && item.path->starts_with("/opt/example/bin/app")) all.remove(item);
    EXPECT_EQ(list(), (Paths{"/opt/other"}));
    EXPECT_TRUE(hasHelperEntry());
    all.remove({77, "/opt/other"});
    all.remove({0, "/opt/other"});
    EXPECT_EQ(list().size(), 1u);
}

TEST_F(Autostart, AnItemOfTheListIsToldThatTheSessionStartsIt) {
    items().insertLast("/opt/with space/app");
    const platform::linux::DesktopEntry entry(folder.read("autostart/org.example.app.desktop"));
    EXPECT_EQ(entry.string("Exec"), "\"/opt/with space/app\" --early");
    EXPECT_EQ(list(), (Paths{"/opt/with space/app"}));
}

TEST_F(Autostart, AnItemOfAnEarlierVersionIsGivenTheOptionsOfToday) {
    AutostartItems earlier(
        folder.path("autostart"),
        {.identifier = "org.example.app", .name = "A", .comment = "", .icon = "", .helper = {"/h"}},
        log);
    for (const char* path : {"/opt/with space/app", "/opt/app", "/opt/edited"})
        earlier.insertLast(path);
    const auto entryOf = [this](const char* file) {
        return platform::linux::DesktopEntry(
            folder.read("autostart/" + std::string(file) + ".desktop"));
    };
    auto off = entryOf("org.example.app-2");
    off.setRaw("Hidden", "true");
    folder.write("autostart/org.example.app-2.desktop", off.text());
    auto edited = entryOf("org.example.app-3");
    edited.setRaw("X-Mine", "1");
    folder.write("autostart/org.example.app-3.desktop", edited.text());
    enable();
    const std::string helper = helperEntry();

    items().bringUpToDate();
    EXPECT_EQ(entryOf("org.example.app").string("Exec"), "\"/opt/with space/app\" --early");
    EXPECT_EQ(entryOf("org.example.app-2").string("Exec"), "/opt/app --early");
    EXPECT_TRUE(entryOf("org.example.app-2").isTrue("Hidden")) << "switched off it stays";
    EXPECT_EQ(entryOf("org.example.app-3").text(), edited.text()) << "the user's";
    EXPECT_EQ(helperEntry(), helper);
    // And it is its own still.
    AutostartItems all = items();
    all.remove(all.sessionList().front());
    EXPECT_FALSE(std::filesystem::exists(folder.path("autostart/org.example.app.desktop")));
}

TEST_F(Autostart, OfAProgramThatHasMovedIsMendedUnlessTheUserHasEditedIt) {
    const std::string old = folder.path("old"), now = folder.path("new");
    for (const char* file : {"old/example-helper", "old/app"}) {
        std::filesystem::create_directories(folder.path("old"));
        folder.write(file, "#!/bin/sh\n");
        std::filesystem::permissions(folder.path(file), std::filesystem::perms::owner_all);
    }
    AutostartItems before = itemsOf(old);
    for (int times = 0; times < 3; ++times)
        before.insertLast(old + "/app");
    before.setEnabled("org.example.appHelper", true);
    const auto change = [this](const char* name, const char* key, const char* value) {
        const std::string file = "autostart/org.example.app" + std::string(name) + ".desktop";
        platform::linux::DesktopEntry entry(folder.read(file));
        entry.setRaw(key, value);
        folder.write(file, entry.text());
        return entry.text();
    };
    change("-2", "Hidden", "true");
    const std::string edited = change("-3", "X-Mine", "1");
    const std::string helper = helperEntry();

    itemsOf(now).bringUpToDate();
    EXPECT_EQ(helperEntry(), helper) << "it is still where it was";

    std::filesystem::rename(old, now);
    itemsOf(now).bringUpToDate();
    EXPECT_EQ(parsed().string("Exec"), now + "/example-helper --product example");
    EXPECT_EQ(parsed().string("Icon"), now + "/icon.svg");
    const auto item = [this](const char* name) {
        return platform::linux::DesktopEntry(
            folder.read("autostart/org.example.app" + std::string(name) + ".desktop"));
    };
    EXPECT_EQ(item("").string("Exec"), now + "/app --early");
    EXPECT_EQ(item("-2").string("Exec"), now + "/app --early");
    EXPECT_TRUE(item("-2").isTrue("Hidden")) << "switched off it stays";
    EXPECT_EQ(item("-3").text(), edited);
    expectValid(helperFile);
    // And they are its own still.
    itemsOf(now).setEnabled("org.example.appHelper", false);
    EXPECT_FALSE(hasHelperEntry());
}

TEST_F(Autostart, ShowsOneEntryWhereThereIsAnItemOfTheListBesideTheHelper) {
    const auto expectShown = [this](bool shown) {
        EXPECT_NE(parsed().isTrue("NoDisplay"), shown);
        EXPECT_EQ(parsed().string("Name"), shown ? "Example" : "Example (helper)");
        expectValid(helperFile);
    };
    enable();
    expectShown(true);
    items().insertLast("/opt/example/bin/app");
    items().bringUpToDate(); // as an earlier version has left it
    expectShown(false);
    disable();
    EXPECT_FALSE(hasHelperEntry());
    enable();
    expectShown(false);
    const platform::linux::DesktopEntry item(folder.read("autostart/org.example.app.desktop"));
    EXPECT_EQ(item.string("Name"), "Example");
    EXPECT_FALSE(item.isTrue("NoDisplay"));
}

TEST_F(Autostart, IsSwitchedOffAsAWholeByTheEntryThatIsShown) {
    EXPECT_FALSE(items().isSwitchedOff()) << "a product without one";
    items().insertLast("/opt/app");
    EXPECT_FALSE(items().isSwitchedOff());
    const std::string file = "autostart/org.example.app.desktop";
    for (const char* line : {"Hidden=true\n", "X-MATE-Autostart-enabled=false\n"}) {
        const std::string text = folder.read(file);
        folder.write(file, text + line);
        EXPECT_TRUE(items().isSwitchedOff()) << line;
        items().insertLast("/opt/other/app");
        EXPECT_FALSE(items().isSwitchedOff()) << "one of them is on";
        std::filesystem::remove(folder.path("autostart/org.example.app-2.desktop"));
        folder.write(file, text);
    }
}

TEST_F(Autostart, AnItemThatTheUserWroteIsHiddenInsteadOfDeleted) {
    AutostartItems all = items();
    std::filesystem::create_directories(folder.path("autostart"));
    const std::string mine = "[Desktop Entry]\nType=Application\nName=Mine\nExec=/opt/app --fast\n";
    folder.write("autostart/mine.desktop", mine);
    ASSERT_EQ(all.sessionList().size(), 1u);
    all.remove(all.sessionList()[0]);
    EXPECT_EQ(folder.read("autostart/mine.desktop"), mine + "Hidden=true\n");
    EXPECT_TRUE(list().empty());
}

TEST_F(Autostart, AnOwnItemThatWasSwitchedOffComesBackInsteadOfASecondOne) {
    AutostartItems all = items();
    all.insertLast("/opt/app");
    std::string text = folder.read("autostart/org.example.app.desktop");
    folder.write("autostart/org.example.app.desktop", text + "X-Mine=1\nHidden=true\n");
    EXPECT_TRUE(list().empty());
    all.insertLast("/opt/app");
    EXPECT_EQ(list(), (Paths{"/opt/app"}));
    EXPECT_NE(folder.read("autostart/org.example.app.desktop").find("X-Mine=1"), std::string::npos);
}

} // namespace
