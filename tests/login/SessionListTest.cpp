#include "login/AutostartStage.h"

// The session's own list of what starts with it, and the helper's entry beside an item of it.

namespace {

using namespace logintests;

using SessionList = Autostart;

TEST_F(SessionList, EveryInsertionIsAnItemOfItsOwn) {
    items().insertLast("/opt/example/bin/app");
    items().insertLast("/opt/example/bin/app");
    items().insertLast("/opt/with space/app");
    EXPECT_EQ(list(),
              (Paths{"/opt/example/bin/app", "/opt/example/bin/app", "/opt/with space/app"}));
    for (const char* name : {"org.example.app", "org.example.app-2", "org.example.app-3"})
        expectValid("autostart/" + std::string(name) + ".desktop");
}

TEST_F(SessionList, ListsTheItemsOfOthersAndOneThatResolvesToNothing) {
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

TEST_F(SessionList, RemovesEachDuplicateAndNothingElse) {
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

TEST_F(SessionList, AnItemOfTheListIsToldThatTheSessionStartsIt) {
    items().insertLast("/opt/with space/app");
    const platform::linux::DesktopEntry entry(folder.read("autostart/org.example.app.desktop"));
    EXPECT_EQ(entry.string("Exec"), "\"/opt/with space/app\" --early");
    EXPECT_EQ(list(), (Paths{"/opt/with space/app"}));
}

TEST_F(SessionList, AnItemOfAnEarlierVersionIsGivenTheOptionsOfToday) {
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

TEST_F(SessionList, OfAProgramThatHasMovedIsMendedUnlessTheUserHasEditedIt) {
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

TEST_F(SessionList, ShowsOneEntryWhereThereIsAnItemOfTheListBesideTheHelper) {
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

TEST_F(SessionList, IsSwitchedOffAsAWholeByTheEntryThatIsShown) {
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

TEST_F(SessionList, AnItemThatTheUserWroteIsHiddenInsteadOfDeleted) {
    AutostartItems all = items();
    std::filesystem::create_directories(folder.path("autostart"));
    const std::string mine = "[Desktop Entry]\nType=Application\nName=Mine\nExec=/opt/app --fast\n";
    folder.write("autostart/mine.desktop", mine);
    ASSERT_EQ(all.sessionList().size(), 1u);
    all.remove(all.sessionList()[0]);
    EXPECT_EQ(folder.read("autostart/mine.desktop"), mine + "Hidden=true\n");
    EXPECT_TRUE(list().empty());
}

TEST_F(SessionList, AnOwnItemThatWasSwitchedOffComesBackInsteadOfASecondOne) {
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
