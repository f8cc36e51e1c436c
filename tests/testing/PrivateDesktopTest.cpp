#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/TestWindow.h"
#include "testing/desktop/Watcher.h"
#include "testing/eye/Eye.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace support;

namespace {

constexpr Colour teal{0, 128, 128};
constexpr Colour sand{240, 220, 130};

PrivateDesktop::Options on(ServerKind kind) {
    PrivateDesktop::Options options;
    options.servers = {kind};
    return options;
}

// Whether a process runs; a zombie counts as one that was not reaped.
bool exists(pid_t pid) {
    return access(("/proc/" + std::to_string(pid)).c_str(), F_OK) == 0;
}

std::map<pid_t, std::string> processesOf(const std::filesystem::path& home) {
    std::map<pid_t, std::string> found;
    for (const auto& folder : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(folder.path() / "environ", std::ios::binary);
        const std::string environment{std::istreambuf_iterator<char>(file), {}};
        if (environment.find("HOME=" + home.string()) != std::string::npos)
            found[std::stoi(folder.path().filename())] =
                std::filesystem::read_symlink(folder.path() / "exe");
    }
    return found;
}

} // namespace

TEST(LayoutText, NamesThePrimaryMonitorByItsStar) {
    const Layout layout = parseLayout("1280x1024+0+0,1920x1080+1280+56*");
    ASSERT_EQ(layout.size(), 2U);
    EXPECT_FALSE(layout[0].primary);
    EXPECT_EQ(layout[1], (Monitor{"DUMMY1", {1280, 56, 1920, 1080}, true}));
    EXPECT_EQ(boundsOf(layout), (Area{0, 0, 3200, 1136}));
}

TEST(LayoutText, RefusesWhatIsNoLayout) {
    for (const char* text : {"", "1920x1080", "1920x1080+0+0,", "1920x1080+0-5",
                             "1920x1080+0+0*,1280x1024+1920+0*", "1920x1080+0+0+7"})
        EXPECT_THROW(parseLayout(text), std::invalid_argument) << text;
}

TEST(ChildProcess, TellsTheStatusAndTheOutputOfACommand) {
    ChildProcess child({{"sh", "-c", "echo seen; echo wrong >&2; exit 7"}, {}, -1, SIGKILL});
    EXPECT_TRUE(child.waitForText("seen"));
    EXPECT_TRUE(child.waitForText("wrong"));
    EXPECT_EQ(child.wait(), 7);
    EXPECT_EQ(child.output(), "seen\n");
    EXPECT_EQ(child.errors(), "wrong\n");
}

TEST(ChildProcess, SaysThatACommandDoesNotExist) {
    EXPECT_THROW(ChildProcess({{"no-such-command-here"}, {}, -1, SIGKILL}), std::runtime_error);
}

TEST(ChildProcess, EndsOneThatIgnoresTheRequestToEnd) {
    ChildProcess child(
        {.command = {"sh", "-c", "trap '' TERM; echo ready; while :; do read x < /dev/zero; done"},
         .environment = {},
         .patience = milliseconds(50)});
    ASSERT_TRUE(child.waitForText("ready"));
    const pid_t pid = child.pid();
    EXPECT_EQ(child.end(), -SIGKILL);
    EXPECT_FALSE(exists(pid));
}

TEST(ChildProcess, DoesNothingForAsLongAsItIsStopped) {
    ChildProcess child({{"sh", "-c", "echo ready; while :; do read x < /dev/zero; done"}, {}});
    ASSERT_TRUE(child.waitForText("ready"));
    const auto own = childrenOf(getpid(), "sh");
    EXPECT_EQ(std::count(own.begin(), own.end(), child.pid()), 1);
    {
        const Stopped stopped(child.pid());
        child.signal(SIGTERM);
        EXPECT_TRUE(stopped.stillIs());
        EXPECT_TRUE(child.running());
    }
    EXPECT_EQ(child.wait(), -SIGTERM);
    EXPECT_THROW(Stopped{child.pid()}, std::runtime_error);
}

class Servers : public testing::TestWithParam<ServerKind> {};

INSTANTIATE_TEST_SUITE_P(Each, Servers, testing::Values(ServerKind::xorg, ServerKind::xvfb),
                         [](const auto& each) {
                             return each.param == ServerKind::xorg ? "Xorg" : "Xvfb";
                         });

