#include "doctor/checks/Checks.h"
#include "app/Variants.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace doctor {
namespace {

namespace variants = palisor::variants;

/// A desktop where all is well.
Facts goodFacts(int variant = variants::barrier) {
    Facts facts;
    facts.product = {"palisor", "Palisor", "com.tamberlo.palisor", "1.0", variant};
    facts.display = ":0";
    facts.serverAnswers = true;
    facts.server.isReached = true;
    facts.server.extensions = {{"RANDR", "1.6", "1.5", true}, {"XTEST", "2.2", "", true}};
    facts.server.monitors = {{"A", {0, 0, 800, 600}, true}, {"B", {800, 0, 800, 600}, false}};
    facts.server.screens = {{0, 0, 800, 600}, {800, 0, 800, 600}};
    facts.server.windowManager = "Openbox";
    facts.server.hasCompositor = true;
    facts.server.hasTray = true;
    facts.server.holdsCursor = true;
    facts.server.ramps = {{"A", true, true}, {"B", true, true}};
    facts.bus.state = BusFacts::State::answers;
    facts.bus.notifications.isThere = true;
    facts.bus.portal.isThere = facts.bus.portalHasSettings = true;
    facts.bus.calendar.canStart = true;
    facts.hasCalendarModule = true;
    facts.settings = {.path = "/h/.config/a.plist", .canWrite = true};
    return facts;
}

const Finding* find(const Report& report, const std::string& key) {
    const auto found = std::ranges::find(report.findings, key, &Finding::key);
    return found == report.findings.end() ? nullptr : &*found;
}

/// Nothing but this is in trouble, and it says that and what to do.
void expectTrouble(const Facts& facts, const std::string& key, const std::string& says,
                   const std::string& mend = {}) {
    const Report report = examine(facts);
    for (const Finding& finding : report.findings)
        EXPECT_EQ(finding.level == Level::trouble, finding.key == key)
            << finding.key << ": " << finding.says;
    const Finding* const found = find(report, key);
    ASSERT_NE(found, nullptr) << key;
    EXPECT_NE(found->says.find(says), std::string::npos) << found->says;
    EXPECT_NE(found->mend.find(mend), std::string::npos) << found->mend;
    EXPECT_FALSE(found->mend.empty()) << key;
}

TEST(Doctor, FindsNothingWhereAllIsWell) {
    for (const int variant : {variants::barrier, variants::calendarAlerts, variants::keepAwake}) {
        const Report report = examine(goodFacts(variant));
        EXPECT_TRUE(isWell(report)) << asText(report);
        EXPECT_EQ(find(report, "calendar") != nullptr, variant == variants::calendarAlerts);
    }
}

TEST(Doctor, TellsOfAServerThatIsSilent) {
    Facts facts = goodFacts();
    facts.serverAnswers = false;
    expectTrouble(facts, "session", "does not answer", "log out");
}

/// A Wayland session that the program joins.
Facts goodWaylandFacts() {
    Facts facts = goodFacts();
    facts.waylandDisplay = "wayland-1";
    facts.compositorAnswers = true;
    facts.wayland.isJoined = true;
    facts.wayland.compositor = "sway 1.10.1";
    facts.wayland.screens = {{.frame = {0, 0, 800, 600}, .name = "A"},
                             {.frame = {800, 0, 640, 480}, .name = "B"}};
    return facts;
}

TEST(Doctor, TellsTheCompositorAndItsMonitorsOfAWaylandSession) {
    const Report report = examine(goodWaylandFacts());
    EXPECT_TRUE(isWell(report)) << asText(report);
    EXPECT_EQ(find(report, "session")->says, "Wayland, the compositor is sway 1.10.1");
    EXPECT_EQ(find(report, "monitors")->says, "2 monitors: A 800x600, B 640x480");
    EXPECT_EQ(find(report, "extensions"), nullptr) << "they are Xwayland's";
}

TEST(Doctor, TellsWhatKeepsTheProgramFromJoiningAWaylandSession) {
    Facts facts = goodWaylandFacts();
    facts.wayland = {.refusal = "the compositor lacks wp_viewporter; log in to an X11 session"};
    expectTrouble(facts, "session", "the compositor lacks wp_viewporter", "on Xorg");
    facts.compositorAnswers = false;
    expectTrouble(facts, "session", "the compositor does not answer", "log out");
}

TEST(Doctor, TellsThatAWaylandSessionHasOneMonitorOnly) {
    Facts facts = goodWaylandFacts();
    facts.wayland.screens.pop_back();
    expectTrouble(facts, "monitors", "one monitor only (A 800x600)", "second monitor");
}

TEST(Doctor, TellsOfAWaylandSessionAllThatTheProgramLacksThere) {
    Facts facts = goodWaylandFacts();
    facts.running.process = facts.bus.program = 7;
    facts.bus.programAnswers = true;
    facts.bus.told.emplace().capabilities = {{"tray", false, "no tray: there is nowhere."},
                                             {"hold", true, "not while dragging."},
                                             {"darkness", true, {}}};
    const Report report = examine(facts);
    EXPECT_EQ(find(report, "tray")->says, "no tray: there is nowhere");
    EXPECT_EQ(find(report, "hold")->says, "not while dragging");
    EXPECT_EQ(find(report, "darkness"), nullptr);
}

TEST(Doctor, TellsWhatMendsTheExtensionOfGnomeShell) {
    Facts facts = goodFacts();
    facts.waylandDisplay = "wayland-0";
    facts.bus.shellExtension = ShellExtension::on;
    EXPECT_EQ(find(examine(facts), "session")->level, Level::ok);
    const std::tuple<ShellExtension, const char*, const char*> rows[] = {
        {ShellExtension::notInstalled, "does not have the extension", "palisor setup gnome"},
        {ShellExtension::notSeenYet, "only at login", "log out and in again"},
        {ShellExtension::off, "switched off", "palisor setup gnome"},
        {ShellExtension::failed, "has failed", "palisor setup gnome"},
        {ShellExtension::otherRelease, "another release", "palisor setup gnome, then log out"}};
    for (const auto& [state, says, mend] : rows) {
        facts.bus.shellExtension = state;
        expectTrouble(facts, "session", says, mend);
    }
}

TEST(Doctor, TellsOfXwaylandWhatToLogInTo) {
    Facts facts = goodFacts();
    facts.server.refusal = "this is Xwayland, where the pointer is the compositor's; log in";
    expectTrouble(facts, "session", "this is Xwayland", "on Xorg");
    EXPECT_EQ(find(examine(facts), "monitors"), nullptr) << "they are not the user's";
}

TEST(Doctor, NamesAllExtensionsThatAreTooOld) {
    Facts facts = goodFacts();
    facts.server.refusal = "the X server lacks the extension RANDR 1.5";
    facts.server.screens.clear();
    facts.server.extensions = {
        {"RANDR", "1.4", "1.5", false}, {"XFIXES", "", "5.0", false}, {"XTEST", "", "", false}};
    expectTrouble(facts, "extensions", "lacks RANDR 1.5, XFIXES 5.0", "xserver-xorg-core");
}

TEST(Doctor, SaysWhatIsLostWithoutAnExtensionThatIsNotNeeded) {
    Facts facts = goodFacts();
    facts.server.extensions[1].version.clear();
    facts.server.holdsCursor = false;
    const Report report = examine(facts);
    EXPECT_TRUE(isWell(report));
    const Finding& found = *find(report, "extensions");
    EXPECT_EQ(found.level, Level::note);
    EXPECT_NE(found.says.find("without XTEST desktops"), std::string::npos) << found.says;
    EXPECT_NE(found.says.find("before XInput 2.3"), std::string::npos) << found.says;
}

TEST(Doctor, CountsMirroredMonitorsAsOne) {
    Facts facts = goodFacts();
    facts.server.monitors[1].area = facts.server.monitors[0].area;
    facts.server.screens.resize(1);
    expectTrouble(facts, "monitors", "count as one", "xrandr --output B --auto --right-of A");
}

TEST(Doctor, AsksOnlyTheBarrierForASecondMonitorAndACompositor) {
    Facts facts = goodFacts(variants::wrapAround);
    facts.server.monitors.resize(1);
    facts.server.screens.resize(1);
    facts.server.hasCompositor = false;
    EXPECT_TRUE(isWell(examine(facts)));
    facts.product.variant = variants::barrier;
    EXPECT_FALSE(isWell(examine(facts)));
}

TEST(Doctor, SaysWhetherMonitorsCanBeDarkenedWithoutACompositor) {
    Facts facts = goodFacts();
    facts.server.hasCompositor = false;
    expectTrouble(facts, "compositor", "gamma and colours jump", "apt install picom");
    facts.server.ramps.clear();
    expectTrouble(facts, "compositor", "no monitor can be darkened", "apt install picom");
}

TEST(Doctor, HeedsColoursThatSomebodyHasSetAndMendsThoseLeftDark) {
    Facts facts = goodFacts();
    facts.server.ramps[1].isPlain = false;
    const Report report = examine(facts);
    EXPECT_TRUE(isWell(report));
    EXPECT_EQ(find(report, "colours")->level, Level::note);
    EXPECT_NE(find(report, "colours")->says.find("of B is"), std::string::npos);
    facts.server.leftDark = true;
    expectTrouble(facts, "colours", "left a monitor dark", "--rescue");
}

TEST(Doctor, KnowsATrayOfEitherKind) {
    Facts facts = goodFacts();
    facts.server.hasTray = false;
    facts.desktop = "XFCE";
    expectTrouble(facts, "tray", "no tray", "Status Tray Plugin");
    facts.bus.itemWatcher.isThere = true;
    facts.desktop = "GNOME";
    expectTrouble(facts, "tray", "no panel shows them", "gnome-shell-extension-appindicator");
    facts.bus.hasItemHost = true;
    EXPECT_TRUE(isWell(examine(facts)));
}

TEST(Doctor, SaysWhoMayHoldTheShortcut) {
    Facts facts = goodFacts();
    facts.settings.shortcut = platform::Shortcut{14, platform::Shortcut::command};
    facts.server.shortcut = "Super+E";
    EXPECT_EQ(find(examine(facts), "shortcut")->says, "Super+E is free for Palisor");
    facts.server.isShortcutTaken = true;
    facts.keyHolders = {"sxhkd", "openbox"};
    expectTrouble(facts, "shortcut", "sxhkd, openbox", "record another one");
}

/// The program runs here and tells this.
Facts factsWith(const ProgramTells& told) {
    Facts facts = goodFacts();
    facts.settings.shortcut = platform::Shortcut{14, platform::Shortcut::command};
    facts.server.shortcut = "Super+E";
    facts.running.process = facts.bus.program = 12;
    facts.bus.programAnswers = true;
    facts.bus.told = told;
    return facts;
}

const ProgramTells allIsWell{
    .shortcut = "Super+E",
    .capabilities = {{"hold", true, ""}, {"tray", true, ""}, {"shortcut", true, ""}}};

TEST(Doctor, AsksTheProgramWhetherItHoldsTheShortcut) {
    ProgramTells told = allIsWell;
    EXPECT_EQ(find(examine(factsWith(told)), "shortcut")->says, "Super+E is held by Palisor");
    told.shortcut.clear();
    EXPECT_EQ(find(examine(factsWith(told)), "shortcut")->says,
              "Super+E is not claimed by Palisor");
    told.capabilities[2] = {"shortcut", false, "Another program holds it."};
    expectTrouble(factsWith(told), "shortcut", "held by another program", "record another one");
    told.capabilities.resize(2); // an earlier version
    EXPECT_EQ(find(examine(factsWith(told)), "shortcut")->says,
              "Super+E, not tried while Palisor runs");
}

TEST(Doctor, AsksTheProgramWhetherTheTrayHasItsIcon) {
    ProgramTells told = allIsWell;
    EXPECT_NE(find(examine(factsWith(told)), "tray")->says.find("has that of Palisor"),
              std::string::npos);
    told.capabilities[1].available = false;
    expectTrouble(factsWith(told), "tray", "has not found it", "start it again");
    Facts facts = factsWith(told);
    facts.bus.program = 13; // of another display
    EXPECT_TRUE(isWell(examine(facts)));
}

TEST(Doctor, RepeatsWhatTheProgramSaysThatItCannotDo) {
    ProgramTells told = allIsWell;
    EXPECT_EQ(find(examine(factsWith(told)), "hold"), nullptr);
    told.capabilities[0] = {"hold", false, "Switched off."};
    const Report report = examine(factsWith(told));
    ASSERT_NE(find(report, "hold"), nullptr);
    EXPECT_EQ(find(report, "hold")->level, Level::note);
    EXPECT_EQ(find(report, "hold")->says, "Switched off");
    EXPECT_TRUE(isWell(report));
}

TEST(Doctor, TellsWhatIsWrongWithTheSettingsFile) {
    using File = SettingsFacts::File;
    Facts facts = goodFacts();
    const std::pair<File, std::string> faults[] = {{File::blank, "is empty"},
                                                   {File::damaged, "damaged"},
                                                   {File::foreign, "no file of settings"},
                                                   {File::unreadable, "cannot be read"}};
    for (const auto& [file, says] : faults) {
        facts.settings.file = file;
        expectTrouble(facts, "settings", says);
    }
    facts.settings.file = File::repeatsKeys;
    EXPECT_TRUE(isWell(examine(facts)));
    facts.settings.canWrite = false;
    expectTrouble(facts, "settings", "cannot be written");
    facts.settings.path.clear();
    expectTrouble(facts, "settings", "no folder", "HOME");
}

TEST(Doctor, NamesAutostartEntriesOfProgramsThatAreGone) {
    Facts facts = goodFacts();
    facts.autostart = {{"/a/one.desktop", {"/bin/there"}, true, false, false},
                       {"/a/two.desktop", {"/bin/gone"}, false, false, false}};
    const Report report = examine(facts);
    EXPECT_EQ(report.findings.size(), examine(goodFacts()).findings.size() + 1);
    const std::string text = asText(report);
    EXPECT_NE(text.find("autostart: OK, /a/one.desktop starts at login"), std::string::npos);
    EXPECT_NE(text.find("autostart: TROUBLE, /a/two.desktop starts /bin/gone, which is not there"),
              std::string::npos);
    facts.autostart.front().isOff = true;
    EXPECT_NE(asText(examine(facts)).find("one.desktop is switched off"), std::string::npos);
}

TEST(Doctor, TellsAProgramThatHangsFromOneThatRuns) {
    Facts facts = goodFacts();
    facts.running.process = 12;
    facts.bus.program = 12;
    facts.bus.programAnswers = true;
    EXPECT_TRUE(isWell(examine(facts)));
    facts.bus.programAnswers = false;
    expectTrouble(facts, "program", "does not answer", "--rescue");
    facts.bus.program = 13; // of another display
    EXPECT_TRUE(isWell(examine(facts)));
    facts.running.isStopped = true;
    expectTrouble(facts, "program", "does not answer", "--rescue");
}

TEST(Doctor, MissesTheServicesOfTheSession) {
    Facts facts = goodFacts();
    facts.bus.notifications.isThere = false;
    expectTrouble(facts, "notifications", "no service shows notices", "apt install");
    facts.bus.notifications.canStart = true;
    EXPECT_TRUE(isWell(examine(facts)));
    facts.bus.portal = {};
    facts.bus.portalHasSettings = false;
    EXPECT_EQ(find(examine(facts), "portal")->level, Level::note);
    facts.bus.state = BusFacts::State::silent;
    expectTrouble(facts, "bus", "does not answer", "log out");
    facts.bus.state = BusFacts::State::none;
    expectTrouble(facts, "bus", "no session bus", "dbus-user-session");
}

TEST(Doctor, MissesTheCalendar) {
    Facts facts = goodFacts(variants::calendarAlerts);
    facts.bus.calendar = {};
    expectTrouble(facts, "calendar", "no calendar server", "evolution-data-server");
    facts.calendarFolder = "/no/such/folder";
    expectTrouble(facts, "calendar", "is not there", "CalendarFolder");
    facts.hasCalendarModule = false;
    expectTrouble(facts, "calendar", "module is missing");
}

} // namespace
} // namespace doctor
