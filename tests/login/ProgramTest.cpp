#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

// Starting at login as a user has it: switched on in the menu, then a new session.

namespace {

namespace fs = std::filesystem;
using namespace support;

constexpr xcb_keysym_t up = 0xff52;
constexpr const char* helperSuffix = "Helper.desktop";

struct LoginOfTheProgram : testing::Test {
    LoginOfTheProgram() {
        desktop.startWindowManager("openbox");
        hand.moveTo(400, 300);
    }

    void installInto(const fs::path& prefix) {
        const auto install =
            desktop.spawn(CMAKE, {"--install", BUILD, "--prefix", prefix.string()});
        ASSERT_EQ(install->wait(), 0) << install->errors();
        bin = prefix / "bin";
    }

    /// Not the first start of its life, so that no menu opens by itself.
    void start(const std::string& product) {
        name = product;
        identifier = "com.tamberlo." + product;
        std::ofstream(desktop.configFolder() / (identifier + ".plist"))
            << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
               "<key>PRIMOACCESSO</key><string>1</string>"
               "<key>PRIMOACCESSOCONSLIDER</key><string>1</string>"
               "<key>RECOMMENDAUTOLOGIN</key><string>1</string>"
               "<key>customShortcut</key><dict><key>keyCode</key><integer>40</integer>"
               "<key>modifierFlags</key><integer>1310720</integer></dict>"
               "<key>CHECK_0</key><string>1</string>"
               "<key>CHECK_1</key><string>0</string></dict></plist>\n";
        program = desktop.spawn(bin / product);
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    }

    std::optional<Area> menu() {
        for (const auto& window : eye.windows())
            if (window.mapped && window.overrideRedirect && !window.inputOnly &&
                window.area.width > 60 && window.area.width < 600)
                return window.area;
        return std::nullopt;
    }

    /// Painted, and not only mapped: it has the keyboard by then, before it may not.
    bool waitForMenu() {
        constexpr double bright = 150;
        return eye.waitUntilSeen([&] {
            const auto area = menu();
            return area && eye.picture(*area).brightness() > bright;
        });
    }

    /// The last entry of the menu quits, the one before it is this.
    void toggleStartAtLogin() {
        EXPECT_EQ(desktop.spawn(bin / name)->wait(), 0) << "a second start shows the menu";
        ASSERT_TRUE(waitForMenu());
        hand.type(up);
        hand.type(up);
        hand.type(key::enter);
        ASSERT_TRUE(eye.waitUntilSeen([&] { return !menu(); }));
    }

    fs::path entry(const std::string& end) const {
        return desktop.configFolder() / "autostart" / (identifier + end);
    }
    bool isThereSoon(const fs::path& path, bool there) const {
        const auto deadline = Clock::now() + generous;
        while (fs::exists(path) != there)
            if (Clock::now() > deadline) return false;
        return true;
    }

    void expectValid(const fs::path& path) const {
        const auto validator = desktop.spawn("desktop-file-validate", {path});
        EXPECT_EQ(validator->wait(), 0);
        EXPECT_EQ(validator->output() + validator->errors(), "");
    }

