#include "platform/linux/files/FileHandle.h"
#include "platform/linux/settings/SettingsFile.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

// Kills, full disks, and other programs in the midst of a save.

namespace {

/// Done once, when a file is synced next: then what is saved has been written, and is not in place.
std::function<void()> duringTheSync;

} // namespace

extern "C" int fsync(int fd) {
    if (const auto deed = std::exchange(duringTheSync, nullptr)) deed();
    return static_cast<int>(::syscall(SYS_fsync, fd));
}

namespace {

using platform::Value;
using platform::linux::readPropertyList;
using platform::linux::SettingsFile;
using platform::linux::Wholeness;
using testing_support::KeptLog;
using testing_support::TempFolder;
using Names = std::vector<std::string>;

/// No file of this process can grow beyond that while it lives. Works for root as well, for whom
/// no folder is read-only.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_FSIZE, &before);
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before);
        ::signal(SIGXFSZ, SIG_DFL);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit before{};
};

TEST(SettingsFile, KeepsTheOldFileWhenTheDiskIsFullAndSavesWithTheNextChange) {
    const TempFolder folder;
    KeptLog log;
    SettingsFile settings(folder.path("a.plist"), log, nullptr);
    settings.set("a", Value{std::string("old")});
    settings.synchronize();
    const auto before = folder.read("a.plist");
    {
        const FileSizeLimit full(100);
        settings.set("a", Value{std::string("new")});
        settings.synchronize();
        settings.set("b", Value{std::string("new")});
        settings.synchronize();
        EXPECT_EQ(folder.read("a.plist"), before);
        EXPECT_EQ(folder.names(), Names{"a.plist"});
        EXPECT_EQ(settings.stringForKey("a"), "new");
        EXPECT_EQ(log.lines.size(), 1u);
    }
    settings.synchronize(); // nothing has changed since the last try
    EXPECT_EQ(folder.read("a.plist"), before);
    settings.set("c", Value{true});
    settings.synchronize();
    const SettingsFile again(folder.path("a.plist"), log, nullptr);
    EXPECT_EQ(again.stringForKey("a"), "new");
    EXPECT_EQ(again.stringForKey("b"), "new");
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST(SettingsFile, AFolderThatCannotBeMadeIsToldOnce) {
    const TempFolder folder;
    folder.write("file", "");
    KeptLog log;
    SettingsFile settings(folder.path("file/a.plist"), log, nullptr);
    const auto afterStart = log.lines.size();
    for (const bool value : {true, false, true}) {
        settings.set("a", Value{value});
        settings.synchronize();
    }
    EXPECT_TRUE(settings.boolForKey("a"));
    EXPECT_LE(afterStart, 1u);
    EXPECT_EQ(log.lines.size(), afterStart + 1);
}

TEST(SettingsFile, KeepsAnEditThatIsMadeDuringASave) {
    const TempFolder folder;
    KeptLog log;
    SettingsFile settings(folder.path("a.plist"), log, nullptr);
    settings.set("a", Value{std::string("old")});
    settings.synchronize();
    duringTheSync = [&] {
        folder.write("edit", "<plist><dict><key>a</key><string>edited</string></dict></plist>");
        std::filesystem::rename(folder.path("edit"), folder.path("a.plist"));
    };
    settings.set("own", Value{true});
    settings.synchronize();
    EXPECT_EQ(settings.stringForKey("a"), "edited");
    const SettingsFile again(folder.path("a.plist"), log, nullptr);
    EXPECT_EQ(again.stringForKey("a"), "edited");
    EXPECT_TRUE(again.boolForKey("own"));
    EXPECT_EQ(folder.names(), Names{"a.plist"});
}

/// Holds what a save of the settings locks.
class Locked {
  public:
    explicit Locked(const TempFolder& folder)
        : file(::open(folder.path("a.plist.new").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600)) {
        EXPECT_EQ(::flock(file.get(), LOCK_EX | LOCK_NB), 0);
    }

  private:
    platform::linux::FileHandle file;
};

TEST(SettingsFile, WaitsForALockOutsideTheMainLoopAndSavesWhenItIsFree) {
    const TempFolder folder;
    KeptLog log;
    int looks = 0;
    SettingsFile settings(
        folder.path("a.plist"), log, [] {}, [&] { ++looks; });
    {
        const Locked elsewhere(folder);
        settings.set("a", Value{true});
        settings.synchronize();
        settings.savePending();
        for (int round = 1; round <= 3; ++round) {
            EXPECT_EQ(looks, round);
            settings.lookAgain();
        }
        EXPECT_EQ(log.lines, Names{});
    }
    settings.lookAgain();
    const SettingsFile again(folder.path("a.plist"), log, nullptr);
    EXPECT_TRUE(again.boolForKey("a"));
    EXPECT_EQ(looks, 4);
}

TEST(SettingsFile, ALockThatIsNeverFreedIsToldOnceAndTheEndWaitsForItASecond) {
    const TempFolder folder;
    KeptLog log;
    SettingsFile settings(
        folder.path("a.plist"), log, [] {}, [] {});
    const Locked elsewhere(folder);
    settings.set("a", Value{true});
    settings.synchronize();
    settings.savePending();
    for (int look = 0; look < 30; ++look)
        settings.lookAgain();
    EXPECT_EQ(log.lines.size(), 1u);
    const auto before = std::chrono::steady_clock::now();
    settings.flush();
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::seconds(1));
    EXPECT_TRUE(settings.boolForKey("a"));
}

