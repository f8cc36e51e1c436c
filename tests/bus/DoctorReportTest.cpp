#include "program/bus/DoctorReport.h"
#include "testing/PolledDescriptors.h"
#include "testing/TempFolder.h"
#include "testing/Wait.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/timerfd.h>

// What comes of a doctor that does not end by itself.

namespace {

struct Doctors : testing::Test {
    std::string doctor(const std::string& script) const {
        const std::string path = folder.path("palisor-doctor");
        folder.write("palisor-doctor", "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    bus::ProductObject::Report reportOf(DoctorReport& report) {
        std::optional<bus::ProductObject::Report> got;
        report.ask([&](const auto& one) { got = one; });
        EXPECT_TRUE(support::waitUntil([&] {
            loop.poll();
            return got.has_value();
        }));
        EXPECT_TRUE(loop.watches.empty());
        return got.value_or(bus::ProductObject::Report{});
    }

    testing_support::TempFolder folder;
    testing_support::PolledDescriptors loop;
    static constexpr std::chrono::milliseconds soon{200};
};

TEST_F(Doctors, ThatHangAreEndedAndTheErrorSaysSo) {
    for (const char* hangs : {"echo $$ > $0.pid; echo {}; exec sleep 1000",
                              "echo $$ > $0.pid; exec >&-; exec sleep 1000"}) {
        DoctorReport report(doctor(hangs), "palisor", loop, soon);
        const auto answer = reportOf(report);
        EXPECT_FALSE(answer.text);
        EXPECT_THAT(answer.why, testing::HasSubstr("in time"));
        EXPECT_NE(::kill(std::stoi(folder.read("palisor-doctor.pid")), 0), 0) << "it is no more";
        (void)doctor("echo '{}'");
        EXPECT_EQ(reportOf(report).text, "{}") << "the next one is asked as if nothing had been";
    }
}

TEST_F(Doctors, WhoseOutputSomebodyElseKeepsOpenAreStillHeard) {
    DoctorReport report(doctor("sleep 1000 & echo $! > $0.pid; echo '{}'"), "palisor", loop, soon);
    EXPECT_EQ(reportOf(report).text, "{}");
    ::kill(std::stoi(folder.read("palisor-doctor.pid")), SIGKILL);
}

TEST_F(Doctors, HaveTenSecondsUnlessToldOtherwise) {
    DoctorReport report(doctor("echo $$ > $0.pid; exec sleep 1000"), "palisor", loop);
    bool answered = false;
    report.ask([&](const auto&) { answered = true; });
    const auto running = folder.path("palisor-doctor.pid");
    ASSERT_TRUE(support::waitUntil([&] { return std::filesystem::exists(running); }));
    std::chrono::seconds left{};
    for (const auto& [descriptor, ready] : loop.watches) {
        itimerspec when{};
        if (::timerfd_gettime(descriptor, &when) == 0)
            left = std::chrono::seconds(when.it_value.tv_sec);
    }
    EXPECT_GE(left.count(), 5);
    EXPECT_LT(left.count(), 10);
    EXPECT_FALSE(answered);
}

} // namespace
