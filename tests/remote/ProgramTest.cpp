#include "testing/HttpsServer.h"
#include "testing/desktop/Product.h"

#include <csignal>
#include <fstream>
#include <gmock/gmock.h>

// The program itself, installed for a maker whose server the test runs.

namespace desktop {
namespace {

namespace fs = std::filesystem;
namespace key = support::key;
using support::HttpsServer;
using testing::HasSubstr;
using testing::Not;

constexpr const char* started = "macOS 10.14";

struct Maker : Product, testing::Test {
    Maker() : Product() { desktop.startWindowManager("openbox"); }

    /// Starts it from a tree whose information dictionary names that server.
    void startFor(const HttpsServer& server) {
        const fs::path bin = tree.path("bin");
        const fs::path share = tree.path("share/palisor");
        fs::create_directories(bin);
        fs::create_directories(share / "products/palisor");
        for (const char* file : {"palisor", "palisor-tray", "gamma-guard", "x11-session.so"})
            fs::copy_file(fs::path(programs()) / file, bin / file);
        fs::create_directory_symlink(RESOURCES "/images", share / "images");
        std::ofstream(share / "products/palisor/Info.plist")
            << propertyList({{"IDApp", number(8)},
                             {"CFBundleDisplayName", text("Palisor")},
                             {"CFBundleIdentifier", text("com.tamberlo.palisor")},
                             {"CFBundleShortVersionString", text("1.0")},
                             {"MakerHost", text(server.host())},
                             {"MakerAuthority", text(authority.file())}});
        folder = bin;
        spawn();
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

    support::TestAuthority authority;
    testing_support::TempFolder tree;
};

TEST_F(Maker, WhoSaysNothingToTheProgramHasItStart) {
    HttpsServer server(authority, "reply", R"({"otherApps":"1"})");
    startFor(server);
    ASSERT_TRUE(saysThatItStarts()) << program->errors();
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
    startFor(server);
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
    startFor(server);
    ASSERT_TRUE(waitForAlert()) << program->errors();
    hand.type(key::escape);
    EXPECT_TRUE(saysThatItStarts()) << program->errors();
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
    startFor(server);
    ASSERT_TRUE(waitForAlert()) << program->errors();
    const Area area = *alert();
    EXPECT_LT(area.width, 1280);
    EXPECT_LT(area.height, 900);
    hand.type(key::enter);
    EXPECT_EQ(program->wait(), 0);
}

TEST_F(Maker, WhoKeepsTheProgramWaitingDoesNotKeepItFromEnding) {
    HttpsServer server(authority, "silence");
    startFor(server);
    ASSERT_TRUE(server.waitFor("got GET")) << program->errors();
    const auto second = run();
    EXPECT_EQ(second->wait(), 0);
    EXPECT_THAT(second->errors(), HasSubstr("running already"))
        << "it is one of its kind meanwhile";
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(support::milliseconds{5000}), 0);
    EXPECT_THAT(program->errors(), Not(HasSubstr(started)));
}

} // namespace
} // namespace desktop
