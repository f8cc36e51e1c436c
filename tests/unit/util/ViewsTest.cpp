#include "platform/memory/Views.h"
#include "unit/Program.h"
#include "util/MacUtils.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

struct StyledWindow final : platform::FramedWindow {
    explicit StyledWindow(std::uint32_t bits) : mask(bits) {}
    std::uint32_t styleMask() const override { return mask; }
    std::uint32_t mask;
};

TEST(FullScreen, IsBit14OfAWindowsStyleAlone) {
    EXPECT_TRUE(MacUtils::isFullScreen(StyledWindow(0x4000)));
    EXPECT_TRUE(MacUtils::isFullScreen(StyledWindow(0xffffffff)));
    EXPECT_FALSE(MacUtils::isFullScreen(StyledWindow(0)));
    EXPECT_FALSE(MacUtils::isFullScreen(StyledWindow(0xffffffff & ~0x4000u)));
}

TEST(MouseOverView, IsTrueWithinTheBoundsTheirFarEdgesExcluded) {
    Program program(variants::barrier);
    const platform::memory::View view(platform::Point{100, 50}, platform::Image::ofSize({20, 10}));
    const auto over = [&](platform::Point at) {
        program.platform.pointer.place(at);
        return MacUtils::isMouseOverView(program.platform.services(), view);
    };
    EXPECT_TRUE(over({100, 50}));
    EXPECT_TRUE(over({119.5, 59.5}));
    EXPECT_FALSE(over({120, 55}));
    EXPECT_FALSE(over({110, 60}));
    EXPECT_FALSE(over({99.5, 55}));
    EXPECT_FALSE(over({110, 49}));
}

TEST(MouseOverView, IsFalseForAViewInNoWindow) {
    Program program(variants::barrier);
    const platform::memory::View view({}, platform::Image::ofSize({20, 10}));
    program.platform.pointer.place({5, 5});
    EXPECT_FALSE(MacUtils::isMouseOverView(program.platform.services(), view));
}

TEST(Underlining, GoesForTheWholeTextOfAFieldAndKeepsIt) {
    platform::memory::TextField field("perch\u00e9?");
    MacUtils::underlineTextfiledText(field);
    EXPECT_EQ(field.attributedText(),
              (platform::AttributedText{.text = "perch\u00e9?", .underlined = true}));
}

TEST(Underlining, OfAnEmptyFieldLeavesItEmpty) {
    platform::memory::TextField field("");
    MacUtils::underlineTextfiledText(field);
    EXPECT_EQ(field.attributedText().text, "");
}

} // namespace
} // namespace palisor
