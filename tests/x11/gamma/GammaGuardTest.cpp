#include "GammaDesktop.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/TestWindow.h"

#include <fstream>
#include <sys/wait.h>

namespace fs = std::filesystem;
namespace gammaguard = platform::x11::gammaguard;
using support::childrenOf;
using support::Stopped;
using testing_support::TempFolder;
using x11tests::GammaRamp;
using x11tests::scaled;
using x11tests::Session;

namespace {

struct X11GammaGuard : x11tests::GammaDesktop {
    /// An executable in the place of the guard.
    std::string substitute(const std::string& script) {
        const std::string path = folder.path("guard");
        folder.write("guard", "#!/bin/sh\n" + script);
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }
    void useGuard(const std::string& executable) {
        session.reset();
        session = std::make_unique<Session>(desktop.display(), executable);
    }
    std::vector<pid_t> guards() const { return childrenOf(getpid(), "gamma-guard"); }
    bool guardedBy(std::size_t count) {
        return session->loop.runUntil([&] { return guards().size() == count; });
    }
    bool isBright() { return eye.gamma("DUMMY0") == first && eye.gamma("DUMMY1") == second; }

    TempFolder folder;
};

/// As the user may set it, and as a program would darken it.
GammaRamp halfOf(const GammaRamp& ramp) {
    return scaled(ramp, 0.5);
}

} // namespace

TEST_F(X11GammaGuard, PutsBackWhenTheProgramIsKilled) {
    const auto darkener = startDarkener();
    const pid_t guard = guardOf(darkener->pid());
    kill(*darkener);
    expectItEnds(guard);
    EXPECT_TRUE(isBright());
    EXPECT_TRUE(keptFiles().empty());
}

TEST_F(X11GammaGuard, PutsBackAlsoWhenItWasAskedToEndFirst) {
    const auto darkener = startDarkener();
    const pid_t guard = guardOf(darkener->pid());
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ASSERT_EQ(::kill(guard, signal), 0);
    ASSERT_FALSE(isBright());
    kill(*darkener);
    expectItEnds(guard);
    EXPECT_TRUE(isBright());
}

TEST_F(X11GammaGuard, PutsBackTheRampThatAnotherProgramSetLast) {
    const GammaRamp night = setNightLight();
    const auto darkener = desktop.spawn(DARKENER, {GAMMA_GUARD, "0.75"});
    ASSERT_TRUE(darkener->waitForText("shown"));
    xrandr({"--output", "DUMMY1", "--gamma", "1:1:1"});
    const GammaRamp day = eye.gamma("DUMMY1");
    ASSERT_NE(day, night);
    ASSERT_TRUE(support::waitUntil([&] { return eye.gamma("DUMMY1") == scaled(day, 0.25); }));
    const pid_t guard = guardOf(darkener->pid());
    kill(*darkener);
    expectItEnds(guard);
    EXPECT_EQ(eye.gamma("DUMMY1"), day);
}

TEST_F(X11GammaGuard, LeavesARampAloneThatNobodyHadTheTimeToLookAt) {
    const auto darkener = startDarkener();
    const pid_t guard = guardOf(darkener->pid());
    darkener->signal(SIGSTOP);
    const GammaRamp night = setNightLight();
    kill(*darkener);
    expectItEnds(guard);
    EXPECT_EQ(eye.gamma("DUMMY1"), night);
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
}

TEST_F(X11GammaGuard, IsNotLeftBehindAtAnOrderlyEnd) {
    auto window = dark(1, 0.5f);
    EXPECT_TRUE(guardedBy(1));
    window.reset();
    session.reset();
    EXPECT_TRUE(guards().empty());
}

TEST_F(X11GammaGuard, IsStartedAgainWhenItHasDiedAndLeavesNoZombie) {
    auto window = dark(1, 0.5f);
    ASSERT_TRUE(guardedBy(1));
    const pid_t before = guards().front();
    ASSERT_EQ(::kill(before, SIGKILL), 0);
    window->setAlpha(0.75f);
    EXPECT_FALSE(fs::exists("/proc/" + std::to_string(before))) << "reaped";
    ASSERT_TRUE(guardedBy(1));
    EXPECT_NE(guards().front(), before);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
}

