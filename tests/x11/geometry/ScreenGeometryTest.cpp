#include "platform/x11/session/ScreenGeometry.h"
#include "testing/desktop/Layout.h"

#include <gtest/gtest.h>

#include <string>

// Layouts as text; no server is needed.

using platform::x11::nearestTo;
using platform::x11::screensOf;

namespace {

std::vector<xcb_rectangle_t> areasOf(const std::string& layout) {
    std::vector<xcb_rectangle_t> areas;
    for (const auto& [output, area, primary] : support::parseLayout(layout))
        areas.push_back({static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                         static_cast<std::uint16_t>(area.width),
                         static_cast<std::uint16_t>(area.height)});
    return areas;
}

/// Each screen as "area: monitors", the largest one first.
std::string screensIn(const std::string& layout) {
    std::string text;
    for (const auto& screen : screensOf(areasOf(layout))) {
        const auto& [x, y, width, height] = screen.area;
        text += (text.empty() ? "" : ", ") + std::to_string(width) + "x" + std::to_string(height) +
                "+" + std::to_string(x) + "+" + std::to_string(y) + ":";
        for (const std::size_t monitor : screen.monitors)
            text += " " + std::to_string(monitor);
    }
    return text;
}

struct Case {
    const char* name;
    const char* layout;
    const char* screens;
};

class Screens : public testing::TestWithParam<Case> {};

TEST_P(Screens, AreMonitorsOfWhichEachPixelIsListedOnce) {
    EXPECT_EQ(screensIn(GetParam().layout), GetParam().screens);
}

INSTANTIATE_TEST_SUITE_P(
    Of, Screens,
    testing::Values(
        Case{"NeighboursThatTouch", "1920x1080+0+0,1280x1024+1920+56",
             "1920x1080+0+0: 0, 1280x1024+1920+56: 1"},
        Case{"CornersThatTouch", "800x600+0+0,800x600+800+600",
             "800x600+0+0: 0, 800x600+800+600: 1"},
        Case{"AMirror", "1920x1080+0+0,1920x1080+0+0", "1920x1080+0+0: 0 1"},
        Case{"AMirrorOfASmallerMonitor", "1920x1080+0+0,1280x1024+0+0", "1920x1080+0+0: 0 1"},
        Case{"AMirrorOfALargerMonitor", "1280x1024+0+0,1920x1080+0+0", "1920x1080+0+0: 1 0"},
        Case{"AMirrorBesideAnotherMonitor",
             "1280x1024+0+0,1920x1080+1280+0,1280x1024+0+0,800x600+1380+100",
             "1280x1024+0+0: 0 2, 1920x1080+1280+0: 1 3"},
        Case{"AnOverlapOfOneColumn", "1920x1080+0+0,1280x1024+1919+0", "3199x1080+0+0: 0 1"},
        Case{"AnOverlapOfACorner", "1000x1000+0+0,1000x1000+900+900", "1900x1900+0+0: 0 1"},
        // The third overlaps neither of the first two, but the rectangle around them.
        Case{"AnOverlapThatReachesAThird", "1000x1000+0+0,1000x1000+900+900,500x500+1200+100",
             "1900x1900+0+0: 0 1 2"},
        Case{"AThirdThatJoinsTwoOthers", "1000x800+0+0,1000x800+1500+0,1000x800+800+0",
             "2500x800+0+0: 0 1 2"},
        // Before the last monitor comes, all are apart.
        Case{"AChain", "500x500+0+0,500x500+700+700,500x500+1100+0,300x300+450+450",
             "1600x1200+0+0: 0 1 2 3"},
        Case{"AnOverlapBehindAMonitorThatIsApart", "800x600+0+0,800x600+800+0,800x600+900+0",
             "800x600+0+0: 0, 900x600+800+0: 1 2"}),
    [](const auto& test) { return test.param.name; });

TEST(Screens, OfNoMonitorsAreNone) {
    EXPECT_TRUE(screensOf({}).empty());
}

struct Nearest {
    xcb_point_t place, nearest;
};

TEST(NearestPixel, IsThatOfTheMonitorNearestToAPlaceBesideAll) {
    const auto areas = areasOf("1920x1080+0+0,1280x1024+2000+156");
    for (const auto& [place, nearest] : {Nearest{{1920, 500}, {1919, 500}},
                                         {{1959, 500}, {1919, 500}},
                                         {{1960, 500}, {2000, 500}},
                                         {{1999, 500}, {2000, 500}},
                                         {{3279, 20}, {3279, 156}},
                                         {{2010, 20}, {1919, 20}},
                                         {{2100, 20}, {2100, 156}},
                                         {{5000, 5000}, {3279, 1179}},
                                         {{-1, -1}, {0, 0}},
                                         {{-32768, 32767}, {0, 1079}}}) {
        const auto found = nearestTo(place, areas);
        ASSERT_TRUE(found) << place.x << ", " << place.y;
        EXPECT_EQ(found->x, nearest.x) << place.x << ", " << place.y;
        EXPECT_EQ(found->y, nearest.y) << place.x << ", " << place.y;
    }
}

TEST(NearestPixel, IsNoneForAPlaceOnAMonitorOrWithoutMonitors) {
    const auto areas = areasOf("1920x1080+0+0,1280x1024+2000+156");
    for (const xcb_point_t on :
         {xcb_point_t{0, 0}, {1919, 1079}, {2000, 156}, {3279, 1179}, {2500, 500}})
        EXPECT_FALSE(nearestTo(on, areas)) << on.x << ", " << on.y;
    EXPECT_FALSE(nearestTo({7, -9}, {}));
}

} // namespace
