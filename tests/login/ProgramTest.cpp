#include "testing/desktop/Product.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

// Starting at login as a user has it: switched on in the menu, then a new session.

namespace desktop {
namespace {

namespace fs = std::filesystem;

constexpr const char* helperSuffix = "Helper.desktop";

struct LoginOfTheProgram : Product, testing::Test {
    LoginOfTheProgram() : Product("1280x800+0+0,1024x768+1280+16") {
        desktop.startWindowManager("openbox");
        hand.moveTo(400, 300);
    }

    void installInto(const fs::path& prefix) {
        const auto install =
            desktop.spawn(CMAKE, {"--install", BUILD, "--prefix", prefix.string()});
        ASSERT_EQ(install->wait(), 0) << install->errors();
        folder = prefix / "bin";
    }

    void startOne(const std::string& product) {
        spawn({.product = product});
        ASSERT_TRUE(saysThatItStarts()) << program->errors();
    }

    /// The last entry of the menu quits, the one before it is this.
    void toggleStartAtLogin() { choose(-2); }

    fs::path item(const std::string& end) const {
        return desktop.configFolder() / "autostart" / (identifier() + end);
    }
    static bool isThereSoon(const fs::path& path, bool there) {
        return waitUntil([&] { return fs::exists(path) == there; });
    }

    void expectValid(const fs::path& path) const {
        const auto validator = desktop.spawn("desktop-file-validate", {path});
        EXPECT_EQ(validator->wait(), 0);
        EXPECT_EQ(validator->output() + validator->errors(), "");
    }

    /// The session in which it was switched on ends, and the user logs in again.
    void expectToComeUpInANewSession() {
        program->end();
        desktop.startBus();
        const auto session = desktop.spawn("gio", {"launch", item(helperSuffix)});
        EXPECT_TRUE(session->waitForText(identifier() + " is up")) << session->errors();
        EXPECT_TRUE(desktop.isOnTheBusSoon(identifier() + "Helper", false))
            << "the helper goes away";
        EXPECT_TRUE(desktop.isOnTheBusSoon(identifier())) << session->errors();
        EXPECT_EQ(session->errors().find("ended"), std::string::npos) << session->errors();
    }

    testing_support::TempFolder tree;
};

TEST_F(LoginOfTheProgram, SwitchedOnInTheMenuComesUpInTheNextSession) {
    startOne("palisor");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(item(helperSuffix), true));
    expectValid(item(helperSuffix));
    EXPECT_FALSE(fs::exists(item(".desktop"))) << "only the desktop switcher has a second one";
    expectToComeUpInANewSession();
}

TEST_F(LoginOfTheProgram, TheFolderOfTheCalendarsGoesAlong) {
    testing_support::TempFolder calendars;
    spawn({.product = "calendar-alerts", .options = {"--calendar", calendars.path() + "/."}});
    ASSERT_TRUE(program->waitForText("=====")) << program->errors();
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(item(helperSuffix), true));
    std::ostringstream entry;
    entry << std::ifstream(item(helperSuffix)).rdbuf();
    EXPECT_NE(entry.str().find(" --calendar " + calendars.path()), std::string::npos)
        << entry.str();
}

TEST_F(LoginOfTheProgram, SwitchedOffAgainLeavesNothing) {
    startOne("palisor");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(item(helperSuffix), true));
    toggleStartAtLogin();
    EXPECT_TRUE(isThereSoon(item(helperSuffix), false));
}

TEST_F(LoginOfTheProgram, TheDesktopSwitcherIsInTheSessionsListBesides) {
    startOne("quenlow");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(item(helperSuffix), true));
    expectValid(item(".desktop"));
    std::ifstream entry(item(".desktop"));
    const std::string text{std::istreambuf_iterator<char>(entry), {}};
    EXPECT_NE(text.find("/quenlow --at-login\n"), std::string::npos) << text;
    // Where a desktop's settings heed it, this is the one that they show.
    EXPECT_EQ(text.find("NoDisplay"), std::string::npos) << text;
    std::ifstream hidden(item(helperSuffix));
    const std::string other{std::istreambuf_iterator<char>(hidden), {}};
    EXPECT_NE(other.find("NoDisplay=true\n"), std::string::npos) << other;
    EXPECT_NE(other.find("Name=Quenlow (helper at login)\n"), std::string::npos) << other;
    // As when it was switched on twice.
    fs::copy_file(item(".desktop"), item("-2.desktop"));
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(item(helperSuffix), false));
    EXPECT_FALSE(fs::exists(item(".desktop")));
    EXPECT_FALSE(fs::exists(item("-2.desktop")));
}

TEST_F(LoginOfTheProgram, WorksFromAnInstalledTreeWithOddCharactersInItsPath) {
    installInto(tree.path("a tree $of 100% \"its\" own"));
    startOne("orbisant");
    toggleStartAtLogin();
    ASSERT_TRUE(isThereSoon(item(helperSuffix), true));
    expectValid(item(helperSuffix));
    expectToComeUpInANewSession();
}

TEST_F(LoginOfTheProgram, IsStartedByTheBusFromAnInstalledTreeWithOddCharactersInItsPath) {
    const fs::path prefix = tree.path("it's $of 100% \"its\" own");
    installInto(prefix);
    std::ofstream(desktop.configFolder() / "com.tamberlo.orbisant.plist")
        << propertyList(pastTheFirstStart());
    desktop.setVariable("XDG_DATA_DIRS", prefix / "share");
    desktop.startBus();
    const auto command = desktop.spawn(folder + "/orbisant", {"on"});
    EXPECT_EQ(command->wait(), 0) << command->errors();
    EXPECT_TRUE(desktop.isOnTheBus("com.tamberlo.orbisant"));
}

TEST_F(LoginOfTheProgram, AnInstalledTreeIsComplete) {
    installInto(tree.path("usr"));
    const fs::path share = tree.path("usr/share");
    const std::pair<const char*, const char*> products[] = {{"palisor", "Palisor"},
                                                            {"vellumor", "Vellumor"},
                                                            {"quenlow", "Quenlow"},
                                                            {"orbisant", "Orbisant"},
                                                            {"stay-awake", "Stay Awake"},
                                                            {"crosshair", "Crosshair"},
                                                            {"calendar-alerts", "Calendar Alerts"}};
    for (const auto& [product, shown] : products) {
        const auto asked = desktop.spawn(folder + "/" + product, {"--version"});
        EXPECT_EQ(asked->wait(), 0);
        EXPECT_TRUE(asked->waitForText(std::string(shown) + " 1.0\n")) << asked->output();
        const std::string id = std::string("com.tamberlo.") + product;
        EXPECT_TRUE(fs::exists(share / "icons/hicolor/scalable/apps" / (id + ".svg")));
        expectValid(share / "applications" / (id + ".desktop"));
        EXPECT_TRUE(fs::exists(share / "palisor/products" / product / "Info.plist"));
        EXPECT_TRUE(fs::exists(share / "dbus-1/services" / (id + ".service")));
    }
    EXPECT_TRUE(fs::exists(share / "palisor/images/menu/OnOff.svg"));
    EXPECT_TRUE(fs::exists(share / "dbus-1/interfaces/com.tamberlo.Product1.xml"));
    EXPECT_TRUE(fs::exists(tree.path("usr/libexec/palisor/gamma-guard")));
    EXPECT_TRUE(fs::exists(tree.path("usr/lib/palisor/calendar.so")));
    EXPECT_EQ(desktop.spawn(folder + "/palisor-helper", {"--help"})->wait(), 0);
}

} // namespace
} // namespace desktop