TEST_F(X11GammaGuard, IsStartedAgainAlsoWhereNothingChanges) {
    auto window = dark(1, 0.5f);
    ASSERT_TRUE(guardedBy(1));
    const pid_t before = guards().front();
    ASSERT_EQ(::kill(before, SIGKILL), 0);
    EXPECT_TRUE(session->loop.runUntil([&] {
        return !guards().empty() && guards().front() != before &&
               !fs::exists("/proc/" + std::to_string(before));
    }));
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.5));
}

TEST_F(X11GammaGuard, ThatIsStoppedIsReplacedByAnother) {
    auto window = dark(1, 0.5f);
    ASSERT_TRUE(guardedBy(1));
    const Stopped before(guards().front());
    window->setAlpha(0.75f);
    EXPECT_FALSE(before.stillIs());
    EXPECT_TRUE(guardedBy(1));
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
}

TEST_F(X11GammaGuard, ThatIsStoppedDoesNotKeepTheProgram) {
    auto window = dark(1, 0.5f);
    ASSERT_TRUE(guardedBy(1));
    const Stopped guard(guards().front());
    window.reset();
    session.reset();
    EXPECT_TRUE(isBright());
    EXPECT_TRUE(guards().empty());
}

TEST_F(X11GammaGuard, ThatIsMissingOrSilentLetsNothingBeDarkened) {
    for (const std::string& guard :
         {folder.path("nobody"), substitute("exit 0"), substitute("read all")}) {
        SCOPED_TRACE(guard);
        useGuard(guard);
        auto window = dark(1, 0.75f);
        EXPECT_TRUE(isBright());
        window->setAlpha(0.5f);
        EXPECT_TRUE(isBright());
        EXPECT_EQ(logged("the gamma guard"), 1u);
        EXPECT_EQ(logged("compositor"), 1u) << "what would help";
        support::TestWindow beneath(desktop.display(), {2000, 100, 600, 400}, {255, 255, 255});
        support::Hand hand(desktop.display());
        hand.moveTo(2200, 300);
        window->makeKeyAndOrderFront();
        session->connection.sync();
        hand.click(1);
        EXPECT_EQ(beneath.presses(), 0);
    }
}

TEST_F(X11GammaGuard, ThatCannotBeReplacedLetsTheMonitorsBeBrightAgain) {
    fs::copy_file(GAMMA_GUARD, folder.path("gamma-guard"));
    useGuard(folder.path("gamma-guard"));
    auto window = dark(1, 0.75f);
    ASSERT_TRUE(guardedBy(1));
    fs::remove(folder.path("gamma-guard"));
    ASSERT_EQ(::kill(guards().front(), SIGKILL), 0);
    EXPECT_TRUE(waitForGamma("DUMMY1", second));
    EXPECT_TRUE(guards().empty());
}

TEST_F(X11GammaGuard, NeedsAFolderThatCanBeWrittenTo) {
    const auto nowhere = folder.path("nowhere");
    session = std::make_unique<Session>(desktop.display(), GAMMA_GUARD, true, nowhere);
    auto window = dark(1, 0.75f);
    EXPECT_TRUE(isBright());
    EXPECT_EQ(logged(nowhere), 1u);
    fs::create_directory(nowhere);
    window->setAlpha(0.5f);
    EXPECT_EQ(eye.gamma("DUMMY1"), halfOf(second));
}

