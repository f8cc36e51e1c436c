#include "platform/linux/settings/FileWatch.h"
#include "testing/KeptLog.h"
#include "testing/PolledDescriptors.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using platform::linux::FileWatch;
using testing_support::KeptLog;
using testing_support::PolledDescriptors;
using testing_support::TempFolder;

class FileWatchTest : public testing::Test {
  protected:
    int changesAfter(const std::function<void()>& action) {
        changes = 0;
        action();
        descriptors.poll();
        return changes;
    }

    TempFolder folder;
    KeptLog log;
    PolledDescriptors descriptors;
    int changes = 0;
    FileWatch watch{folder.path("a"), descriptors, log, [this] { ++changes; }};
};

TEST_F(FileWatchTest, ReportsAFileWrittenInPlace) {
    EXPECT_EQ(changesAfter([this] { folder.write("a", "1"); }), 1);
    EXPECT_EQ(changesAfter([this] { folder.write("a", "2"); }), 1);
}

TEST_F(FileWatchTest, ReportsAnotherFileRenamedToTheName) {
    folder.write("b", "1");
    EXPECT_EQ(changesAfter([this] { std::filesystem::rename(folder.path("b"), folder.path("a")); }),
              1);
}

TEST_F(FileWatchTest, SaysNothingOfOtherFiles) {
    EXPECT_EQ(changesAfter([this] { folder.write("ab", "1"); }), 0);
}

TEST_F(FileWatchTest, ReportsThatTheFileHasGone) {
    folder.write("a", "1");
    descriptors.poll();
    EXPECT_EQ(changesAfter([this] { std::filesystem::rename(folder.path("a"), folder.path("b")); }),
              1);
    std::filesystem::rename(folder.path("b"), folder.path("a"));
    descriptors.poll();
    EXPECT_EQ(changesAfter([this] { std::filesystem::remove(folder.path("a")); }), 1);
}

TEST_F(FileWatchTest, AMissingFolderIsWatchedWhenItComes) {
    int told = 0;
    const FileWatch deep(folder.path("no/yet/a"), descriptors, log, [&] { ++told; });
    for (const char* made : {"no", "no/yet"}) {
        std::filesystem::create_directory(folder.path(made));
        descriptors.poll();
    }
    told = 0;
    folder.write("no/yet/a", "1");
    descriptors.poll();
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(FileWatchTest, AFolderThatWasReplacedIsWatchedAgain) {
    std::filesystem::create_directories(folder.path("home/config"));
    int told = 0;
    const FileWatch inside(folder.path("home/config/a"), descriptors, log, [&] { ++told; });
    for (const char* replaced : {"home/config", "home"}) {
        std::filesystem::rename(folder.path(replaced), folder.path("away"));
        descriptors.poll();
        std::filesystem::create_directories(folder.path("home/config"));
        descriptors.poll();
        descriptors.poll();
        told = 0;
        folder.write("home/config/a", "1");
        descriptors.poll();
        EXPECT_EQ(told, 1) << replaced;
        std::filesystem::remove_all(folder.path("away"));
    }
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(FileWatchTest, FollowsALinkAlsoToAFileThatIsNotThereYetAndToAnotherOne) {
    std::filesystem::create_directory(folder.path("one"));
    std::filesystem::create_directory(folder.path("two"));
    EXPECT_EQ(
        changesAfter([this] { std::filesystem::create_symlink("one/real", folder.path("a")); }), 1);
    EXPECT_EQ(changesAfter([this] { folder.write("one/real", "1"); }), 1);
    std::filesystem::create_symlink("two/real", folder.path("b"));
    EXPECT_EQ(changesAfter([this] { std::filesystem::rename(folder.path("b"), folder.path("a")); }),
              1);
    EXPECT_EQ(changesAfter([this] { folder.write("two/real", "1"); }), 1);
    EXPECT_EQ(changesAfter([this] { folder.write("one/real", "2"); }), 0);
}

TEST_F(FileWatchTest, APathThatIsNotAbsoluteIsNoFile) {
    const FileWatch none("$HOME/a", descriptors, log, [] {});
    EXPECT_EQ(descriptors.watches.size(), 1u);
    EXPECT_TRUE(log.lines.empty());
}

TEST(FileWatch, EndsWithItsObject) {
    const TempFolder folder;
    KeptLog log;
    PolledDescriptors descriptors;
    {
        const FileWatch watch(folder.path("a"), descriptors, log, [] {});
    }
    EXPECT_TRUE(descriptors.watches.empty());
}

} // namespace
