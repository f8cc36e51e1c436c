#include "linux/SettingsStage.h"

#include <sys/stat.h>

namespace settings_stage {

TEST_F(SettingsFileTest, AnAbsentFileIsAnEmptyStoreAndIsNotMade) {
    open();
    EXPECT_EQ(folder.names(), Names{});
    EXPECT_EQ(log.lines, Names{});
}

TEST_F(SettingsFileTest, AnEmptyFileIsAnEmptyStoreAndStaysWhereItIs) {
    folder.write("a.plist", "");
    open();
    EXPECT_EQ(folder.names(), Names{"a.plist"});
    EXPECT_EQ(log.lines, Names{});
}

TEST_F(SettingsFileTest, MakesTheFolderForTheUserAlone) {
    SettingsFile settings(folder.path("new/deeper/a.plist"), log, nullptr);
    save(settings, "a", "1");
    struct stat status {};
    ASSERT_EQ(::stat(folder.path("new/deeper").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    ASSERT_EQ(::stat(folder.path("new/deeper/a.plist").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(SettingsFileTest, WhatWasSavedIsThereAfterARestartAndNothingElseLiesThere) {
    {
        auto settings = open();
        save(settings, "a", "<&\"'\n\xC3\xA9 ");
    }
    EXPECT_EQ(open().stringForKey("a"), "<&\"'\n\xC3\xA9 ");
    EXPECT_EQ(folder.names(), Names{"a.plist"});
}

TEST_F(SettingsFileTest, SynchronizingOftenInOneEventAsksForOneSave) {
    auto settings = openDeferred();
    save(settings, "a", "1");
    save(settings, "b", "1");
    save(settings, "c", "1");
    EXPECT_EQ(saveRequests, 1);
    EXPECT_EQ(folder.names(), Names{});
    settings.savePending();
    EXPECT_EQ(open().stringForKey("c"), "1");
    save(settings, "a", "2");
    EXPECT_EQ(saveRequests, 2);
}

TEST_F(SettingsFileTest, FlushSavesAtOnceAndLeavesNothingForTheSaveThatWasAskedFor) {
    auto settings = openDeferred();
    save(settings, "a", "1");
    settings.flush();
    EXPECT_EQ(open().stringForKey("a"), "1");
    const auto before = platform::linux::identityOf(path());
    settings.savePending();
    EXPECT_EQ(platform::linux::identityOf(path()), before);
}

TEST_F(SettingsFileTest, ReplacingEveryValueAsksForASave) {
    auto settings = openDeferred();
    save(settings, "a", "1");
    settings.savePending();
    settings.setPersistentDomain({});
    EXPECT_EQ(saveRequests, 2);
    settings.savePending();
    EXPECT_EQ(open().object("a"), nullptr);
}

TEST_F(SettingsFileTest, AnUnchangedStoreIsNotWritten) {
    auto settings = open();
    save(settings, "a", "1");
    const auto before = platform::linux::identityOf(path());
    save(settings, "a", "1");
    settings.set("probe", Value{"x"s});
    settings.remove("probe");
    settings.synchronize();
    settings.flush();
    EXPECT_EQ(platform::linux::identityOf(path()), before);
}

TEST_F(SettingsFileTest, ALinkStaysALinkAndWhatItLeadsToIsReplaced) {
    folder.write("real", "");
    std::filesystem::create_symlink("real", path());
    auto settings = open();
    save(settings, "a", "1");
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_NE(folder.read("real").find("<key>a</key>"), std::string::npos);
}

TEST_F(SettingsFileTest, ALinkToAFileThatIsNotThereYetStaysALink) {
    std::filesystem::create_symlink("not/yet", path());
    auto settings = open();
    save(settings, "a", "1");
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_NE(folder.read("not/yet").find("<key>a</key>"), std::string::npos);
}

TEST_F(SettingsFileTest, WithoutAFolderTheSettingsLiveInMemoryAndWhereTheyWouldBeIsToldOnce) {
    SettingsFile settings("$HOME/.config/a.plist", log, nullptr);
    save(settings, "a", "1");
    settings.fileChanged();
    save(settings, "a", "2");
    settings.flush();
    EXPECT_EQ(settings.stringForKey("a"), "2");
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_NE(log.lines[0].find("$HOME/.config/a.plist"), std::string::npos) << log.lines[0];
    EXPECT_FALSE(std::filesystem::exists("$HOME"));
}

TEST_F(SettingsFileTest, ValuesOfOtherTypesSurviveASaveAndReadAsAbsent) {
    const std::string others = "<key>array</key><array><string>x</string><true/></array>"
                               "<key>date</key><date>2020-02-03T04:05:06Z</date>"
                               "<key>huge</key><integer>18446744073709551615</integer>"
                               "<key>mixed</key><dict><key>r</key><real>0.5</real></dict>"
                               "<key>real</key><real>1.5</real>";
    folder.write("a.plist", listOf(others));
    auto settings = open();
    settings.registerDefault("real", Value{"default"s});
    EXPECT_EQ(settings.object("array"), nullptr);
    EXPECT_EQ(settings.stringForKey("real"), "default");
    save(settings, "own", "1");
    const auto saved = folder.read("a.plist");
    for (const char* piece :
         {"<string>x</string>", "<date>2020-02-03T04:05:06Z</date>", "<real>0.5</real>",
          "<integer>18446744073709551615</integer>", "<real>1.5</real>", "<key>own</key>"})
        EXPECT_NE(saved.find(piece), std::string::npos) << piece;
    EXPECT_EQ(log.lines, Names{});
}

// Which libplist wrote with a year of three digits.
TEST_F(SettingsFileTest, ADateLongAgoSurvivesASaveAndTheNextStart) {
    folder.write("a.plist", listOf("<key>date</key><date>0579-01-02T00:00:00Z</date>"));
    for (const char* value : {"1", "2", "3"}) {
        auto settings = open();
        save(settings, "own", value);
        EXPECT_NE(folder.read("a.plist").find("579-01-02T00:00:00Z"), std::string::npos);
    }
    EXPECT_EQ(log.lines, Names{});
}

TEST_F(SettingsFileTest, ADamagedFileIsSetAsideUntouchedAndEverySecondOneBesideIt) {
    const std::string first = "bplist00\x01\x02 junk";
    const std::string second = listOf("<key>a</key>");
    folder.write("a.plist", first);
    {
        auto settings = open();
        EXPECT_EQ(settings.object("a"), nullptr);
        save(settings, "a", "1");
    }
    folder.write("a.plist", second);
    open();
    EXPECT_EQ(folder.read("a.plist.damaged"), first);
    EXPECT_EQ(folder.read("a.plist.damaged-2"), second);
    EXPECT_EQ(log.lines.size(), 2u);
}

TEST_F(SettingsFileTest, ADamagedFileThatCannotBeSetAsideIsNotReplaced) {
    // With ".damaged" behind it the name is longer than a name can be.
    const std::string name(250, 'n');
    folder.write(name, "junk");
    SettingsFile settings(folder.path(name), log, nullptr);
    save(settings, "a", "1");
    save(settings, "a", "2");
    EXPECT_EQ(folder.read(name), "junk");
    EXPECT_EQ(settings.stringForKey("a"), "2");
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(SettingsFileTest, OfARepeatedKeyTheLastValueCountsAndACopyOfTheFileIsKept) {
    const auto text = listOf("<key>a</key><string>1</string><key>a</key><string>2</string>");
    folder.write("a.plist", text);
    EXPECT_EQ(open().stringForKey("a"), "2");
    EXPECT_EQ(folder.read("a.plist.damaged"), text);
    EXPECT_EQ(folder.read("a.plist"), text);
}

} // namespace settings_stage