TEST_F(X11GammaGuard, HasTheRampsInAFileForAsLongAsSomethingIsDark) {
    session = sessionInTheRuntimeFolder();
    EXPECT_TRUE(keptFiles().empty());
    auto window = dark(1, 0.75f);
    const auto files = keptFiles();
    ASSERT_EQ(files.size(), 2u) << "the ramps, and who has them locked";
    EXPECT_EQ(fs::path(files[1]).extension(), ".lock");
    EXPECT_EQ(fs::status(files[0]).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    std::ifstream file(files[0], std::ios::binary);
    const auto kept = gammaguard::keptIn(std::string{std::istreambuf_iterator<char>(file), {}});
    ASSERT_TRUE(kept.has_value());
    ASSERT_EQ(kept->ramps.size(), 1u);
    gammaguard::Ramp whole = second.red;
    whole.insert(whole.end(), second.green.begin(), second.green.end());
    whole.insert(whole.end(), second.blue.begin(), second.blue.end());
    EXPECT_EQ(kept->ramps.begin()->second, whole);
    window->orderOut();
    EXPECT_TRUE(keptFiles().empty());
}

namespace {

/// What a kill left behind.
struct X11LeftDark : X11GammaGuard {
    void SetUp() override {
        X11GammaGuard::SetUp();
        if (IsSkipped()) return;
        killBoth(*startDarkener());
        ASSERT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    }
};

} // namespace

TEST_F(X11LeftDark, IsBrightAfterTheNextStart) {
    session = sessionInTheRuntimeFolder();
    EXPECT_TRUE(isBright());
    EXPECT_TRUE(keptFiles().empty());
    dark(1, 0.75f).reset();
    EXPECT_TRUE(isBright());
}

TEST_F(X11LeftDark, IsBrightOnceItIsAskedFor) {
    const support::XConnection x(desktop.display());
    EXPECT_TRUE(gammaguard::rescue(x.get(), x.root(), desktop.runtimeFolder()));
    EXPECT_TRUE(isBright());
    EXPECT_FALSE(gammaguard::rescue(x.get(), x.root(), desktop.runtimeFolder()));
}

TEST_F(X11LeftDark, IsNotTakenForTheUsersByAProgramThatRunsAlready) {
    session = sessionInTheRuntimeFolder();
    killBoth(*startDarkener());
    auto window = dark(1, 0.5f);
    EXPECT_EQ(eye.gamma("DUMMY1"), halfOf(second));
    window.reset();
    EXPECT_TRUE(isBright());
}

TEST_F(X11LeftDark, IsLeftAsTheUserHasSetItSince) {
    const GammaRamp night = setNightLight();
    session = sessionInTheRuntimeFolder();
    EXPECT_EQ(eye.gamma("DUMMY1"), night);
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
}

TEST_F(X11LeftDark, IsNoAffairOfAnotherServer) {
    support::PrivateDesktop other("1920x1080+0+0,1280x1024+1920+56");
    const support::Eye otherEye(other.display());
    const auto set =
        other.spawn("xrandr", {"--output", "DUMMY1", "--gamma", "1:1:1", "--brightness", "0.25"});
    ASSERT_EQ(set->wait(), 0);
    const GammaRamp before = otherEye.gamma("DUMMY1");
    Session there(other.display(), GAMMA_GUARD, true, desktop.runtimeFolder());
    EXPECT_EQ(otherEye.gamma("DUMMY1"), before);
    darkOf(there, 1, 0.5f).reset();
    EXPECT_EQ(otherEye.gamma("DUMMY1"), before);
    EXPECT_EQ(keptFiles().size(), 2u) << "of this one";
}

TEST_F(X11LeftDark, IsAsItWasWhereTheFileIsDamaged) {
    const std::string file = keptFiles().front();
    fs::resize_file(file, fs::file_size(file) / 2);
    const GammaRamp before = eye.gamma("DUMMY1");
    session = sessionInTheRuntimeFolder();
    EXPECT_EQ(eye.gamma("DUMMY1"), before);
    dark(1, 0.5f).reset();
    EXPECT_EQ(eye.gamma("DUMMY1"), before);
}

TEST_F(X11LeftDark, IsBrightWhereverARampStillFits) {
    const std::string file = keptFiles().front();
    std::ifstream input(file, std::ios::binary);
    auto kept = gammaguard::keptIn(std::string{std::istreambuf_iterator<char>(input), {}});
    ASSERT_TRUE(kept && kept->ramps.size() == 2);
    // The one monitor has got a larger ramp, and a third one is gone.
    kept->ramps.begin()->second.resize(3 * 1024);
    kept->ramps[0x7654321] = kept->ramps.rbegin()->second;
    std::ofstream(file, std::ios::binary) << gammaguard::textOf(*kept);
    const GammaRamp before = eye.gamma("DUMMY0");
    session = sessionInTheRuntimeFolder();
    EXPECT_EQ(eye.gamma("DUMMY0"), before);
    EXPECT_EQ(eye.gamma("DUMMY1"), second);
    EXPECT_TRUE(keptFiles().empty());
}

TEST_F(X11GammaGuard, OfTwoProgramsOneDarkensAndNeitherTakesADarkRampForTheUsers) {
    const auto darkener = startDarkener();
    session = sessionInTheRuntimeFolder();
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    auto window = dark(1, 0.5f);
    EXPECT_EQ(eye.gamma("DUMMY1"), scaled(second, 0.25));
    window->setAlpha(0.25f);
    EXPECT_EQ(logged("another program"), 1u);
    const pid_t guard = guardOf(darkener->pid());
    kill(*darkener);
    expectItEnds(guard);
    EXPECT_TRUE(isBright());
    window->setAlpha(0.5f);
    EXPECT_EQ(eye.gamma("DUMMY1"), halfOf(second));
    window.reset();
    EXPECT_TRUE(isBright());
}

TEST_F(X11GammaGuard, ThatWakesAfterItsTimeDoesNothing) {
    const auto darkener = startDarkener();
    const pid_t guard = guardOf(darkener->pid());
    {
        const Stopped stopped(guard);
        kill(*darkener);
        session = sessionInTheRuntimeFolder();
        ASSERT_TRUE(isBright()) << "the next start does not wait for it";
        xrandr({"--output", "DUMMY1", "--gamma", "1:1:1", "--brightness", "0.5"});
        second = eye.gamma("DUMMY1");
    }
    expectItEnds(guard);
    EXPECT_TRUE(isBright());
}

TEST_F(X11GammaGuard, ThatWakesWhileTheNextProgramDarkensDoesNothing) {
    const auto darkener = startDarkener();
    const pid_t guard = guardOf(darkener->pid());
    std::unique_ptr<platform::Window> window;
    {
        const Stopped stopped(guard);
        kill(*darkener);
        session = sessionInTheRuntimeFolder();
        window = dark(1, 0.5f);
    }
    expectItEnds(guard);
    EXPECT_EQ(eye.gamma("DUMMY1"), halfOf(second));
    EXPECT_EQ(keptFiles().size(), 2u);
}

TEST_F(X11GammaGuard, ThatWakesBeforeAnybodyElseCameDoesItsWork) {
    const auto darkener = startDarkener();
    const pid_t guard = guardOf(darkener->pid());
    {
        const Stopped stopped(guard);
        kill(*darkener);
        ASSERT_FALSE(isBright());
    }
    expectItEnds(guard);
    EXPECT_TRUE(isBright());
}

TEST(X11GammaRamps, AreReadAsTheyWereWrittenOrNotAtAll) {
    const gammaguard::Kept kept{"owner", {{63, {0, 1, 2, 3, 65535, 5}}, {64, {7, 8, 9}}}};
    const std::string text = gammaguard::textOf(kept);
    const auto read = gammaguard::keptIn(text);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->owner, kept.owner);
    EXPECT_EQ(read->ramps, kept.ramps);
    // The last character is the end of the line.
    for (std::size_t length = 0; length + 1 < text.size(); ++length)
        EXPECT_FALSE(gammaguard::keptIn(text.substr(0, length)).has_value()) << length;
    for (const std::string wrong : {"1 70000 1", "1 1 70000 1 1", "1 0", "1 1 x 0 0"})
        EXPECT_FALSE(gammaguard::keptIn("gamma-ramps-1 owner 1\n" + wrong + "\nend\n")) << wrong;
}