/// Saves growing and shrinking settings without end, one byte into the pipe a save.
[[noreturn]] void saveForEver(const std::string& path, int pipe) {
    KeptLog log;
    SettingsFile settings(path, log, nullptr);
    for (std::int64_t round = 0;; ++round) {
        settings.set("round", Value{round});
        settings.set("text", Value{std::string(static_cast<std::size_t>(round % 97) * 331, 'x')});
        settings.synchronize();
        if (::write(pipe, "s", 1) != 1 || !log.lines.empty()) ::_exit(1);
    }
}

TEST(SettingsFile, IsWholeWhateverInstantTheProcessIsKilledAt) {
    const TempFolder folder;
    const std::string path = folder.path("a.plist");
    std::mt19937 random(20231);
    std::int64_t last = -1;
    constexpr int kills = 100;
    for (int kill = 0; kill < kills; ++kill) {
        int pipe[2];
        ASSERT_EQ(::pipe(pipe), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(pipe[0]);
            saveForEver(path, pipe[1]);
        }
        ::close(pipe[1]);
        // After some saves the child is in the midst of the next one; how far depends on the spin.
        char byte = 0;
        for (auto saves = 1 + random() % 4; saves > 0; --saves)
            ASSERT_EQ(::read(pipe[0], &byte, 1), 1);
        for (volatile auto spin = random() % 200000; spin > 0;)
            spin = spin - 1;
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ::close(pipe[0]);
        ASSERT_TRUE(WIFSIGNALED(status));

        const auto read = readPropertyList(folder.read("a.plist"));
        ASSERT_EQ(read.wholeness, Wholeness::whole);
        const auto* round = std::get_if<std::int64_t>(&read.list.at("round").value->held);
        const auto* text = std::get_if<std::string>(&read.list.at("text").value->held);
        ASSERT_TRUE(round != nullptr && text != nullptr);
        ASSERT_EQ(text->size(), static_cast<std::size_t>(*round % 97) * 331);
        last = std::max(last, *round);
        for (const auto& name : folder.names())
            ASSERT_TRUE(name == "a.plist" || name == "a.plist.new") << name;
    }
    EXPECT_GT(last, 0);
    // What a kill left behind is taken over by the next save.
    KeptLog log;
    SettingsFile settings(path, log, nullptr);
    settings.set("done", Value{true});
    settings.synchronize();
    EXPECT_EQ(folder.names(), Names{"a.plist"});
    EXPECT_EQ(log.lines, Names{});
}

} // namespace