    std::unique_ptr<ChildProcess> freshBus() {
        auto bus = desktop.spawn("dbus-daemon",
                                 {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        EXPECT_TRUE(bus->waitForText("\n"));
        const std::string address = bus->output();
        desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", address.substr(0, address.find('\n')));
        return bus;
    }

    std::string namesOnTheBus() const {
        const auto asked =
            desktop.spawn("dbus-send", {"--session", "--print-reply", "--dest=org.freedesktop.DBus",
                                        "/org/freedesktop/DBus", "org.freedesktop.DBus.ListNames"});
        EXPECT_TRUE(asked->waitForText("]\n"));
        return asked->output();
    }
    bool isOnTheBusSoon(const std::string& wanted, bool there) const {
        const auto deadline = Clock::now() + generous;
        while ((namesOnTheBus().find('"' + wanted + '"') != std::string::npos) != there)
            if (Clock::now() > deadline) return false;
        return true;
    }

    /// The session in which it was switched on ends, and the user logs in again.
    void expectToComeUpInANewSession() {
        program->end();
        const auto bus = freshBus();
        const auto session = desktop.spawn("gio", {"launch", entry(helperSuffix)});
        EXPECT_TRUE(session->waitForText(identifier + " is up")) << session->errors();
        EXPECT_TRUE(isOnTheBusSoon(identifier + "Helper", false)) << "the helper goes away";
        EXPECT_TRUE(isOnTheBusSoon(identifier, true)) << session->errors();
        EXPECT_EQ(session->errors().find("ended"), std::string::npos) << session->errors();
    }

    PrivateDesktop desktop{"1280x800+0+0,1024x768+1280+16"};
    Eye eye{desktop.display()};
    Hand hand{desktop.display()};
    TemporaryFolder folder;
    fs::path bin = PROGRAMS;
    std::string name, identifier;
    std::unique_ptr<ChildProcess> program;
};

TEST_F(LoginOfTheProgram, SwitchedOnInTheMenuComesUpInTheNextSession) {
    start("palisor");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(entry(helperSuffix), true));
    expectValid(entry(helperSuffix));
    EXPECT_FALSE(fs::exists(entry(".desktop"))) << "only the desktop switcher has a second one";
    expectToComeUpInANewSession();
}

TEST_F(LoginOfTheProgram, SwitchedOffAgainLeavesNothing) {
    start("palisor");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(entry(helperSuffix), true));
    toggleStartAtLogin();
    EXPECT_TRUE(isThereSoon(entry(helperSuffix), false));
}

TEST_F(LoginOfTheProgram, TheDesktopSwitcherIsInTheSessionsListBesides) {
    start("quenlow");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(entry(helperSuffix), true));
    expectValid(entry(".desktop"));
    // As when it was switched on twice.
    fs::copy_file(entry(".desktop"), entry("-2.desktop"));
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(entry(helperSuffix), false));
    EXPECT_FALSE(fs::exists(entry(".desktop")));
    EXPECT_FALSE(fs::exists(entry("-2.desktop")));
}

TEST_F(LoginOfTheProgram, WorksFromAnInstalledTreeWithOddCharactersInItsPath) {
    installInto(folder.path() / "a tree $of 100% \"its\" own");
    start("orbisant");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(entry(helperSuffix), true));
    expectValid(entry(helperSuffix));
    expectToComeUpInANewSession();
}

TEST_F(LoginOfTheProgram, AnInstalledTreeIsComplete) {
    installInto(folder.path() / "usr");
    const fs::path share = folder.path() / "usr/share";
    const std::pair<const char*, const char*> products[] = {{"palisor", "Palisor"},
                                                            {"vellumor", "Vellumor"},
                                                            {"quenlow", "Quenlow"},
                                                            {"orbisant", "Orbisant"},
                                                            {"stay-awake", "Stay Awake"},
                                                            {"crosshair", "Crosshair"},
                                                            {"calendar-alerts", "Calendar Alerts"}};
    for (const auto& [product, shown] : products) {
        const auto asked = desktop.spawn(bin / product, {"--version"});
        EXPECT_EQ(asked->wait(), 0);
        EXPECT_TRUE(asked->waitForText(std::string(shown) + " 1.0\n")) << asked->output();
        const std::string id = std::string("com.tamberlo.") + product;
        EXPECT_TRUE(fs::exists(share / "icons/hicolor/scalable/apps" / (id + ".svg")));
        expectValid(share / "applications" / (id + ".desktop"));
        EXPECT_TRUE(fs::exists(share / "palisor/products" / product / "Info.plist"));
    }
    EXPECT_TRUE(fs::exists(share / "palisor/images/menu/OnOff.svg"));
    EXPECT_TRUE(fs::exists(folder.path() / "usr/libexec/palisor/gamma-guard"));
    EXPECT_TRUE(fs::exists(folder.path() / "usr/lib/palisor/calendar.so"));
    EXPECT_EQ(desktop.spawn(bin / "palisor-helper", {"--help"})->wait(), 0);
}

} // namespace
