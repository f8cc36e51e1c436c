#include "TrayDesktop.h"

#include <algorithm>
#include <gtest/gtest.h>

using traytests::Edge;
using traytests::Host;
using traytests::TrayDesktop;

namespace {

constexpr int leftOfX = 1, middleOfX = 2, rightOfX = 3;
constexpr int left = 0, right = 1, middle = 2;

} // namespace

TEST(TrayIcon, IsInAPlainTrayWithAllItsClicks) {
    TrayDesktop tray;
    tray.startHost(Host::plainTray);
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    tray.keepPicture("plain-picture");
    EXPECT_TRUE(tray.clickArrives(*icon, leftOfX, left));
    EXPECT_TRUE(tray.clickArrives(*icon, rightOfX, right));
    EXPECT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    EXPECT_TRUE(tray.waitForTemplate(*icon));
    tray.keepPicture("plain-template");
}

TEST(TrayIcon, IsReadableOnABlackTray) {
    TrayDesktop tray;
    tray.startHost(Host::plainTray, {.black = true});
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    ASSERT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    EXPECT_TRUE(tray.waitForTemplate(*icon));
    tray.keepPicture("plain-black");
}

TEST(TrayIcon, IsReadableOnServersOfEveryDepth) {
    for (const int depth : {16, 30})
        for (const bool black : {false, true}) {
            SCOPED_TRACE(std::to_string(depth) + (black ? " on black" : " on light"));
            TrayDesktop tray(depth);
            if (tray.desktop.kind() != support::ServerKind::xorg)
                GTEST_SKIP() << "no server of that depth";
            tray.startHost(Host::plainTray, {.black = black});
            tray.startProgram();
            const auto icon = tray.waitForPicture();
            ASSERT_TRUE(icon) << tray.program().output();
            ASSERT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
            EXPECT_TRUE(tray.waitForTemplate(*icon));
            tray.keepPicture("depth-" + std::to_string(depth) + (black ? "-black" : ""));
            EXPECT_EQ(tray.brightnessInTheMiddle(*icon) > 128, black);
        }
}

TEST(TrayIcon, IsInThePanelOfXfceWithAllItsClicks) {
    TrayDesktop tray;
    tray.startHost(Host::xfcePanel);
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    tray.keepPicture("xfce-picture");
    EXPECT_TRUE(tray.clickArrives(*icon, leftOfX, left));
    EXPECT_TRUE(tray.clickArrives(*icon, rightOfX, right));
    EXPECT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    EXPECT_TRUE(tray.waitForTemplate(*icon));
    tray.keepPicture("xfce-template");
}

TEST(TrayIcon, IsLightOnADarkPanel) {
    TrayDesktop tray;
    tray.startHost(Host::darkXfcePanel);
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    ASSERT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    ASSERT_TRUE(tray.waitForTemplate(*icon));
    tray.keepPicture("xfce-dark");
    EXPECT_GT(tray.brightnessInTheMiddle(*icon), 150);
}

namespace {

struct ShippedPanel {
    const char* name;
    bool composited;
    void (*start)(TrayDesktop& tray);
    bool dark;
};

void PrintTo(const ShippedPanel& panel, std::ostream* stream) {
    *stream << panel.name << (panel.composited ? ", composited" : "");
}

template <bool composited>
constexpr ShippedPanel shippedPanels[] = {
    {"lxqt-dark", composited, [](TrayDesktop& tray) { tray.startShippedLxqtPanel("dark"); }, true},
    {"lxqt-light", composited, [](TrayDesktop& tray) { tray.startShippedLxqtPanel("light"); },
     false},
    {"tint2", composited,
     [](TrayDesktop& tray) { tray.startShippedTint2("/etc/xdg/tint2/tint2rc"); }, true},
    {"tint2-dark", composited,
     [](TrayDesktop& tray) {
         tray.startShippedTint2("/usr/share/tint2/horizontal-dark-transparent.tint2rc");
     },
     true},
    {"tint2-light", composited,
     [](TrayDesktop& tray) {
         tray.startShippedTint2("/usr/share/tint2/horizontal-light-opaque.tint2rc");
     },
     false},
};

class ShippedConfiguration : public testing::TestWithParam<ShippedPanel> {};

} // namespace

