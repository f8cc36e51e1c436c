#include "platform/qt/tray/MenuPlace.h"

#include <gtest/gtest.h>
#include <ostream>

using platform::qt::MenuAnchor;
using platform::qt::menuCorner;

namespace {

const QRect screen(100, 50, 1280, 800);
const QSize menu(240, 400);

// 28 pixels wide each.
const QRect top(100, 50, 1280, 28), bottom(100, 822, 1280, 28);
const QRect leftPanel(100, 50, 28, 800), rightPanel(1352, 50, 28, 800);

struct Row {
    const char* name;
    MenuAnchor anchor;
    QPoint toTheRight, toTheLeft; ///< as text runs
};

const Row rows[] = {
    {"at the top", {{600, 52, 24, 24}, top, false}, {600, 78}, {384, 78}},
    {"at the bottom", {{600, 824, 24, 24}, bottom, false}, {600, 422}, {384, 422}},
    {"at the left", {{102, 200, 24, 24}, leftPanel, true}, {128, 200}, {128, 200}},
    {"at the right", {{1354, 200, 24, 24}, rightPanel, true}, {1112, 200}, {1112, 200}},
    {"in the corner of the top", {{1354, 52, 24, 24}, top, false}, {1140, 78}, {1138, 78}},
    {"in the other corner", {{102, 52, 24, 24}, top, false}, {102, 78}, {100, 78}},
    {"low at the left", {{102, 824, 24, 24}, leftPanel, true}, {128, 450}, {128, 450}},
    {"in a short panel that is as wide as high",
     {{600, 822, 28, 28}, {600, 822, 28, 28}, false},
     {600, 422},
     {388, 422}},
    {"in an upright one that says nothing",
     {{102, 200, 24, 24}, leftPanel, false},
     {128, 200},
     {128, 200}},
    {"in a short one that says nothing",
     {{100, 300, 28, 28}, {100, 300, 28, 28}, false},
     {128, 300},
     {128, 300}},
    {"in a short upright one in a corner",
     {{100, 50, 28, 28}, {100, 50, 28, 28}, true},
     {128, 50},
     {128, 50}},
    {"in a short upright one",
     {{100, 300, 28, 28}, {100, 300, 28, 28}, true},
     {128, 300},
     {128, 300}},
    {"of which one point is known", {{611, 836, 1, 1}, bottom, false}, {611, 422}, {372, 422}},
};

} // namespace

TEST(MenuPlace, IsBesideThePanelInLineWithTheItem) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(menuCorner(menu, row.anchor, screen, Qt::LeftToRight), row.toTheRight);
        EXPECT_EQ(menuCorner(menu, row.anchor, screen, Qt::RightToLeft), row.toTheLeft);
    }
}

TEST(MenuPlace, KeepsTheBeginningOfAMenuThatIsLargerThanTheScreenOnIt) {
    const MenuAnchor anchor{{600, 824, 24, 24}, bottom, false};
    EXPECT_EQ(menuCorner({2000, 900}, anchor, screen, Qt::LeftToRight), screen.topLeft());
}

TEST(MenuPlace, IsAtTheEndOfAPanelWhereTraysAre) {
    EXPECT_EQ(platform::qt::endOf(bottom, Qt::LeftToRight).item, QRect(1379, 849, 1, 1));
    EXPECT_EQ(platform::qt::endOf(bottom, Qt::RightToLeft).item, QRect(100, 849, 1, 1));
    const MenuAnchor upright = platform::qt::endOf(leftPanel, Qt::RightToLeft);
    EXPECT_TRUE(upright.isVertical);
    EXPECT_EQ(menuCorner(menu, upright, screen, Qt::RightToLeft), QPoint(128, 450));
}