TEST_P(Servers, ShowTheMonitorsThatWereAskedForPrimaryFirst) {
    auto options = on(GetParam());
    options.layout = "1280x1024+0+0,1920x1080+1280+56*,800x600+3200+100";
    const PrivateDesktop desktop(options);
    EXPECT_EQ(desktop.monitors(), (Layout{{"DUMMY1", {1280, 56, 1920, 1080}, true},
                                          {"DUMMY0", {0, 0, 1280, 1024}, false},
                                          {"DUMMY2", {3200, 100, 800, 600}, false}}));
}

TEST_P(Servers, PlugMonitorsInAndOut) {
    PrivateDesktop desktop(on(GetParam()));
    const Layout both = desktop.monitors();
    desktop.unplug("DUMMY1");
    EXPECT_EQ(desktop.monitors(), (Layout{{"DUMMY0", {0, 0, 1920, 1080}, true}}));
    desktop.plug("DUMMY1", "1280x1024+1920+56");
    EXPECT_EQ(desktop.monitors(), both);
    desktop.unplug("DUMMY0");
    EXPECT_EQ(desktop.monitors(), (Layout{{"DUMMY1", {1920, 56, 1280, 1024}, true}}));
}

TEST_P(Servers, MoveTheCursorByAsMuchAsTheHandMoves) {
    const PrivateDesktop desktop(on(GetParam()));
    Hand hand(desktop.display());
    const Eye eye(desktop.display());
    hand.moveTo(100, 200);
    EXPECT_EQ(eye.cursor(), (Spot{100, 200}));
    hand.relative(40, -7);
    EXPECT_EQ(eye.cursor(), (Spot{140, 193}));
    hand.push(7, 0, 200, 1000);
    EXPECT_EQ(eye.cursor(), (Spot{140 + 1400, 193}));
}

TEST_P(Servers, GiveTheClickToTheWindowUnderTheCursor) {
    const PrivateDesktop desktop(on(GetParam()));
    Hand hand(desktop.display());
    TestWindow left(desktop.display(), {0, 0, 1920, 1080}, teal);
    TestWindow right(desktop.display(), {1920, 56, 1280, 1024}, sand);
    hand.moveTo(2000, 500);
    hand.click();
    EXPECT_EQ(right.presses(), 1);
    EXPECT_EQ(left.presses(), 0);
    hand.clickAt(100, 100);
    EXPECT_EQ(right.presses(), 1);
    EXPECT_EQ(left.presses(), 1);
}

TEST(Watching, CountsTheTimeThatTheCursorSpendsOutside) {
    const PrivateDesktop desktop;
    Hand hand(desktop.display());
    hand.moveTo(1900, 500);
    Watcher watcher(desktop.display(), {0, 0, 1920, 1080});
    hand.push(1, 0, 100, 1000);
    const Watcher::Report report = watcher.finish();
    EXPECT_EQ(report.leftmost, 1900);
    EXPECT_EQ(report.rightmost, 2000);
    EXPECT_EQ(report.farthestOutside, 2000 - 1919);
    EXPECT_GT(report.shareOutside(), 0.4);
    EXPECT_LT(report.shareOutside(), 1.0);
    EXPECT_GT(report.longestOutsideMs, 40);
}

TEST(Watching, FindsNothingOutsideWhereTheCursorStaysInside) {
    const PrivateDesktop desktop;
    Hand hand(desktop.display());
    hand.moveTo(100, 500);
    Watcher watcher(desktop.display(), {0, 0, 1920, 1080});
    hand.push(3, 0, 50, 1000);
    const Watcher::Report report = watcher.finish();
    EXPECT_GT(report.looks, 10);
    EXPECT_EQ(report.looksOutside, 0);
    EXPECT_EQ(report.rightmost, 250);
}

class Managers : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Each, Managers, testing::Values("openbox", "xfwm4"),
                         [](const auto& each) { return each.param; });

TEST_P(Managers, PlaceAWindowAndMakeItFullScreenOnItsMonitor) {
    PrivateDesktop desktop;
    desktop.startWindowManager(GetParam());
    TestWindow window(desktop.display(), {2000, 300, 400, 300}, teal);
    EXPECT_EQ(window.area(), (Area{2000, 300, 400, 300}));
    window.makeFullScreen();
    EXPECT_EQ(window.area(), (Area{1920, 56, 1280, 1024}));
    window.leaveFullScreen();
    EXPECT_EQ(window.area(), (Area{2000, 300, 400, 300}));
}

TEST_P(Managers, LetAClickThrough) {
    PrivateDesktop desktop;
    desktop.startWindowManager(GetParam());
    TestWindow window(desktop.display(), {2000, 300, 400, 300}, teal);
    Hand hand(desktop.display());
    hand.moveTo(2100, 400);
    hand.click();
    EXPECT_TRUE(window.waitForPresses(1));
}

