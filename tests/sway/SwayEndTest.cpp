#include "sway/SwaySession.h"
#include "testing/TempFolder.h"

#include <filesystem>
#include <iostream>

// glibc 2.36 declares these without C linkage.
extern "C" {
#include <sys/pidfd.h>
}

namespace desktop {
namespace {

namespace fs = std::filesystem;

TEST_F(Sway, IsFreeAndBrightAfterAnOrderlyEnd) {
    start();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_TRUE(isFree());
    EXPECT_FALSE(isDark());
}

TEST_F(Sway, LoadsTheModuleAndNoOtherSession) {
    start();
    std::ifstream maps("/proc/" + std::to_string(program->pid()) + "/maps");
    const std::string all{std::istreambuf_iterator<char>(maps), {}};
    EXPECT_NE(all.find("wayland-session.so"), std::string::npos);
    EXPECT_NE(all.find("libqwayland"), std::string::npos);
    EXPECT_EQ(all.find("libqxcb"), std::string::npos);
    EXPECT_EQ(all.find("x11-session.so"), std::string::npos);
    // The toolkit brings libxcb itself along, and none of its extensions.
    EXPECT_EQ(all.find("libxcb-"), std::string::npos);
}

TEST_F(Sway, EndsWhereTheCompositorGoes) {
    start();
    const auto leaving = sway->spawn("swaymsg", {"exit"});
    leaving->wait(); // which the compositor does not answer
    const auto status = program->wait();
    ASSERT_TRUE(status);
    EXPECT_GT(*status, 0) << program->errors();
}

// ---- killed -------------------------------------------------------------------------------------

struct SwayKilled : Sway {
    pid_t guard() const {
        const auto guards = support::childrenOf(program->pid(), "sway-guard");
        return guards.size() == 1 ? guards[0] : 0;
    }
    /// Kills the program, and returns the milliseconds until its guard has carried everything out
    /// and ended.
    double killProgram() {
        const support::Descriptor handle(::pidfd_open(guard(), 0));
        const auto begin = support::Clock::now();
        program->signal(SIGKILL);
        EXPECT_TRUE(support::waitReadable(handle.get(), begin + support::generous));
        const double took =
            std::chrono::duration<double, std::milli>(support::Clock::now() - begin).count();
        EXPECT_EQ(program->wait(), -SIGKILL);
        return took;
    }
    bool isBound(const std::string& combination) const {
        try {
            sway->run("unbindcode " + combination); // what is not bound cannot be unbound
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    }
    bool leftAFile() const {
        for (const auto& entry : fs::recursive_directory_iterator(sway->runtimeFolder()))
            if (entry.path().filename().string().starts_with("sway-undo-")) return true;
        return false;
    }
    void expectNothingLeft() {
        EXPECT_FALSE(isDark());
        EXPECT_TRUE(isFree());
        for (const char* combination :
             {"Mod1+Mod4+37", "Control+Mod4+64", "Control+Mod1+133", "Mod1+68"})
            EXPECT_FALSE(isBound(combination)) << combination;
        EXPECT_FALSE(leftAFile());
    }
    const Setting withShortcut{.more = {{"customShortcut", shortcut(120, 0x80000)}}};
};

constexpr double half = 500;

TEST_F(SwayKilled, LeavesNothingHalfASecondAfterItsDeath) {
    start(withShortcut);
    ASSERT_TRUE(leftAFile());
    const double took = killProgram();
    EXPECT_LT(took, half);
    std::cout << "undone after " << took << " ms\n";
    expectNothingLeft();
}

TEST_F(SwayKilled, LeavesNothingWhereItsGuardWasKilledBefore) {
    start(withShortcut);
    const pid_t first = guard();
    ASSERT_GT(first, 0);
    ::kill(first, SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return guard() != 0 && guard() != first; })) << "another one";
    EXPECT_LT(killProgram(), half);
    expectNothingLeft();
}

TEST_F(SwayKilled, IsMendedAtTheNextStartWhereItsGuardWasKilledAtOnce) {
    start(withShortcut);
    const pid_t killed = guard();
    program->signal(SIGSTOP); // it would start another one
    ::kill(killed, SIGKILL);
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    EXPECT_FALSE(isFree());
    start({.active = false});
    EXPECT_TRUE(isFree());
    EXPECT_FALSE(isBound("Mod1+68"));
}

TEST_F(SwayKilled, IsMendedByTheDoctorWhereItsGuardWasKilledAtOnce) {
    start(withShortcut);
    const pid_t killed = guard();
    program->signal(SIGSTOP);
    ::kill(killed, SIGKILL);
    program->signal(SIGKILL);
    ASSERT_EQ(program->wait(), -SIGKILL);
    ASSERT_TRUE(leftAFile());
    const auto doctor =
        sway->spawn(programs() + "/palisor-doctor", {"--product", "palisor", "--rescue"});
    EXPECT_EQ(doctor->wait(), 0) << doctor->output();
    EXPECT_NE(doctor->output().find("are as you configured them"), std::string::npos)
        << doctor->output();
    expectNothingLeft();
}

TEST_F(SwayKilled, LeavesNothingInAModeOfBindingsThatTheUserIsIn) {
    begin({.configuration = "mode \"my mode\" {\n  bindsym Mod4+y nop\n}"});
    sway->run("mode \"my mode\"");
    start(withShortcut);
    EXPECT_FALSE(isBound("Mod1+68")) << "it belongs to the first mode";
    EXPECT_NE(sway->ask("get_binding_state").find("my mode"), std::string::npos);
    killProgram();
    EXPECT_NE(sway->ask("get_binding_state").find("my mode"), std::string::npos);
    sway->run("mode default");
    expectNothingLeft();
}

TEST_F(SwayKilled, HasTheUsersOwnMappingAgain) {
    const testing_support::TempFolder included;
    fs::permissions(included.path(), fs::perms::owner_all | fs::perms::others_all);
    included.write("mouse.conf", "input type:pointer {\n  map_to_region $left\n}");
    begin({.configuration = "set $left 0 0 1920 1080\ninclude " + included.path() + "/m*.conf"});
    ASSERT_FALSE(isFree()) << "by the user's own rule";
    hand->moveTo(960, 540);
    start();
    EXPECT_LT(killProgram(), half);
    EXPECT_TRUE(brightSoon());
    EXPECT_FALSE(isFree());
}

TEST_F(SwayKilled, HasTheMappingOfADeviceAgainThatTheUserNamed) {
    const auto devices = sway->ask("get_inputs");
    const auto begins = devices.find("\"identifier\": \"") + 15;
    const std::string name = devices.substr(begins, devices.find('"', begins) - begins);
    begin({.configuration = "input \"" + name + "\" map_to_region 0 0 1920 1080"});
    ASSERT_FALSE(isFree()) << devices;
    hand->moveTo(960, 540);
    start();
    EXPECT_LT(killProgram(), half);
    EXPECT_FALSE(isFree()) << devices;
}

TEST_F(SwayKilled, LeavesNoGuardAndNoFileBehindAtALogout) {
    start();
    const support::Descriptor handle(::pidfd_open(guard(), 0));
    sway->spawn("swaymsg", {"exit"})->wait();
    EXPECT_TRUE(program->wait()) << program->errors();
    EXPECT_TRUE(support::waitReadable(handle.get(), support::Clock::now() + support::generous));
    EXPECT_FALSE(leftAFile());
}

} // namespace
} // namespace desktop
