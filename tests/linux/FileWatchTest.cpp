#include "platform/linux/settings/FileWatch.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>
#include <map>
#include <poll.h>

namespace {

using platform::linux::FileWatch;
using testing_support::KeptLog;
using testing_support::TempFolder;

/// Descriptors without a loop: the kernel has queued a folder's events when the call that made them
/// returns.
class PolledDescriptors final : public platform::Descriptors {
  public:
    void watchReadable(int fd, std::function<void()> ready) override { watches[fd] = ready; }
    void unwatch(int fd) override { watches.erase(fd); }

    void poll() {
        for (const auto& [fd, ready] : std::map(watches)) {
            pollfd ask{fd, POLLIN, 0};
            if (::poll(&ask, 1, 0) == 1) ready();
        }
    }
    std::map<int, std::function<void()>> watches;
};

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

TEST_F(FileWatchTest, AMissingFolderIsLoggedAndWatchesNothing) {
    const FileWatch none(folder.path("no/a"), descriptors, log, [] {});
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(descriptors.watches.size(), 1u);
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
