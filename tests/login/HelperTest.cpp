#include "platform/linux/login/AutostartItems.h"
#include "testing/KeptLog.h"
#include "testing/desktop/PrivateDesktop.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>

// The helper in a session of its own, with a stand-in for the product that it starts.

namespace {

namespace fs = std::filesystem;
using support::ChildProcess;

constexpr const char* mainName = "com.tamberlo.palisor";
constexpr const char* helperName = "com.tamberlo.palisorHelper";

struct Helper : testing::Test {
    Helper() {
        fs::create_directories(bin);
        fs::create_directories(bin.parent_path() / "share/palisor");
        fs::create_directory_symlink(PRODUCTS_FOLDER, bin.parent_path() / "share/palisor/products");
        fs::copy_file(HELPER, bin / "palisor-helper");
        desktop.setVariable("NAME", mainName);
    }

    void install(const std::string& deed) {
        fs::copy_file(STAND_IN, bin / "palisor");
        desktop.setVariable("DEED", deed);
    }

    std::unique_ptr<ChildProcess> start() {
        return desktop.spawn(bin / "palisor-helper", {"--product", "palisor"});
    }

    /// Sends what the product sends.
    void notify(const std::string& name, const std::string& object) const {
        const auto sent = desktop.spawn("dbus-send", {"--session", "--type=signal",
                                                      "/local/DistributedNotifications",
                                                      "local.DistributedNotifications.Posted",
                                                      "string:" + name, "string:" + object});
        EXPECT_EQ(sent->wait(), 0);
    }

    static pid_t pidIn(const std::string& text) {
        const auto at = text.find("pid ");
        return at == std::string::npos ? -1 : std::stoi(text.substr(at + 4));
    }