TEST(X11GammaRamps, AreDarkenedOnesOnlyWhereEveryValueIsScaledAlike) {
    const gammaguard::Ramp ramp{0, 20000, 40000, 0, 10000, 60000, 0, 30000, 50000};
    const auto times = [&](double red, double green, double blue, int more) {
        gammaguard::Ramp result = ramp;
        for (std::size_t i = 0; i < ramp.size(); ++i)
            result[i] = static_cast<std::uint16_t>(std::lround(ramp[i] * (i < 3   ? red
                                                                          : i < 6 ? green
                                                                                  : blue)) +
                                                   more);
        return result;
    };
    EXPECT_TRUE(gammaguard::isDarkened(ramp, ramp));
    EXPECT_TRUE(gammaguard::isDarkened(times(0, 0, 0, 0), ramp));
    EXPECT_TRUE(gammaguard::isDarkened(times(0.3, 0.3, 0.3, 0), ramp));
    EXPECT_TRUE(gammaguard::isDarkened(times(0.3, 0.3, 0.3, 200), ramp)) << "eight bits";
    EXPECT_FALSE(gammaguard::isDarkened(times(1, 0.8, 0.6, 0), ramp));
    EXPECT_FALSE(gammaguard::isDarkened(times(1.05, 1.05, 1.05, 0), ramp));
    EXPECT_FALSE(gammaguard::isDarkened({}, ramp));
    EXPECT_FALSE(gammaguard::isDarkened({0, 0, 0}, ramp));
}
