#include "linux/SettingsStage.h"

// What another program does to the file while the settings are in use.

namespace settings_stage {

using SettingsEdit = SettingsFileTest;

TEST_F(SettingsEdit, AFileThatBecomesALinkStaysOneAndWhatItLeadsToCounts) {
    auto settings = open();
    save(settings, "a", "1");
    folder.write("real", listOf("<key>a</key><string>2</string>"));
    std::filesystem::remove(path());
    std::filesystem::create_symlink("real", path());
    settings.fileChanged();
    EXPECT_EQ(settings.stringForKey("a"), "2");
    save(settings, "b", "1");
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_NE(folder.read("real").find("<key>b</key>"), std::string::npos);
}

TEST_F(SettingsEdit, AnOutsideEditIsTakenOverExceptForKeysStillToBeSaved) {
    auto settings = openDeferred();
    save(settings, "edited", "old");
    save(settings, "both", "old");
    save(settings, "removed outside", "old");
    save(settings, "removed here", "old");
    settings.savePending();
    save(settings, "both", "own");
    save(settings, "new", "own");
    settings.remove("removed here");
    folder.write("a.plist", listOf("<key>edited</key><string>outside</string>"
                                   "<key>both</key><string>outside</string>"
                                   "<key>removed here</key><string>old</string>"
                                   "<key>added</key><string>outside</string>"));
    settings.fileChanged();
    const auto check = [](const SettingsFile& store) {
        EXPECT_EQ(store.stringForKey("edited"), "outside");
        EXPECT_EQ(store.stringForKey("added"), "outside");
        EXPECT_EQ(store.stringForKey("both"), "own");
        EXPECT_EQ(store.stringForKey("new"), "own");
        EXPECT_EQ(store.object("removed outside"), nullptr);
        EXPECT_EQ(store.object("removed here"), nullptr);
    };
    check(settings);
    settings.savePending();
    check(open());
}

TEST_F(SettingsEdit, ASaveTakesOverAnEditThatNobodyHasNoticed) {
    auto settings = open();
    save(settings, "a", "1");
    folder.write("a.plist", listOf("<key>a</key><string>1</string>"
                                   "<key>outside</key><string>x</string>"));
    save(settings, "b", "2");
    const auto again = open();
    EXPECT_EQ(again.stringForKey("outside"), "x");
    EXPECT_EQ(again.stringForKey("b"), "2");
}

TEST_F(SettingsEdit, ADamagingEditIsSetAsideAndTheSettingsInMemoryAreSavedAgain) {
    auto settings = openDeferred();
    save(settings, "a", "1");
    settings.savePending();
    folder.write("a.plist", "<plist>");
    settings.fileChanged();
    EXPECT_EQ(settings.stringForKey("a"), "1");
    settings.savePending();
    EXPECT_EQ(open().stringForKey("a"), "1");
    EXPECT_EQ(folder.read("a.plist.damaged"), "<plist>");
}

TEST_F(SettingsEdit, AFileThatBecomesBlankIsSetAsideAndTheSettingsInMemoryAreSavedAgain) {
    for (const std::string blank : {"", " \n", "\xEF\xBB\xBF"}) {
        auto settings = openDeferred();
        save(settings, "a", "1");
        settings.savePending();
        folder.write("a.plist", blank);
        settings.fileChanged();
        EXPECT_EQ(settings.stringForKey("a"), "1");
        settings.savePending();
        EXPECT_EQ(open().stringForKey("a"), "1");
        EXPECT_EQ(folder.read("a.plist.damaged"), blank);
        std::filesystem::remove(folder.path("a.plist.damaged"));
    }
}

TEST_F(SettingsEdit, AnEmptyListIsAnEditThatCounts) {
    auto settings = open();
    save(settings, "a", "1");
    folder.write("a.plist", listOf(""));
    settings.fileChanged();
    EXPECT_EQ(settings.object("a"), nullptr);
    EXPECT_EQ(folder.names(), Names{"a.plist"});
}

TEST_F(SettingsEdit, AnEmptyFileWhereThereWasNoneIsNoDamage) {
    auto settings = open();
    folder.write("a.plist", "");
    settings.fileChanged();
    save(settings, "a", "1");
    EXPECT_EQ(folder.names(), Names{"a.plist"});
    EXPECT_EQ(log.lines, Names{});
}

TEST_F(SettingsEdit, AnEndDoesNotLeaveABlankFileBehind) {
    auto settings = openPatient();
    save(settings, "a", "1");
    settings.savePending();
    folder.write("a.plist", "");
    settings.fileChanged();
    settings.flush();
    EXPECT_EQ(open().stringForKey("a"), "1");
}

TEST_F(SettingsEdit, ADeletedFileIsWrittenAgainWhole) {
    auto settings = open();
    save(settings, "a", "1");
    std::filesystem::remove(path());
    settings.fileChanged();
    EXPECT_EQ(open().stringForKey("a"), "1");
    EXPECT_EQ(folder.names(), Names{"a.plist"});
}

TEST_F(SettingsEdit, AFolderThatWasMovedAwayIsNotMadeAgainUntilThereIsSomethingToSave) {
    SettingsFile settings(folder.path("config/a.plist"), log, nullptr);
    save(settings, "a", "1");
    std::filesystem::rename(folder.path("config"), folder.path("away"));
    settings.fileChanged();
    EXPECT_EQ(folder.names(), Names{"away"});
    save(settings, "b", "2");
    const SettingsFile again(folder.path("config/a.plist"), log, nullptr);
    EXPECT_EQ(again.stringForKey("a"), "1");
}

TEST_F(SettingsEdit, AnEditorThatMovesTheFileAwayOrEmptiesItFirstIsGivenTime) {
    auto settings = openPatient();
    save(settings, "a", "1");
    settings.savePending();
    const auto edit = [&](const std::string& value) {
        settings.fileChanged();
        save(settings, "own", value); // also a save in between does not replace it
        settings.savePending();
        folder.write("a.plist", listOf("<key>a</key><string>" + value + "</string>"));
        settings.lookAgain();
        EXPECT_EQ(settings.stringForKey("a"), value);
        EXPECT_EQ(open().stringForKey("own"), value);
    };
    std::filesystem::rename(path(), folder.path("backup"));
    edit("moved");
    folder.write("a.plist", "");
    edit("emptied");
    folder.write("a.plist", "<plist><dict><key>");
    edit("half written");
    EXPECT_EQ(folder.names(), (Names{"a.plist", "backup"}));
    EXPECT_EQ(log.lines, Names{});
}

TEST_F(SettingsEdit, WhatIsNotWholeAtTheNextLookEitherIsReplacedThen) {
    auto settings = openPatient();
    save(settings, "a", "1");
    settings.savePending();
    folder.write("a.plist", "");
    settings.fileChanged();
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(folder.names(), Names{"a.plist"});
    settings.lookAgain();
    settings.savePending();
    EXPECT_EQ(open().stringForKey("a"), "1");
    EXPECT_EQ(folder.names(), (Names{"a.plist", "a.plist.damaged"}));
    EXPECT_EQ(looks, 1);
}

TEST_F(SettingsEdit, RereadingAnEmptyFileForgetsWhatWasThere) {
    auto settings = open();
    save(settings, "a", "1");
    folder.write("a.plist", "");
    settings.resetStandardUserDefaults();
    EXPECT_EQ(settings.object("a"), nullptr);
}

TEST_F(SettingsEdit, TellsAnObserverOfAnotherProgramsEditAndNotOfTheRest) {
    folder.write("a.plist", listOf("<key>a</key><string>1</string>"));
    auto settings = open();
    int told = 0;
    settings.observe("a", [&] { ++told; });
    folder.write("a.plist", listOf("<key>a</key><string>1</string><key>b</key><true/>"));
    settings.fileChanged();
    EXPECT_EQ(told, 0);
    folder.write("a.plist", listOf("<key>a</key><string>22</string>"));
    settings.fileChanged();
    EXPECT_EQ(told, 1);
    settings.fileChanged();
    EXPECT_EQ(told, 1);
}

TEST_F(SettingsEdit, TellsOnceWhichKeysReadOtherwiseAfterAnOutsideEdit) {
    folder.write("a.plist", listOf("<key>a</key><string>1</string><key>gone</key><true/>"
                                   "<key>same</key><true/>"));
    auto settings = open();
    settings.registerDefault("default", Value{true});
    std::vector<SettingsFile::Keys> told;
    settings.onOutsideEdit([&](const auto& keys) { told.push_back(keys); });
    folder.write("a.plist", listOf("<key>a</key><string>22</string><key>new</key><true/>"
                                   "<key>same</key><true/><key>default</key><true/>"));
    settings.fileChanged();
    settings.fileChanged();
    EXPECT_EQ(told, (std::vector<SettingsFile::Keys>{{"a", "gone", "new"}}));
    told.clear();
    save(settings, "a", "own");
    settings.fileChanged();
    folder.write("a.plist", folder.read("a.plist") + "\n");
    settings.fileChanged();
    EXPECT_TRUE(told.empty()) << "its own, and an edit that changes nothing";
}

TEST_F(SettingsEdit, TellsAnObserverOfAnEditThatASaveFinds) {
    folder.write("a.plist", listOf("<key>a</key><string>1</string>"));
    auto settings = open();
    std::string seen;
    settings.observe("a", [&] { seen = settings.stringForKey("a").value_or("none"); });
    folder.write("a.plist", listOf("<key>a</key><string>22</string>"));
    save(settings, "b", "1");
    EXPECT_EQ(seen, "22");
}

} // namespace settings_stage
