#include "unit/Program.h"
#include "util/MacUtils.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Dictionary;
using platform::Rect;
using platform::Value;

class WebWindow : public testing::Test {
  protected:
    std::unique_ptr<platform::WebWindow> make(const std::string& name = "Help") {
        return MacUtils::createSimpleWindowWebView_title_URL(program.platform.services(), name,
                                                             "A title", "https://a.invalid/x");
    }

    static platform::memory::WebWindow& inMemory(platform::WebWindow& window) {
        return dynamic_cast<platform::memory::WebWindow&>(window);
    }

    static Value frame(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height) {
        return {Dictionary{
            {"x", Value{x}}, {"y", Value{y}}, {"width", Value{width}}, {"height", Value{height}}}};
    }

    Program program{variants::barrier};
};

TEST_F(WebWindow, IsTitledClosableResizableAndLightAndLoadsTheAddress) {
    const auto window = make();
    EXPECT_EQ(window->styleMask(), 0x800bu);
    EXPECT_FALSE(window->isVisible()) << "whoever asks for it shows it";
    const auto& description = inMemory(*window).description();
    EXPECT_EQ(description.title, "A title");
    EXPECT_EQ(description.url, "https://a.invalid/x");
    EXPECT_TRUE(description.light);
    EXPECT_EQ(description.minimumWidth, 200);
    EXPECT_EQ(description.minimumHeight, 100);
    EXPECT_FALSE(MacUtils::isFullScreen(*window));
}

TEST_F(WebWindow, IsInTheMiddleOfTheScreenTheFirstTime) {
    EXPECT_EQ(make()->frame(), (Rect{440, 140, 1040, 800}));
}

TEST_F(WebWindow, ComesBackWhereTheUserLeftItUnderEachName) {
    inMemory(*make("Help")).userMoves({100, 200, 640, 480});
    inMemory(*make("News")).userMoves({-50, 20, 300, 300});
    EXPECT_EQ(make("Help")->frame(), (Rect{100, 200, 640, 480}));
    EXPECT_EQ(make("News")->frame(), (Rect{-50, 20, 300, 300}));
    EXPECT_EQ(make("Other")->frame(), (Rect{440, 140, 1040, 800}));
}

TEST_F(WebWindow, SavesItsFrameWhenTheUserHasMovedIt) {
    const auto window = make();
    program.effects();
    inMemory(*window).userMoves({1, 2, 300, 400});
    EXPECT_EQ(program.effects(),
              (Lines{R"(write {"key":"Window Frame Help","value":{"height":400,"width":300,"x":1,)"
                     R"("y":2}})",
                     "synchronize {}"}));
}

TEST_F(WebWindow, StaysInTheMiddleWhenItsScreenHasGoneOrTheFrameIsDamaged) {
    const Rect middle{440, 140, 1040, 800};
    for (const Value& value :
         {frame(5000, 100, 640, 480), frame(100, 2000, 640, 480), frame(0, 0, 0, 0),
          frame(0, 0, -5, 10), frame(10, 20, 0, 480), frame(10, 20, 640, 0), Value{"100 200"},
          Value{Dictionary{{"x", Value{std::int64_t{1}}}}}}) {
        program.setting("Window Frame Help", value);
        EXPECT_EQ(make()->frame(), middle);
    }
}

TEST_F(WebWindow, TakesAPlaceThatIsNotStoredAsTheOrigin) {
    const auto number = [](std::int64_t length) { return Value{length}; };
    program.setting(
        "Window Frame Help",
        Value{Dictionary{{"y", number(30)}, {"width", number(640)}, {"height", number(480)}}});
    EXPECT_EQ(make()->frame(), (Rect{0, 30, 640, 480}));
}

TEST_F(WebWindow, IsNeverSmallerThanItsMinimum) {
    program.setting("Window Frame Help", frame(10, 20, 30, 40));
    EXPECT_EQ(make()->frame(), (Rect{10, 20, 200, 100}));
}

TEST_F(WebWindow, IsNoneWithoutAnEngine) {
    program.platform.web.removeEngine();
    EXPECT_EQ(make(), nullptr);
}

} // namespace
} // namespace palisor
