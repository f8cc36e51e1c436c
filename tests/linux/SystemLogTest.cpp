#include "platform/linux/system/SystemLog.h"
#include "testing/TempFolder.h"

#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using platform::linux::DebugLog;
using platform::linux::SystemLog;

/// The standard error stream led into a file, which may be told to be the journal.
class Logs : public testing::Test {
  protected:
    Logs() {
        std::fflush(stderr);
        const int file =
            ::open(folder.path("stream").c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        ::dup2(file, STDERR_FILENO);
        ::close(file);
        ::unsetenv("JOURNAL_STREAM");
    }
    ~Logs() override {
        ::unsetenv("JOURNAL_STREAM");
        ::dup2(before, STDERR_FILENO);
        ::close(before);
    }

    static void tellThatItIsTheJournal(ino_t more = 0) {
        struct stat status {};
        ::fstat(STDERR_FILENO, &status);
        const auto text =
            std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino + more);
        ::setenv("JOURNAL_STREAM", text.c_str(), 1);
    }
    std::string written() const { return folder.read("stream"); }

    testing_support::TempFolder folder;
    const int before = ::dup(STDERR_FILENO);
};

TEST_F(Logs, ALineLosesWhatIsNoPrintedCharacter) {
    SystemLog("p").write("a\nb\x1b[31mc\td\x7f\xC2\x85\xE2\x80\xAE"
                         "e\xE2\x80\xA8"
                         "f \xC3\xA9 \xF0\x9F\x98\x80");
    EXPECT_EQ(written(), "p: a b [31mc d   e f \xC3\xA9 \xF0\x9F\x98\x80\n");
}

TEST_F(Logs, ALineIsCutAtFiveHundredCharacters) {
    const auto times = [](int count, const std::string& text) {
        std::string all;
        for (int index = 0; index < count; ++index)
            all += text;
        return all;
    };
    const std::string wide = "\xF0\x9F\x98\x80";
    SystemLog log("p");
    log.write(times(500, wide));
    log.write(times(501, wide));
    log.write(times(1'000'000, "a"));
    EXPECT_EQ(written(), "p: " + times(500, wide) + "\np: " + times(500, wide) +
                             "...\np: " + times(500, "a") + "...\n");
}

TEST_F(Logs, ALineOfBytesThatAreNoTextIsWrittenNevertheless) {
    SystemLog("p").write("a\xff\xC3");
    EXPECT_EQ(written(), "p: a\xEF\xBF\xBD\xEF\xBF\xBD\n");
}

TEST_F(Logs, WhatOnlyADeveloperUnderstandsIsNotOnATerminal) {
    tellThatItIsTheJournal(1); // which the stream is no longer
    DebugLog("p", false).write("asdasdasd");
    EXPECT_EQ(written(), "");
    DebugLog("p", true).write("asdasdasd");
    EXPECT_EQ(written(), "p: asdasdasd\n");
}

TEST_F(Logs, WhatOnlyADeveloperUnderstandsHasTheJournalsPriorityOfDebugging) {
    tellThatItIsTheJournal();
    DebugLog("p", false).write("asdasdasd");
    SystemLog("p").write("no tray");
    EXPECT_EQ(written(), "<7>p: asdasdasd\np: no tray\n");
}

// A day of passes over calendars in which nothing happens.
TEST_F(Logs, TheSameRoundOfLinesIsKeptOnce) {
    tellThatItIsTheJournal();
    DebugLog quiet("p", false);
    for (int pass = 0; pass < 8640; ++pass)
        for (const char* line : {"=====", "s: (a) ", pass < 4000 ? "events: ()" : "events: (b)"})
            quiet.write(line);
    EXPECT_EQ(written(), "<7>p: =====\n<7>p: s: (a) \n<7>p: events: ()\n<7>p: events: (b)\n");
    DebugLog verbose("q", true);
    verbose.write("=====");
    verbose.write("=====");
    EXPECT_THAT(written(), testing::EndsWith("<7>q: =====\n<7>q: =====\n"));
}

} // namespace
