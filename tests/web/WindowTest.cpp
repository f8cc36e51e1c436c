#include "platform/memory/MemoryPlatform.h"
#include "testing/eye/Eye.h"
#include "util/MacUtils.h"
#include "web/Stage.h"

#include <QApplication>
#include <QWidget>
#include <gmock/gmock.h>

// The window of a page as the desktop shows it.

namespace palisor {
namespace {

using platform::Rect;

class PageWindow : public testing::Test {
  protected:
    std::unique_ptr<platform::WebWindow> make() {
        return MacUtils::createSimpleWindowWebView_title_URL(
            services, "Help", "A title", "data:text/html,<title>Page</title><p>Hello");
    }

    static QWidget& widgetOf(platform::WebWindow& window) { return dynamic_cast<QWidget&>(window); }

    static void show(platform::WebWindow& window) {
        window.makeKeyAndOrderFront();
        EXPECT_TRUE(webtests::waitUntil([&] { return widgetOf(window).isActiveWindow(); }));
    }

    webtests::Engine engine;
    platform::memory::MemoryPlatform platform;
    platform::Platform services = platform.servicesWith(engine.web);
};

TEST_F(PageWindow, IsTitledClosableAndResizable) {
    const auto window = make();
    EXPECT_EQ(window->styleMask(), 0x800bu);
    EXPECT_FALSE(window->isVisible());
    show(*window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->styleMask(), 0x800bu);
    EXPECT_EQ(widgetOf(*window).windowTitle(), "A title") << "whatever the page is called";
    EXPECT_EQ(widgetOf(*window).minimumSize(), QSize(200, 100));
    EXPECT_EQ(window->frame().width, 1040);
    EXPECT_EQ(window->frame().height, 800);
}

TEST_F(PageWindow, ShowsThePage) {
    const auto window = MacUtils::createSimpleWindowWebView_title_URL(
        services, "Help", "A title",
        "data:text/html,<body style='background:rgb(10,120,60)'>"
        "<h1 style='font:60px sans-serif;color:white'>A page</h1>");
    show(*window);
    const support::Eye eye(webtests::desktop().display());
    const support::Colour green{10, 120, 60};
    EXPECT_TRUE(webtests::waitUntil([&] { return eye.colour(800, 600) == green; }));
    const auto frame = window->frame();
    const int left = static_cast<int>(frame.x);
    const int top = static_cast<int>(1200 - frame.y - frame.height);
    for (const auto& [x, y] : {std::pair{0, 0}, {1039, 0}, {0, 799}, {1039, 799}})
        EXPECT_EQ(eye.colour(left + x, top + y), green) << x << ' ' << y;
    if (const char* path = std::getenv("PICTURE")) eye.screenshot(path);
}

TEST_F(PageWindow, ComesUpInTheMiddleOfTheScreen) {
    const auto window = make();
    show(*window);
    EXPECT_NEAR(window->frame().x, 280, 30) << "up to its border";
    EXPECT_NEAR(window->frame().y, 200, 30);
}

TEST_F(PageWindow, SaysWhetherItIsFullScreen) {
    const auto window = make();
    show(*window);
    EXPECT_FALSE(MacUtils::isFullScreen(*window));
    widgetOf(*window).showFullScreen();
    EXPECT_TRUE(webtests::waitUntil([&] { return MacUtils::isFullScreen(*window); }));
    widgetOf(*window).showNormal();
    EXPECT_TRUE(webtests::waitUntil([&] { return !MacUtils::isFullScreen(*window); }));
}

TEST_F(PageWindow, ComesBackWhereItWasMovedTo) {
    {
        const auto window = make();
        show(*window);
        widgetOf(*window).setGeometry(100, 150, 640, 480);
        ASSERT_TRUE(webtests::waitUntil(
            [this] { return platform.settings.object("Window Frame Help") != nullptr; }));
        EXPECT_EQ(window->frame(), (Rect{100, 1200 - 150 - 480, 640, 480}));
    }
    for (int time = 0; time < 2; ++time) {
        const auto window = make();
        EXPECT_EQ(window->frame(), (Rect{100, 1200 - 150 - 480, 640, 480}));
        show(*window);
        EXPECT_EQ(window->frame(), (Rect{100, 1200 - 150 - 480, 640, 480})) << "it does not creep";
    }
}

TEST_F(PageWindow, IsOnlyHiddenWhenTheUserClosesIt) {
    const auto window = make();
    show(*window);
    widgetOf(*window).close();
    EXPECT_FALSE(window->isVisible());
    show(*window);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(PageWindow, StaysWhereItIsWhenAFrameLiesOnNoScreen) {
    const auto window = make();
    const Rect before = window->frame();
    window->setFrame({5000, 100, 300, 300});
    EXPECT_EQ(window->frame(), before);
    window->setFrame({10, 20, 30, 40});
    EXPECT_EQ(window->frame().width, 200) << "nor is it made smaller than its minimum";
    EXPECT_EQ(window->frame().height, 100);
}

} // namespace
} // namespace palisor
