#include "platform/qt/session/QtWorkspace.h"
#include "Stage.h"
#include "testing/Child.h"
#include "testing/KeptLog.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

// What the desktop's opener is given. It is a program found in PATH, for which the test's own one
// stands.

using namespace menutests;

namespace {

class QtWorkspace : public testing::Test {
  protected:
    QtWorkspace() {
        const auto folder = desktop().home() / "bin";
        const auto told = (desktop().home() / "opened").string();
        std::filesystem::create_directories(folder);
        if (::mkfifo(told.c_str(), 0600) != 0) throw std::runtime_error("no pipe");
        // Both ways, so that neither side waits for the other.
        pipe = support::Descriptor(::open(told.c_str(), O_RDWR | O_CLOEXEC));
        const auto program = folder / "xdg-open";
        std::ofstream(program) << "#!/bin/sh\nprintf '%s|%s\\n' \"$#\" \"$1\" > " << told << '\n';
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        ::setenv("PATH", (folder.string() + ":" + std::getenv("PATH")).c_str(), 1);
    }
    ~QtWorkspace() override { std::filesystem::remove(desktop().home() / "opened"); }

    /// The number of arguments and the first one.
    std::string opened() {
        return support::readLine(pipe.get(), support::Clock::now() + support::generous)
            .value_or("nothing");
    }

    support::Descriptor pipe;
    testing_support::KeptLog log;
    platform::qt::QtWorkspace workspace{"nobody", log};
};

} // namespace

TEST_F(QtWorkspace, PassesPagesAndMailsOnAsOneArgument) {
    for (const std::string url :
         {"https://www.tamberlo.invalid", "https://www.tamberlo.invalid#contacts",
          "http://a.invalid/app/quenlow/index.php?lingua=it",
          "mailto:a@b.invalid?Subject=Pi%C3%B9%20%26%20pi%C3%B9&body=%0A%0A100%25%20s%C3%AC"}) {
        workspace.openURL(url);
        EXPECT_EQ(opened(), "1|" + url);
    }
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(QtWorkspace, PassesOfAMailOnlyRecipientSubjectAndBodyOn) {
    const std::pair<std::string, std::string> rows[] = {
        {"mailto:a@b.invalid?attach=/etc/passwd&Subject=S&cc=c@d.invalid&body=B%26b&bcc=x",
         "mailto:a@b.invalid?Subject=S&body=B%26b"},
        {"mailto:a@b.invalid,c@d.invalid?ATTACHMENT=~/.ssh/id&SUBJECT=s",
         "mailto:a@b.invalid,c@d.invalid?SUBJECT=s"},
        {"mailto:a@b.invalid?subject=s%0D%0Abcc:x@y.invalid&body=b%0Ac",
         "mailto:a@b.invalid?body=b%0Ac"},
        {"mailto:a@b.invalid?att%61ch=/etc/passwd&to=c@d.invalid#part", "mailto:a@b.invalid"}};
    for (const auto& [asked, passed] : rows) {
        workspace.openURL(asked);
        EXPECT_EQ(opened(), "1|" + passed);
    }
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(QtWorkspace, LeavesNothingToAShell) {
    workspace.openURL("https://a.invalid/$(touch%20x);`id`?q='a b'\"&&|");
    const std::string given = opened();
    EXPECT_EQ(given.substr(0, 2), "1|");
    EXPECT_EQ(given.find(' '), std::string::npos) << given;
    EXPECT_NE(given.find("$(touch%20x);"), std::string::npos) << given;
}

TEST_F(QtWorkspace, RefusesEveryOtherKindOfAddressWithOneLineInTheLog) {
    const std::string refused[] = {"file:///etc/passwd",
                                   "/etc/passwd",
                                   "javascript:alert(1)",
                                   "ftp://a.invalid/x",
                                   "vbscript:x",
                                   "store:611203457?mt=12",
                                   "https:",
                                   "https:///path",
                                   "mailto:",
                                   "mailto:?subject=s",
                                   "mailto:a@b.invalid%0Abcc:c@d.invalid",
                                   "https://a.invalid/" + std::string(1983, 'x'),
                                   "--help",
                                   "",
                                   " ",
                                   "http",
                                   "FILE:///etc/passwd",
                                   "https://a.invalid:99999999/"};
    for (const std::string& url : refused) {
        log.lines.clear();
        workspace.openURL(url);
        EXPECT_EQ(log.lines.size(), 1u) << url;
    }
    workspace.openURL("https://a.invalid/" + std::string(1982, 'x'));
    EXPECT_EQ(opened(), "1|https://a.invalid/" + std::string(1982, 'x')) << "the longest";
    // Nothing of these came before it.
    workspace.openURL("HTTPS://a.invalid/last");
    EXPECT_EQ(opened(), "1|https://a.invalid/last");
}

TEST_F(QtWorkspace, ShowsARefusedAddressOnOneShortLine) {
    workspace.openURL("evil:\n\x1b[31m" + std::string(100'000, 'x'));
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_LT(log.lines[0].size(), 200u);
    EXPECT_EQ(log.lines[0].find_first_of("\n\x1b"), std::string::npos);
}
