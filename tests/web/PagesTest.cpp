#include "platform/memory/MemoryPlatform.h"
#include "testing/TempFolder.h"
#include "testing/desktop/Hand.h"
#include "util/MacUtils.h"
#include "web/Stage.h"

#include <QDir>
#include <QStandardPaths>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

// Pages of a real server, shown by the program's own operations.

namespace palisor {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using webtests::cookiesOf;

class Pages : public testing::Test {
  protected:
    Pages() {
        engine.web.removeAllData();
        server.pages["/"] = {"<title>Other</title><p>Hello"};
    }

    std::unique_ptr<platform::WebWindow> show(const std::string& url) {
        auto window =
            MacUtils::createSimpleWindowWebView_title_URL(services, "Test", "A title", url);
        if (window) window->makeKeyAndOrderFront();
        return window;
    }

    /// The cookies that a fresh visit sends.
    std::string cookiesOfAVisit() {
        const auto window = show(server.url("/"));
        const auto request = server.next();
        EXPECT_EQ(request.path, "/");
        return request.cookie;
    }

    webtests::Server server;
    webtests::Engine engine;
    platform::memory::MemoryPlatform platform;
    platform::Platform services = platform.servicesWith(engine.web);
};

TEST_F(Pages, AreLoaded) {
    server.pages["/"] = {"<script>fetch('/shown?' + innerWidth + 'x' + innerHeight)</script>"};
    const auto window = show(server.url("/"));
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(server.next().path, "/");
    EXPECT_EQ(server.next().path, "/shown?1040x800") << "it fills the window";
    EXPECT_THAT(engine.log.lines, IsEmpty());
}

TEST_F(Pages, FollowTheSizeOfTheirWindow) {
    server.pages["/"] = {"<script>onresize = () => fetch('/' + innerWidth + 'x' + innerHeight);"
                         "fetch('/loaded')</script>"};
    const auto window = show(server.url("/"));
    while (server.next().path != "/loaded") {
    }
    auto frame = window->frame();
    frame.width = 300, frame.height = 250;
    window->setFrame(frame);
    std::string last;
    while (last != "/300x250" && !(last = server.next().path).empty()) {
    }
    EXPECT_EQ(last, "/300x250");
}

TEST_F(Pages, AreShownLight) {
    server.pages["/"] = {"<script>fetch(matchMedia('(prefers-color-scheme: light)').matches ?"
                         "'/light' : '/dark')</script>"};
    const auto window = show(server.url("/"));
    EXPECT_EQ(server.next().path, "/");
    EXPECT_EQ(server.next().path, "/light");
}

TEST_F(Pages, GetTheirCookiesBackAfterSavingClearingAndLoading) {
    server.pages["/"].cookies = {"session=1; HttpOnly", "lasting=2; Max-Age=3600; Path=/"};
    EXPECT_EQ(cookiesOfAVisit(), "");
    server.pages["/"].cookies = {};
    ASSERT_TRUE(webtests::waitUntil([this] { return cookiesOf(engine.web).size() == 2; }));
    EXPECT_THAT(cookiesOfAVisit(), testing::AllOf(HasSubstr("session=1"), HasSubstr("lasting=2")));

    MacUtils::saveCookies(services);
    ASSERT_TRUE(
        webtests::waitUntil([this] { return platform.settings.object("cookies") != nullptr; }));
    MacUtils::clearCacheWK(services);
    EXPECT_EQ(cookiesOfAVisit(), "");

    MacUtils::loadCookies(services);
    ASSERT_TRUE(webtests::waitUntil([this] { return cookiesOf(engine.web).size() == 2; }));
    EXPECT_THAT(cookiesOfAVisit(), testing::AllOf(HasSubstr("session=1"), HasSubstr("lasting=2")));
}

TEST_F(Pages, LoseWhatTheyStoredWhenTheCacheIsCleared) {
    server.pages["/"] = {"<script>const old = localStorage.n || 'nothing'; localStorage.n = 'kept';"
                         "fetch('/had?' + old)</script>"};
    const auto visit = [this] {
        const auto window = show(server.url("/"));
        EXPECT_EQ(server.next().path, "/");
        return server.next().path;
    };
    EXPECT_EQ(visit(), "/had?nothing");
    EXPECT_EQ(visit(), "/had?kept");
    MacUtils::clearCacheWK(services);
    EXPECT_EQ(visit(), "/had?nothing");
}

TEST_F(Pages, HaveOneStorageFolderHoweverOftenTheCacheWasCleared) {
    for (int time = 0; time < 3; ++time) {
        cookiesOfAVisit();
        MacUtils::clearCacheWK(services);
    }
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
                      "/web");
    ASSERT_TRUE(folder.exists());
    const auto names = [&folder] { return folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot); };
    engine.web.close();
    // A killed program leaves such as this, and so may the engine's threads.
    const QString newest = names().last();
    ASSERT_TRUE(folder.mkpath("0001/Local Storage"));
    // Those threads live on in this process, and what they still write goes at a later start.
    EXPECT_TRUE(webtests::waitUntil([&] {
        webtests::Engine next;
        next.web.setCookie("a=1; domain=a.test; path=/");
        return names() == QStringList{newest};
    })) << names().join(' ').toStdString();
}

// The desktop's opener is a program found in PATH, for which the test's own one stands.
TEST_F(Pages, OpenOtherProgramsThroughTheProgramsOwnFilterOnly) {
    testing_support::TempFolder folder;
    folder.write("xdg-open",
                 "#!/bin/sh\nprintf '%s\\n' \"$1\" >> '" + folder.path("opened") + "'\n");
    std::filesystem::permissions(folder.path("xdg-open"), std::filesystem::perms::owner_all);
    ::setenv("PATH", (folder.path() + ":" + std::getenv("PATH")).c_str(), 1);
    // Each click follows the next link.
    server.pages["/"] = {
        "<a id=a style='position:fixed;inset:0' href='#'>x</a><script>"
        "const links = ['file:///etc/passwd', 'store:1', 'mailto:a@b.invalid?attach=/etc/passwd"
        "&subject=s']; let next = 0;"
        "a.onmousedown = () => { a.href = links[next]; };"
        "a.onclick = () => { fetch('/clicked' + next++); };"
        "a.addEventListener('mousemove', () => { fetch('/over'); }, {once: true});"
        "fetch('/loaded')</script>"};
    const auto window = show(server.url("/"));
    while (server.next().path != "/loaded") {
    }
    support::Hand hand(webtests::desktop().display());
    int step = 0; // The page may be loaded before its window is on the screen.
    ASSERT_TRUE(webtests::waitUntil([&] {
        hand.moveTo(800 + ++step % 2, 600);
        return !server.requests.empty();
    }));
    EXPECT_EQ(server.next().path, "/over");
    for (const char* path : {"/clicked0", "/clicked1", "/clicked2"}) {
        hand.click();
        EXPECT_EQ(server.next().path, path);
    }
    EXPECT_TRUE(webtests::waitUntil([&] { return folder.read("opened").ends_with('\n'); }));
    EXPECT_EQ(folder.read("opened"), "mailto:a@b.invalid?subject=s\n");
}

TEST_F(Pages, OfAddressesThatAreNoneAreEmpty) {
    const auto window = show("http://[");
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
}

} // namespace
} // namespace palisor
