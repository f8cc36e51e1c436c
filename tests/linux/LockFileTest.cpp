#include "platform/linux/files/LockFile.h"
#include "platform/linux/settings/FileWatch.h"
#include "testing/KeptLog.h"
#include "testing/PolledDescriptors.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>
#include <optional>

namespace {

using platform::linux::FileWatch;
using platform::linux::LockFile;
using testing_support::KeptLog;
using testing_support::PolledDescriptors;
using testing_support::TempFolder;
using State = LockFile::State;

TEST(LockFile, IsHeldByOneUntilThatEnds) {
    const TempFolder folder;
    std::optional<LockFile> first(folder.path("lock"));
    EXPECT_EQ(first->state(), State::held);
    EXPECT_EQ(LockFile(folder.path("lock")).state(), State::isElsewhere);
    first.reset();
    EXPECT_EQ(LockFile(folder.path("lock")).state(), State::held);
}

TEST(LockFile, IsImpossibleWhereNoFileCanBe) {
    const TempFolder folder;
    EXPECT_EQ(LockFile(folder.path("no/lock")).state(), State::impossible);
    std::filesystem::create_symlink("elsewhere", folder.path("lock"));
    EXPECT_EQ(LockFile(folder.path("lock")).state(), State::impossible);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"lock"});
}

TEST(LockFile, TheHolderNoticesAKnockAndNotTheTryBeforeIt) {
    const TempFolder folder;
    const LockFile holder(folder.path("lock"));
    KeptLog log;
    PolledDescriptors descriptors;
    int knocks = 0;
    const FileWatch watch(holder.path(), descriptors, log, [&] { ++knocks; });
    {
        const LockFile second(folder.path("lock"));
        descriptors.poll();
        EXPECT_EQ(knocks, 0);
        second.knock();
    }
    descriptors.poll();
    EXPECT_EQ(knocks, 1);
}

} // namespace