    support::PrivateDesktop desktop{support::PrivateDesktop::Options{
        .layout = "1024x768+0+0", .servers = {support::ServerKind::xvfb}, .hostDisplay = {}}};
    testing_support::TempFolder folder;
    fs::path bin = folder.path("a tree $of \"its\" own/bin");
};

TEST_F(Helper, RunFromItsEntryStartsTheProductAndGoesWhenTold) {
    install("tell");
    testing_support::KeptLog log;
    const fs::path autostart = desktop.configFolder() / "autostart";
    platform::linux::AutostartItems items(
        autostart,
        {.identifier = mainName,
         .name = "Palisor",
         .comment = "Start at Login",
         .icon = "x",
         .helper = {bin / "palisor-helper", "--product", "palisor"}},
        log);
    items.setEnabled(helperName, true);
    const auto launched =
        desktop.spawn("gio", {"launch", autostart / (std::string(helperName) + ".desktop")});
    ASSERT_TRUE(launched->waitForText("pid ")) << launched->errors();
    EXPECT_NE(launched->errors().find(std::string("beside ") + helperName), std::string::npos)
        << launched->errors();
    EXPECT_NE(launched->errors().find("told --at-login\n"), std::string::npos)
        << launched->errors();
    EXPECT_TRUE(desktop.isOnTheBusSoon(helperName, false));
    EXPECT_TRUE(desktop.isOnTheBus(mainName)) << "the product must outlive its helper";
}

TEST_F(Helper, PassesTheFolderOfTheCalendarsOn) {
    install("stay");
    const auto helper =
        desktop.spawn(bin / "palisor-helper", {"--product", "palisor", "--calendar", "/a folder"});
    ASSERT_TRUE(helper->waitForText("pid ")) << helper->errors();
    EXPECT_TRUE(helper->waitForText("told --calendar")) << helper->errors();
    EXPECT_TRUE(helper->waitForText("told /a folder")) << helper->errors();
}

TEST_F(Helper, StartsNothingWhereTheEntryThatSettingsShowIsSwitchedOff) {
    install("tell");
    testing_support::KeptLog log;
    const fs::path autostart = desktop.configFolder() / "autostart";
    platform::linux::AutostartItems items(autostart,
                                          {.identifier = mainName,
                                           .name = "Palisor",
                                           .comment = "",
                                           .icon = "x",
                                           .helper = {bin / "palisor-helper"}},
                                          log);
    items.insertLast(bin / "palisor");
    std::ofstream(autostart / (std::string(mainName) + ".desktop"), std::ios::app)
        << "Hidden=true\n";
    const auto helper = start();
    EXPECT_EQ(helper->wait(), 0);
    EXPECT_EQ(helper->output() + helper->errors(), "");
    EXPECT_FALSE(desktop.isOnTheBus(mainName));
}

TEST_F(Helper, WaitsUntilItIsToldAboutItsOwnProduct) {
    install("tell others");
    const auto helper = start();
    ASSERT_TRUE(helper->waitForText("is up")) << helper->errors();
    ASSERT_TRUE(helper->waitForText("pid "));
    notify("TERMINATEHELPER", "com.tamberlo.orbisant");
    notify("OTHER", mainName);
    EXPECT_TRUE(desktop.isOnTheBus(helperName));
    notify("TERMINATEHELPER", mainName);
    EXPECT_EQ(helper->wait(), 0);
    EXPECT_TRUE(desktop.isOnTheBus(mainName));
}

TEST_F(Helper, TheProductSeesNamesOfProgramsAndNotItsOwn) {
    install("stay");
    const auto helper = start();
    ASSERT_TRUE(helper->waitForText("pid "));
    EXPECT_EQ(helper->errors().find("beside :"), std::string::npos);
    EXPECT_EQ(helper->errors().find(std::string("beside ") + mainName + "\n"), std::string::npos);
    EXPECT_NE(helper->errors().find(std::string("beside ") + helperName + "\n"), std::string::npos);
}

TEST_F(Helper, GoesWithAWordWhenTheProductIsNotThere) {
    const auto helper = start();
    EXPECT_EQ(helper->wait(), 1);
    EXPECT_TRUE(helper->waitForText("cannot be started: No such file")) << helper->errors();
    EXPECT_FALSE(desktop.isOnTheBus(helperName));
}

TEST_F(Helper, GoesWithAWordWhenTheProductEndsBeforeItIsUp) {
    install("end");
    const auto helper = start();
    EXPECT_EQ(helper->wait(), 1);
    EXPECT_TRUE(helper->waitForText("did not come up: it ended with status 3")) << helper->errors();
}

TEST_F(Helper, GoesWhenTheProductEndsWithoutTellingIt) {
    install("stay");
    const auto helper = start();
    ASSERT_TRUE(helper->waitForText("is up"));
    ASSERT_TRUE(helper->waitForText(" end"));
    ASSERT_EQ(kill(pidIn(helper->errors()), SIGKILL), 0);
    EXPECT_EQ(helper->wait(), 0);
    EXPECT_TRUE(helper->waitForText("was ended by signal 9")) << helper->errors();
}

TEST_F(Helper, StartsNothingWhenTheProductRunsAlready) {
    install("stay");
    const auto product = desktop.spawn(bin / "palisor");
    ASSERT_TRUE(product->waitForText("pid "));
    const auto helper = start();
    EXPECT_EQ(helper->wait(), 0);
    EXPECT_EQ(helper->errors(), "");
}

TEST_F(Helper, IsTheOnlyOneOfItsProduct) {
    install("stay");
    const auto first = start();
    ASSERT_TRUE(first->waitForText("is up"));
    const auto second = start();
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(first->running());
}

TEST_F(Helper, WithoutASessionBusStartsTheProductAndGoes) {
    install("end");
    desktop.setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    const auto helper = start();
    EXPECT_EQ(helper->wait(), 0) << helper->errors();
    EXPECT_TRUE(helper->waitForText("no session bus")) << helper->errors();
}

TEST_F(Helper, GoesWhenTheSessionsBusDoes) {
    install("stay");
    const auto helper = start();
    ASSERT_TRUE(helper->waitForText("is up"));
    desktop.stopBus();
    EXPECT_EQ(helper->wait(), 0) << helper->errors();
}

TEST_F(Helper, SaysHowItIsUsed) {
    const auto helper = desktop.spawn(bin / "palisor-helper");
    EXPECT_EQ(helper->wait(), 2);
    EXPECT_TRUE(helper->waitForText("Usage:")) << helper->errors();
}

} // namespace
