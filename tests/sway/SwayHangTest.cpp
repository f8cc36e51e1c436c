#include "sway/SwaySession.h"

#include <filesystem>
#include <iostream>
#include <sstream>
#include <unistd.h>

// What happens while the compositor does not answer.

namespace desktop {
namespace {

using support::Stopped;

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t times = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++times;
    return times;
}

struct SwayStopped : Sway {
    struct Effort {
        long wakeUps = 0;
        double seconds = 0; ///< of a core
    };
    /// Of the program so far, all of its threads.
    Effort effort() const {
        Effort sum{.wakeUps = wakeups()};
        for (const auto& thread : std::filesystem::directory_iterator(
                 "/proc/" + std::to_string(program->pid()) + "/task")) {
            std::ifstream stat(thread.path() / "stat");
            std::string text{std::istreambuf_iterator<char>(stat), {}};
            std::istringstream fields(text.substr(text.rfind(')') + 1));
            std::string skipped;
            for (int i = 0; i < 11; ++i)
                fields >> skipped;
            double user = 0, system = 0;
            fields >> user >> system;
            sum.seconds += (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
        }
        return sum;
    }
    std::unique_ptr<support::ChildProcess> ask(const std::string& command) const {
        auto asked = sway->spawn(programs() + "/palisor", {command});
        EXPECT_EQ(asked->wait(), 0) << asked->output() << asked->errors();
        return asked;
    }
    const std::string silence = "the compositor does not answer";
};

TEST_F(SwayStopped, AnswersAndRestsAndSaysItOnce) {
    start();
    std::optional<Stopped> stopped(sway->pid());
    const auto begin = support::Clock::now();
    ask("off");
    EXPECT_NE(ask("status")->output().find("active no"), std::string::npos);
    ASSERT_TRUE(program->waitForText(silence)) << program->errors();
    const Effort before = effort();
    const auto resting = support::Clock::now();
    // Nothing comes of it but a longer while.
    EXPECT_FALSE(program->waitForText("another sentence", support::milliseconds(4'000)));
    const Effort after = effort();
    const double seconds = std::chrono::duration<double>(support::Clock::now() - resting).count();
    const long wakeUps = after.wakeUps - before.wakeUps;
    std::cout << wakeUps << " wake-ups and " << after.seconds - before.seconds << " s of a core in "
              << seconds << " s\n";
    EXPECT_LT(static_cast<double>(wakeUps) / seconds, 20);
    EXPECT_LT(after.seconds - before.seconds, 0.05 * seconds);
    ask("on");
    EXPECT_LT(std::chrono::duration<double>(support::Clock::now() - begin).count() - seconds, 10);
    EXPECT_EQ(count(program->errors(), silence), 1U) << program->errors();

    stopped.reset();
    EXPECT_TRUE(program->waitForText("the compositor answers again")) << program->errors();
    EXPECT_TRUE(darkSoon(2));
    const auto after2 = witness(1);
    hand->moveTo(1900, 500);
    hand->push(20, 0, 50, mouseRate);
    EXPECT_EQ(after2->report().entered, 0) << "it is held again";
}

TEST_F(SwayStopped, IsFreeOnceItGoesOnWhereTheProgramWasKilledMeanwhile) {
    start();
    {
        const Stopped stopped(sway->pid());
        program->signal(SIGKILL);
        ASSERT_EQ(program->wait(), -SIGKILL);
    }
    EXPECT_TRUE(waitUntil([&] { return isFree(); }));
    EXPECT_TRUE(brightSoon());
}

TEST_F(SwayStopped, IsFreeOnceItGoesOnWhereTheProgramWasEndedMeanwhile) {
    start();
    {
        const Stopped stopped(sway->pid());
        program->signal(SIGTERM);
        EXPECT_EQ(program->wait(support::milliseconds(10'000)), 0) << program->errors();
    }
    EXPECT_TRUE(waitUntil([&] { return isFree(); }));
    EXPECT_TRUE(brightSoon());
}

TEST_F(SwayStopped, IsRefusedWithASentenceAtTheStart) {
    const Stopped stopped(sway->pid());
    const auto refused = run();
    const auto status = refused->wait(support::milliseconds(15'000));
    ASSERT_TRUE(status) << "it hangs";
    EXPECT_GT(*status, 0);
    EXPECT_NE(refused->errors().find("sway does not answer"), std::string::npos)
        << refused->errors();
}

TEST_F(SwayStopped, LetsTheDoctorEnd) {
    start();
    const auto guards = support::childrenOf(program->pid(), "sway-guard");
    ASSERT_EQ(guards.size(), 1U);
    program->signal(SIGSTOP);
    ::kill(guards[0], SIGKILL);
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    const Stopped stopped(sway->pid());
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--product", "palisor"},
          std::vector<std::string>{"--product", "palisor", "--rescue"}}) {
        const auto doctor = sway->spawn(programs() + "/palisor-doctor", options);
        ASSERT_TRUE(doctor->wait(support::milliseconds(20'000))) << options.back();
        EXPECT_FALSE(doctor->output().empty());
        if (options.back() != "--rescue") continue;
        EXPECT_NE(doctor->output().find("sway does not answer"), std::string::npos)
            << doctor->output();
        EXPECT_EQ(doctor->wait(), 1);
    }
}

} // namespace
} // namespace desktop