TEST_P(ShippedConfiguration, HasAnIconThatIsSeen) {
    const ShippedPanel& panel = GetParam();
    TrayDesktop tray;
    if (panel.composited) tray.desktop.startCompositor();
    panel.start(tray);
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    ASSERT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    EXPECT_TRUE(tray.waitForTemplate(*icon));
    tray.keepPicture(std::string("shipped-") + panel.name +
                     (panel.composited ? "-composited" : ""));
    if (panel.dark)
        EXPECT_GT(tray.brightnessInTheMiddle(*icon), 150);
    else
        EXPECT_LT(tray.brightnessInTheMiddle(*icon), 100);
}

INSTANTIATE_TEST_SUITE_P(TrayIcon, ShippedConfiguration, testing::ValuesIn(shippedPanels<false>));
INSTANTIATE_TEST_SUITE_P(CompositedTrayIcon, ShippedConfiguration,
                         testing::ValuesIn(shippedPanels<true>));

// The pictures that the item offers are red: only the panel itself can have made it light.
TEST(StatusNotifierItem, IsTintedByADarkPanel) {
    TrayDesktop tray;
    tray.startHost(Host::darkXfcePanel);
    const auto program = tray.desktop.spawn(ITEM_PROGRAM, {tray.picturesFolder(), "cross"});
    const support::Area panel{0, 0, 40, 28};
    const auto lightPixels = [&] {
        const auto seen = tray.eye->picture(panel);
        return std::count_if(seen.pixels.begin(), seen.pixels.end(), [](const auto& pixel) {
            return pixel.red > 180 && pixel.green > 180 && pixel.blue > 180;
        });
    };
    EXPECT_TRUE(tray.waitUntilSeen([&] { return lightPixels() > 60; })) << program->errors();
    tray.keepPicture("xfce-item");
}

TEST(TrayIcon, IsAStatusNotifierItemInThePanelOfLxqtWithAllItsClicks) {
    TrayDesktop tray;
    tray.startHost(Host::lxqtPanel, {.edge = Edge::bottom});
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    tray.keepPicture("lxqt-picture");
    EXPECT_TRUE(tray.clickArrives(*icon, leftOfX, left));
    EXPECT_TRUE(tray.clickArrives(*icon, rightOfX, right));
    EXPECT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    EXPECT_TRUE(tray.waitForTemplate(*icon));
    tray.keepPicture("lxqt-template");
}

// As at each crossing, which switches the program off and on again.
TEST(TrayIcon, TellsAHostNothingWhereItIsAtOnceAsBefore) {
    TrayDesktop tray;
    tray.startHost(Host::lxqtPanel, {.edge = Edge::bottom});
    tray.startProgram();
    const auto icon = tray.waitForPicture();
    ASSERT_TRUE(icon) << tray.program().output();
    const auto monitor = tray.desktop.spawn(
        "dbus-monitor", {"--session", "type='signal',interface='org.kde.StatusNotifierItem'"});
    ASSERT_TRUE(monitor->waitForText("NameAcquired"));
    ASSERT_TRUE(tray.clickArrives(*icon, rightOfX, right));
    ASSERT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
    ASSERT_TRUE(monitor->waitForText("NewIcon"));
    EXPECT_TRUE(tray.waitForTemplate(*icon));
    // The middle click's own, in this order; the template's tint may be told anew later.
    const std::string told = monitor->output();
    const auto title = told.find("NewTitle");
    EXPECT_LT(title, told.find("NewIcon")) << told;
    EXPECT_EQ(told.find("NewTitle", title + 1), std::string::npos) << told;
}

TEST(TrayIcon, SaysOnceThatThereIsNoTrayAndComesWithTheFirst) {
    TrayDesktop tray;
    tray.startProgram();
    ASSERT_TRUE(tray.program().waitForText("no tray"));
    tray.startHost(Host::xfcePanel);
    ASSERT_TRUE(tray.waitForPicture());
    tray.killHost();
    ASSERT_TRUE(tray.waitForNoPicture());
    tray.startHost(Host::plainTray);
    ASSERT_TRUE(tray.waitForPicture());
    const std::string output = tray.program().output();
    EXPECT_EQ(output.find("no tray"), output.rfind("no tray")) << output;
}

