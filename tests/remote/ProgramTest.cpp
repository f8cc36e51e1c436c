#include "testing/HttpsServer.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <csignal>
#include <fstream>
#include <gmock/gmock.h>

// The program itself, installed for a maker whose server the test runs.

namespace {

namespace fs = std::filesystem;
using namespace support;
using testing::HasSubstr;
using testing::Not;

constexpr const char* started = "macOS 10.14";

struct Maker : testing::Test {
    Maker() { desktop.startWindowManager("openbox"); }

    /// A tree with the program in it, whose information dictionary names that server.
    void installFor(const HttpsServer& server) {
        const fs::path bin = tree.path("bin");
        const fs::path share = tree.path("share/palisor");
        fs::create_directories(bin);
        fs::create_directories(share / "products/palisor");
        for (const char* name : {"palisor", "gamma-guard"})
            fs::copy_file(fs::path(PROGRAMS) / name, bin / name);
        fs::create_directory_symlink(RESOURCES "/images", share / "images");
        std::ofstream(share / "products/palisor/Info.plist")
            << "<plist version=\"1.0\"><dict><key>IDApp</key><integer>8</integer>"
            << entry("CFBundleDisplayName", "Palisor")
            << entry("CFBundleIdentifier", "com.tamberlo.palisor")
            << entry("CFBundleShortVersionString", "1.0") << entry("MakerHost", server.host())
            << entry("MakerAuthority", authority.file()) << "</dict></plist>\n";
        std::ofstream(desktop.configFolder() / "com.tamberlo.palisor.plist")
            << "<plist version=\"1.0\"><dict>" << entry("PRIMOACCESSO", "1")
            << entry("PRIMOACCESSOCONSLIDER", "1") << entry("CHECK_0", "1") << entry("CHECK_1", "0")
            << entry("RECOMMENDAUTOLOGIN", "1")
            << "<key>customShortcut</key><dict><key>keyCode</key><integer>40</integer>"
               "<key>modifierFlags</key><integer>1310720</integer></dict></dict></plist>\n";
    }

    std::unique_ptr<ChildProcess> start() const { return desktop.spawn(tree.path("bin/palisor")); }

    static std::string entry(const std::string& key, const std::string& text) {
        return "<key>" + key + "</key><string>" + text + "</string>";
    }

    /// A window of the program that has a frame of the window manager.
    std::optional<Area> alert() {
        for (const auto& window : eye.windows())
            if (window.mapped && !window.overrideRedirect && window.area.width > 200)
                return window.area;
        return std::nullopt;
    }

    /// Painted, and not only mapped.
    bool waitForAlert() {
        constexpr double bright = 100;
        return eye.waitUntilSeen([&] {
            const auto area = alert();
            return area && eye.picture(*area).brightness() > bright;
        });
    }

    TestAuthority authority;
    testing_support::TempFolder tree;
    PrivateDesktop desktop;
    Hand hand{desktop.display()};
    Eye eye{desktop.display()};
};

TEST_F(Maker, WhoSaysNothingToTheProgramHasItStart) {
    HttpsServer server(authority, "reply", R"({"otherApps":"1"})");
    installFor(server);
    const auto program = start();
    ASSERT_TRUE(program->waitForText(started)) << program->errors();
    ASSERT_TRUE(server.waitFor("HTTP/1.1")) << program->errors();
    EXPECT_THAT(server.happened(),
                HasSubstr("got GET /app/mac_utilities/action.php?app=8&ver=1.0"));
    EXPECT_THAT(server.happened(), HasSubstr("&monitors=2&"));
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
}

TEST_F(Maker, MayEndTheProgramByTheAnswerToAQuestion) {
    const HttpsServer server(
        authority, "reply",
        R"({"question":"Version 1 has ended. <b>Get</b> %@ & the next one?",)"
        R"("answer_1":"Get & quit","answer_2":"Later","event_1":"NULL","active_1":0})");
    installFor(server);
    const auto program = start();
    ASSERT_TRUE(waitForAlert()) << program->errors();
    EXPECT_THAT(program->errors(), Not(HasSubstr(started)));
    hand.type(key::enter);
    EXPECT_EQ(program->wait(), 0);
    EXPECT_THAT(program->errors(), Not(HasSubstr(started)));
}

TEST_F(Maker, MayHaveTheProgramGoOnAfterTheOtherAnswer) {
    const HttpsServer server(
        authority, "reply",
        R"({"question":"Well?","answer_1":"Quit","answer_2":"Later","active_2":1})");
    installFor(server);
    const auto program = start();
    ASSERT_TRUE(waitForAlert()) << program->errors();
    hand.type(key::escape);
    EXPECT_TRUE(program->waitForText(started)) << program->errors();
}

TEST_F(Maker, CannotFillTheScreenWithAQuestion) {
    std::string question(100'000, 'W');
    for (std::size_t at = 9; at < question.size(); at += 10)
        question[at] = at % 200 == 9 ? 'n' : ' ';
    for (std::size_t at = 9; at < question.size(); at += 200)
        question[at - 1] = '\\';
    const std::string title(5000, 'M');
    const HttpsServer server(authority, "reply",
                             R"({"question":")" + question + R"(","answer_1":")" + title +
                                 R"(","answer_2":")" + title + R"("})");
    installFor(server);
    const auto program = start();
    ASSERT_TRUE(waitForAlert()) << program->errors();
    const Area area = *alert();
    EXPECT_LT(area.width, 1280);
    EXPECT_LT(area.height, 900);
    hand.type(key::enter);
    EXPECT_EQ(program->wait(), 0);
}

TEST_F(Maker, WhoKeepsTheProgramWaitingDoesNotKeepItFromEnding) {
    HttpsServer server(authority, "silence");
    installFor(server);
    const auto program = start();
    ASSERT_TRUE(server.waitFor("got GET")) << program->errors();
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(std::chrono::milliseconds{5000}), 0);
    EXPECT_THAT(program->errors(), Not(HasSubstr(started)));
}

// The clock is looked at, as with the exchange alone.
TEST_F(Maker, WhoKeepsTheProgramWaitingDelaysItByTenSeconds) {
    HttpsServer server(authority, "silence");
    installFor(server);
    const auto begun = Clock::now();
    const auto program = start();
    ASSERT_TRUE(server.waitFor("got GET")) << program->errors();
    const auto asked = Clock::now();
    const auto second = start();
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(second->waitForText("running already")) << "it is one of its kind meanwhile";
    ASSERT_TRUE(program->waitForText(started)) << program->errors();
    EXPECT_GE(Clock::now() - begun, milliseconds{10'000});
    EXPECT_LE(Clock::now() - asked, milliseconds{10'500});
}

} // namespace
