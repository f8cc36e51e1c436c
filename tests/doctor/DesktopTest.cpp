#include "HidingProxy.h"
#include "Run.h"
#include "platform/json/Parser.h"
#include "testing/WaylandSession.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

// What the doctor says on private desktops that lack one thing each.

namespace desktop {
namespace {

using support::ChildProcess;
using support::Stopped;
using Keys = std::vector<std::string>;

/// Nothing but `key` is in trouble; it says that, and the last line that not all is well.
void expectOnlyTrouble(const Visit& visit, const std::string& key, const std::string& says) {
    EXPECT_EQ(visit.troubles(), Keys{key}) << visit.said;
    EXPECT_TRUE(holds(visit.of(key), says)) << visit.said;
    EXPECT_TRUE(holds(visit.of(key), ". To mend it: ")) << visit.of(key);
    ASSERT_FALSE(visit.lines().empty());
    EXPECT_EQ(visit.lines().back(), "Not well: 1 trouble for Palisor, see above");
    EXPECT_EQ(visit.status, 1);
    EXPECT_EQ(visit.errors, "");
}

std::unique_ptr<ChildProcess> watcherOn(const support::PrivateDesktop& desktop) {
    auto watcher = desktop.spawn(WATCHER);
    if (!watcher->waitForText("ready")) throw std::runtime_error(watcher->errors());
    return watcher;
}

Keys filesIn(const std::filesystem::path& folder) {
    Keys names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        names.push_back(entry.path());
    std::ranges::sort(names);
    return names;
}

TEST(Doctor, SaysInTheLastLineThatAGoodDesktopIsWell) {
    const Whole whole;
    const Visit visit = whole.visit();
    EXPECT_EQ(visit.troubles(), Keys{}) << visit.said;
    EXPECT_EQ(visit.status, 0);
    EXPECT_EQ(visit.errors, "");
    ASSERT_FALSE(visit.lines().empty());
    EXPECT_EQ(visit.lines().back(), "All is well: Palisor can do all that it should here");
    EXPECT_TRUE(holds(visit.of("monitors"), "2 monitors: DUMMY0 1920x1080+0+0 primary, "
                                            "DUMMY1 1280x1024+1920+56"))
        << visit.said;
    EXPECT_TRUE(holds(visit.of("window-manager"), "Openbox")) << visit.said;
    EXPECT_TRUE(holds(visit.of("extensions"), "XInputExtension 2.")) << visit.said;
}

TEST(Doctor, ChangesNothing) {
    const Whole whole;
    const auto before = filesIn(whole.desktop.home());
    const auto runtime = filesIn(whole.desktop.runtimeFolder());
    EXPECT_EQ(whole.visit().status, 0);
    EXPECT_EQ(filesIn(whole.desktop.home()), before);
    auto after = filesIn(whole.desktop.runtimeFolder());
    std::erase(after, whole.desktop.runtimeFolder() / "palisor"); // the folder of locks
    EXPECT_EQ(after, runtime);
}

TEST(Doctor, MissesATray) {
    const Whole whole({.tray = true});
    expectOnlyTrouble(whole.visit(), "tray", "no tray, so there is no icon");
}

TEST(Doctor, MissesThePanelOfAWatcher) {
    const Whole whole({.tray = true});
    const auto watcher = watcherOn(whole.desktop);
    expectOnlyTrouble(whole.visit(), "tray", "no panel shows them");
}

TEST(Doctor, MissesACompositor) {
    const Whole whole({.compositor = true});
    expectOnlyTrouble(whole.visit(), "compositor", "darkened through their gamma");
    EXPECT_EQ(whole.visit({"--product", "orbisant"}).status, 0) << "which darkens nothing";
}

TEST(Doctor, MissesASecondMonitor) {
    const Whole whole({.layout = "1920x1080+0+0"});
    expectOnlyTrouble(whole.visit(), "monitors", "one monitor only (DUMMY0 1920x1080+0+0");
}

TEST(Doctor, TellsOfMonitorsThatAreMirrored) {
    const Whole whole({.layout = "1920x1080+0+0,1280x1024+0+0"});
    expectOnlyTrouble(whole.visit(), "monitors", "mirrored or overlapping ones count as one");
}

TEST(Doctor, MissesTheExtensionForInput) {
    Whole whole;
    const HidingProxy proxy(whole.desktop.display(), "XInputExtension");
    whole.desktop.setVariable("DISPLAY", proxy.display());
    expectOnlyTrouble(whole.visit(), "extensions", "the X server lacks XInputExtension 2.2");
}

TEST(Doctor, MissesAnExtensionThatTheServerWasStartedWithout) {
    support::PrivateDesktop::Options options;
    options.serverArguments = {"-extension", "XFIXES"};
    options.layout = "1920x1080+0+0";
    options.servers = {support::ServerKind::xvfb};
    const support::PrivateDesktop desktop(options);
    const Visit seen = visit(desktop.environment());
    EXPECT_TRUE(holds(seen.of("extensions"), "TROUBLE, the X server lacks XFIXES 5.0"))
        << seen.said;
    EXPECT_EQ(seen.status, 1);
}

TEST(Doctor, SaysWhereMonitorsCannotBeDarkenedAtAll) {
    support::PrivateDesktop::Options options;
    options.servers = {support::ServerKind::xvfb};
    const support::PrivateDesktop desktop(options);
    const Visit seen = visit(desktop.environment());
    EXPECT_TRUE(holds(seen.of("colours"), "OK, the gamma of the monitors cannot be set"))
        << seen.said;
    EXPECT_TRUE(holds(seen.of("compositor"), "no monitor can be darkened")) << seen.said;
    EXPECT_TRUE(holds(seen.of("monitors"), "OK, 2 monitors: ")) << seen.said;
}

TEST(Doctor, SaysOnWaylandWhatToLogInTo) {
    const support::WaylandSession session;
    const Visit seen = visit(session.environment);
    EXPECT_TRUE(holds(seen.of("session"), "TROUBLE, this is a Wayland session")) << seen.said;
    EXPECT_TRUE(holds(seen.of("session"), "on Xorg")) << seen.said;
    EXPECT_EQ(seen.status, 1);
}

TEST(Doctor, SaysOnXwaylandWhatToLogInTo) {
    support::WaylandSession session;
    session.environment["DISPLAY"] = session.startXwayland();
    const Visit seen = visit(session.environment);
    EXPECT_TRUE(holds(seen.of("session"), "TROUBLE, this is Xwayland")) << seen.said;
    EXPECT_TRUE(holds(seen.of("session"), "on Xorg")) << seen.said;
    EXPECT_EQ(seen.of("monitors"), "") << "they are not the user's";
    EXPECT_EQ(seen.status, 1);
}

TEST(Doctor, WaitsTwoSecondsAtMostForWhoIsSilent) {
    const Whole whole;
    const Stopped server(whole.desktop.serverProcess());
    const Stopped bus(whole.desktop.busProcess());
    const auto start = support::Clock::now();
    const Visit seen = whole.visit();
    const std::chrono::duration<double> took = support::Clock::now() - start;
    EXPECT_TRUE(server.stillIs() && bus.stillIs());
    EXPECT_TRUE(holds(seen.of("session"), "TROUBLE, the X server does not answer")) << seen.said;
    EXPECT_TRUE(holds(seen.of("bus"), "TROUBLE, the session bus does not answer")) << seen.said;
    EXPECT_EQ(seen.status, 1);
    // What waits is two seconds; the rest is a busy machine's.
    EXPECT_LT(took.count(), 4.0);
}

TEST(Doctor, SaysThatAShortcutIsAnotherProgramsAndWhoseItMayBe) {
    const Whole whole; // where Super+E is openbox's
    std::ofstream(whole.settingsFile())
        << propertyList({{"customShortcut", shortcut(14, 0x100000)}});
    const Visit seen = whole.visit();
    expectOnlyTrouble(seen, "shortcut", "Super+E is held by another program");
    EXPECT_TRUE(holds(seen.of("shortcut"), "there run openbox")) << seen.said;
}

TEST(Doctor, FindsAFreeShortcutTimeAndAgain) {
    const Whole whole;
    std::ofstream(whole.settingsFile()) << propertyList(pastTheFirstStart());
    for (int times = 0; times < 2; ++times)
        EXPECT_EQ(whole.visit().of("shortcut"), "OK, Ctrl+Super+K is free for Palisor")
            << "it is given back";
}

TEST(Doctor, DoesNotTryAShortcutThatIsSwitchedOff) {
    const Whole whole;
    std::ofstream(whole.settingsFile()) << propertyList(
        {{"customShortcut", shortcut(14, 0x100000)}, {"customShortcutEnabled", flag(false)}});
    EXPECT_TRUE(holds(whole.visit().of("shortcut"), "OK, none is recorded, or it is switched off"));
}

TEST(Doctor, LeavesARunningProgramAloneAndFindsItWell) {
    Whole whole;
    whole.start();
    const Visit seen = whole.visit();
    EXPECT_EQ(seen.troubles(), Keys{}) << seen.said;
    EXPECT_TRUE(holds(seen.of("program"), "Palisor runs")) << seen.said;
    EXPECT_EQ(seen.of("shortcut"), "OK, Ctrl+Super+K is held by Palisor");
    EXPECT_TRUE(holds(seen.of("tray"), "OK, ") && holds(seen.of("tray"), "has that of Palisor"))
        << seen.said;
    for (const std::string& line : seen.lines())
        EXPECT_TRUE(holds(line, ": OK, ") || line.starts_with("portal: note") ||
                    line == "All is well: Palisor can do all that it should here")
            << line;
    EXPECT_TRUE(whole.program->running());
}

TEST(Doctor, RepeatsWhatTheRunningProgramCannotDo) {
    Whole whole; // where Super+E is openbox's
    whole.start({.hold = false, .more = {{"customShortcut", shortcut(14, 0x100000)}}});
    const Visit seen = whole.visit();
    expectOnlyTrouble(seen, "shortcut", "Super+E is held by another program");
    EXPECT_TRUE(holds(seen.of("hold"), "note, Switched off by --hold off")) << seen.said;
}

TEST(Doctor, TellsOfAProgramThatIsStopped) {
    Whole whole;
    whole.start();
    const Stopped stopped(whole.program->pid());
    expectOnlyTrouble(whole.visit(), "program", "runs but does not answer");
}

TEST(Doctor, TellsOfDamagedSettings) {
    const Whole whole;
    std::ofstream(whole.settingsFile()) << "<plist><dict><key>ATT";
    expectOnlyTrouble(whole.visit(), "settings", "is damaged");
    EXPECT_EQ(whole.storedSettings(), "<plist><dict><key>ATT") << "it stays";
}

TEST(Doctor, NamesOtherProgramsOfTheSameDisplayAndColoursThatTheySet) {
    const Whole whole;
    const std::string nightLight = whole.desktop.home() / "redshift";
    std::filesystem::copy_file("/bin/sleep", nightLight);
    const auto other = whole.desktop.spawn(nightLight, {"1000"});
    const auto elsewhere = std::make_unique<ChildProcess>(ChildProcess::Start{
        .command = {nightLight, "1000"}, .environment = {{"DISPLAY", ":4242"}}});
    ASSERT_EQ(whole.desktop.spawn("xrandr", {"--output", "DUMMY1", "--gamma", "1:0.8:0.6"})->wait(),
              0);
    EXPECT_TRUE(waitUntil([&] { return holds(whole.visit().of("other-programs"), "redshift"); }));
    const Visit seen = whole.visit();
    EXPECT_TRUE(holds(seen.of("other-programs"), "note, ")) << seen.said;
    EXPECT_TRUE(holds(seen.of("colours"), "note, the gamma of DUMMY1 is not plain")) << seen.said;
    EXPECT_EQ(seen.status, 0) << seen.said;
    other->end();
    EXPECT_TRUE(holds(whole.visit().of("other-programs"), "OK, none")) << "another display's";
}

TEST(Doctor, TellsABugReportNothingOfTheUser) {
    Whole whole;
    whole.desktop.setVariable("USER", "wilhelmina");
    whole.desktop.setVariable("LOGNAME", "wilhelmina");
    std::filesystem::create_directories(whole.desktop.configFolder() / "autostart");
    std::ofstream(whole.desktop.configFolder() / "autostart/com.tamberlo.palisor.desktop")
        << "[Desktop Entry]\nType=Application\nExec=/home/wilhelmina/old/palisor\n";
    whole.start();
    const Visit seen = whole.visit({"--product", "palisor", "--json"});
    const auto report = platform::json::Parser().parse(seen.said);
    ASSERT_TRUE(report) << seen.said;
    const auto& checks = std::get<platform::JsonValue::List>(report->member("checks")->held);
    Keys keys;
    for (const auto& check : checks)
        keys.push_back(std::get<std::string>(check.member("key")->held));
    EXPECT_EQ(keys, (Keys{"session", "extensions", "monitors", "window-manager", "compositor",
                          "colours", "shortcut", "bus", "tray", "notifications", "portal",
                          "program", "settings", "autostart", "other-programs", "versions"}));
    char host[256] = {};
    ASSERT_EQ(::gethostname(host, sizeof host - 1), 0);
    const std::string apart = " /,:;'()\"\n";
    for (const std::string& secret :
         {whole.desktop.home().string(), std::string("wilhelmina"), std::string(host),
          std::to_string(whole.program->pid()), std::string("/home/")})
        for (auto at = seen.said.find(secret); at != std::string::npos;
             at = seen.said.find(secret, at + 1))
            EXPECT_FALSE(holds(apart, std::string(1, seen.said[at - 1])) &&
                         holds(apart, std::string(1, seen.said[at + secret.size()])))
                << secret << " in " << seen.said;
    EXPECT_TRUE(holds(seen.said, "~/.config/autostart/com.tamberlo.palisor.desktop")) << seen.said;
}

TEST(Doctor, RefusesACommandLineThatMakesNoSense) {
    const testing_support::TempFolder folder;
    const support::Environment environment{{"PATH", std::getenv("PATH")}, {"HOME", folder.path()}};
    const Visit seen = visit(environment, {"--product", "palisor", "--heal"});
    EXPECT_EQ(seen.status, 2);
    EXPECT_EQ(seen.said, "");
    EXPECT_TRUE(holds(seen.errors, "--heal")) << seen.errors;
    EXPECT_EQ(visit(environment, {"--help"}).status, 0);
    EXPECT_EQ(visit(environment, {"--product", "orbisant", "--version"}).said, "Orbisant 1.0\n");
}

} // namespace
} // namespace desktop