TEST(TrayIcon, TakesAWatcherWithoutAHostForNoTray) {
    TrayDesktop tray;
    const auto watcher = tray.desktop.spawn(WATCHER);
    ASSERT_TRUE(watcher->waitForText("ready"));
    tray.startProgram();
    EXPECT_TRUE(tray.program().waitForText("no tray"));
    EXPECT_EQ(watcher->output().find("registered"), std::string::npos);
}

TEST(TrayIcon, IsBlendedInACompositedPanel) {
    for (const Host host : {Host::xfcePanel, Host::plainTray}) {
        TrayDesktop tray;
        tray.desktop.startCompositor();
        tray.startHost(host);
        tray.startProgram();
        const auto icon = tray.waitForPicture();
        ASSERT_TRUE(icon) << tray.program().output();
        ASSERT_TRUE(tray.clickArrives(*icon, middleOfX, middle));
        EXPECT_TRUE(tray.waitForTemplate(*icon));
        tray.keepPicture(host == Host::plainTray ? "plain-composited" : "xfce-composited");
        EXPECT_EQ(tray.program().output().find("X11 error"), std::string::npos)
            << tray.program().output();
    }
}

TEST(TrayIcon, FillsAPanelOfTwiceTheSize) {
    TrayDesktop tray;
    tray.startHost(Host::plainTray, {.height = 48});
    tray.startProgram();
    EXPECT_TRUE(tray.waitUntilSeen([&] {
        const auto icon = tray.pictureArea();
        return icon && icon->width >= 44;
    }));
    tray.keepPicture("plain-twice");
}

TEST(TrayIcon, FillsAPanelThatIsScaledTwice) {
    TrayDesktop tray;
    tray.desktop.setVariable("GDK_SCALE", "2");
    tray.startHost(Host::xfcePanel);
    tray.startProgram();
    const support::Area atTheLeft{0, 6, 44, 44};
    EXPECT_TRUE(tray.waitUntilSeen([&] { return tray.pictureArea() == atTheLeft; }))
        << "the icon is longer than high, or not scaled";
    tray.keepPicture("xfce-twice");
}

class RestartedHost : public testing::TestWithParam<Host> {};

TEST_P(RestartedHost, HasTheIconBack) {
    TrayDesktop tray;
    tray.startHost(GetParam());
    tray.startProgram();
    ASSERT_TRUE(tray.waitForPicture());
    for (int time = 0; time < 3; ++time) {
        tray.killHost();
        ASSERT_TRUE(tray.waitForNoPicture());
        tray.startHost(GetParam());
        const auto icon = tray.waitForPicture();
        ASSERT_TRUE(icon) << time;
        EXPECT_TRUE(tray.clicksComeToArrive(*icon));
    }
    EXPECT_EQ(tray.program().output().find("X11 error"), std::string::npos)
        << tray.program().output();
}

INSTANTIATE_TEST_SUITE_P(TrayIcon, RestartedHost,
                         testing::Values(Host::plainTray, Host::xfcePanel, Host::lxqtPanel));

TEST(TrayIcon, MovesBetweenTheTwoKindsOfTray) {
    TrayDesktop tray;
    tray.startHost(Host::lxqtPanel, {.edge = Edge::bottom});
    tray.startProgram();
    const auto asItem = tray.waitForPicture();
    ASSERT_TRUE(asItem);
    // The plain tray is at the top, the panel at the bottom; there is one icon at a time.
    const auto plain = tray.startPlainTray();
    const auto isAtTheTop = [&](bool top) {
        return tray.waitUntilSeen([&] {
            const auto area = tray.pictureArea();
            return area && (area->y < 400) == top;
        });
    };
    EXPECT_TRUE(isAtTheTop(true));
    plain->end();
    EXPECT_TRUE(isAtTheTop(false));
}
