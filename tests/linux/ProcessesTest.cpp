#include "platform/linux/processes/Processes.h"
#include "platform/linux/files/LockFile.h"
#include "testing/Child.h"
#include "testing/TempFolder.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

// Other processes of the user's.

namespace platform::linux {
namespace {

using support::ChildProcess;
using Names = std::vector<std::string>;

struct Processes : testing::Test {
    /// A copy of "sleep" under that name, for a display.
    std::unique_ptr<ChildProcess> start(const std::string& name, const std::string& display) {
        const std::string program = folder.path(name);
        std::filesystem::copy_file("/bin/sleep", program,
                                   std::filesystem::copy_options::overwrite_existing);
        auto process = std::make_unique<ChildProcess>(ChildProcess::Start{
            .command = {program, "1000"}, .environment = {{"DISPLAY", display}}});
        EXPECT_TRUE(
            support::waitUntil([&] { return OtherProcess(process->pid()).executable() == name; }));
        return process;
    }

    testing_support::TempFolder folder;
};

TEST_F(Processes, WhoHoldsALockIsFoundWithoutTryingIt) {
    const std::string path = folder.path("lock");
    EXPECT_FALSE(holderOf(path));
    EXPECT_FALSE(std::filesystem::exists(path)) << "it is not made";
    {
        const LockFile lock(path);
        ASSERT_EQ(lock.state(), LockFile::State::held);
        EXPECT_EQ(holderOf(path), ::getpid());
    }
    EXPECT_FALSE(holderOf(path)) << "the file alone holds nothing";
    const FileHandle opened(::open(path.c_str(), O_RDONLY));
    EXPECT_FALSE(holderOf(path)) << "nor does who has only opened it";
}

TEST_F(Processes, AreFoundByNameOnTheirDisplay) {
    const auto one = start("a-rather-long-name", ":4242");
    const auto other = start("short", ":4243");
    const auto is = [](const std::string& wanted) {
        return [wanted](const std::string& display) { return display == wanted; };
    };
    const Names names = {"short", "a-rather-long-name", "none"};
    EXPECT_EQ(runningOf(names, is(":4242")), Names{"a-rather-long-name"});
    EXPECT_EQ(runningOf(names, is(":4243")), Names{"short"});
    EXPECT_EQ(runningOf(names, is(":424")), Names{});
}

TEST_F(Processes, OfThisUserAreToldFromOnesThatHaveGone) {
    const auto process = start("one", ":4242");
    const OtherProcess seen(process->pid());
    ASSERT_TRUE(seen);
    EXPECT_FALSE(seen.isStopped());
    process->signal(SIGSTOP);
    EXPECT_TRUE(support::waitUntil([&] { return seen.isStopped(); }));
    EXPECT_FALSE(seen.endsWithin(std::chrono::milliseconds(0)));
    EXPECT_TRUE(seen.signal(SIGKILL));
    EXPECT_TRUE(seen.endsWithin(support::generous));
    EXPECT_EQ(process->wait(), -SIGKILL);
    EXPECT_FALSE(seen.signal(SIGKILL)) << "the number may be another's by now";
    EXPECT_FALSE(OtherProcess(process->pid()));
}

TEST_F(Processes, KeepTheirNameWhereTheFileHasGone) {
    const auto process = start("one", ":4242");
    std::filesystem::remove(folder.path("one"));
    EXPECT_EQ(OtherProcess(process->pid()).executable(), "one");
}

} // namespace
} // namespace platform::linux