TEST(Seeing, ShowsWhatTheCompositorPainted) {
    PrivateDesktop desktop;
    desktop.startWindowManager("openbox");
    desktop.startCompositor();
    Eye eye(desktop.display());
    const TestWindow below(desktop.display(), {0, 0, 1920, 1080}, {200, 200, 200});
    ASSERT_TRUE(eye.waitForColour(500, 500, {200, 200, 200}));

    TestWindow above(desktop.display(), {400, 400, 300, 300}, {0, 0, 0});
    const XConnection x(desktop.display());
    // On the frame that the window manager gave it, which is what the compositor looks at.
    const std::uint32_t half = 0x7fffffff;
    for (const SeenWindow& seen : eye.windows())
        if (seen.area.x == 400 && seen.area.width == 300)
            xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, seen.id,
                                x.atom("_NET_WM_WINDOW_OPACITY"), XCB_ATOM_CARDINAL, 32, 1, &half);
    x.sync();
    const auto dimmed = [&] {
        const Colour colour = eye.colour(500, 500);
        return colour.red >= 98 && colour.red <= 102;
    };
    EXPECT_TRUE(eye.waitUntilSeen(dimmed)) << int(eye.colour(500, 500).red);
    desktop.stopCompositor();
    EXPECT_TRUE(eye.waitForColour(500, 500, {0, 0, 0}));
}

TEST(Seeing, WritesThePictureAsAPngFile) {
    const PrivateDesktop desktop;
    Eye eye(desktop.display());
    const TestWindow window(desktop.display(), {100, 100, 200, 100}, sand);
    ASSERT_TRUE(eye.waitForColour(150, 150, sand));
    EXPECT_EQ(eye.colour(99, 150), (Colour{0, 0, 0}));
    const auto file = desktop.home() / "screen.png";
    eye.screenshot(file);
    std::ifstream stream(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_EQ(content.substr(1, 3), "PNG");
    EXPECT_GT(content.size(), 1000U);
}

TEST(Gamma, CanBeReadBackForEachMonitorOfXorg) {
    const PrivateDesktop desktop(on(ServerKind::xorg));
    ASSERT_TRUE(desktop.canGamma());
    const Eye eye(desktop.display());
    const GammaRamp first = eye.gamma("DUMMY0");
    auto child =
        desktop.spawn("xrandr", {"--output", "DUMMY1", "--gamma", "1:1:1", "--brightness", "0.25"});
    ASSERT_EQ(child->wait(), 0) << child->errors();
    EXPECT_EQ(eye.gamma("DUMMY0"), first);
    EXPECT_NEAR(eye.gamma("DUMMY1").red.back(), first.red.back() / 4, 300);
}

TEST(TakingDown, LeavesNoProcessAndNoFileBehind) {
    std::filesystem::path home;
    std::map<pid_t, std::string> started;
    {
        PrivateDesktop desktop;
        home = desktop.home();
        desktop.startWindowManager("xfwm4"); // has the bus start a service of its own
        desktop.startCompositor();
        started = processesOf(home);
    }
    EXPECT_GE(started.size(), 4U); // server, bus, window manager, compositor
    for (const auto& [pid, program] : started)
        EXPECT_FALSE(exists(pid)) << program;
    EXPECT_FALSE(std::filesystem::exists(home.parent_path()));
}

TEST(TakingDown, LeavesNoProcessBehindWhenTheTestIsKilled) {
    Pipe told = makePipe();
    const pid_t test = fork();
    ASSERT_GE(test, 0);
    if (test == 0) {
        PrivateDesktop desktop;
        desktop.startWindowManager("openbox");
        desktop.startCompositor();
        const std::string line = desktop.home().string() + "\n";
        if (write(told.writeEnd.get(), line.data(), line.size()) > 0) pause();
        _exit(1);
    }
    told.writeEnd.reset();
    const auto home = readLine(told.readEnd.get(), Clock::now() + generous);
    ASSERT_TRUE(home);
    std::map<std::string, Descriptor> running;
    for (const auto& [pid, program] : processesOf(*home))
        running[program] = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0)));
    EXPECT_GE(running.size(), 4U);
    kill(test, SIGKILL);
    waitpid(test, nullptr, 0);
    for (const auto& [program, handle] : running)
        EXPECT_TRUE(waitReadable(handle.get(), Clock::now() + generous)) << program;
    std::filesystem::remove_all(std::filesystem::path(*home).parent_path());
}
