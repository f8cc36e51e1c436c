#include "Hosts.h"
#include "testing/desktop/Product.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

// The menu of the real program under its icon in real trays.

using desktop::Area;
using traytests::Edge;
using traytests::Host;

namespace {

constexpr int thickest = 64, thinnest = 16, thickestBorder = 4;

struct MenuInTheTray : desktop::Product, testing::Test {
    MenuInTheTray() : Product("1280x800+0+0,1024x768+1280+16") {
        desktop.startWindowManager("openbox");
        hand.moveTo(640, 400);
    }

    bool isAt(Edge edge, const Area& area) const {
        const Area& screen = monitor(0);
        switch (edge) {
        case Edge::top:
            return area.y == 0 && area.height <= thickest;
        case Edge::bottom:
            return area.y + area.height == screen.height && area.height <= thickest;
        case Edge::left:
            return area.x == 0 && area.width <= thickest;
        case Edge::right:
            return area.x + area.width == screen.width && area.width <= thickest;
        }
        return false;
    }

    /// The largest window that lies along the edge of the first monitor.
    Area panelAt(Edge edge) const {
        Area panel;
        for (const auto& window : eye.windows())
            if (window.mapped && !window.inputOnly && isAt(edge, window.area) &&
                std::min(window.area.width, window.area.height) >= thinnest &&
                window.area.width * window.area.height > panel.width * panel.height)
                panel = window.area;
        return panel;
    }

    /// When it is there; a plain tray is not before it has an icon.
    Area waitForPanel(Edge edge) {
        EXPECT_TRUE(eye.waitUntilSeen([&] { return panelAt(edge).width > 0; }));
        return panelAt(edge);
    }

    void startProgram() {
        spawn();
        ASSERT_TRUE(isUpSoon()) << program->errors();
    }

    /// By a second start, the cursor being elsewhere.
    Area menuOfASecondStart() {
        hand.moveTo(640, 400);
        openMenu();
        return closed();
    }

    Area menuOfAClick(int x, int y) {
        hand.moveTo(x, y);
        hand.click();
        EXPECT_TRUE(waitForMenus(1));
        return closed();
    }

    /// The place of the open menu, which is closed when all of it has been seen.
    Area closed() {
        EXPECT_TRUE(eye.waitUntilSeen(
            [&] { return !menus().empty() && eye.picture(menus().front()).brightness() > 180; }));
        if (const char* pictures = std::getenv("PALISOR_PICTURES"))
            eye.screenshot(std::string(pictures) + "/menu-" + picture + ".png");
        const Area area = menus().empty() ? Area{} : menus().front();
        hand.type(support::key::escape);
        EXPECT_TRUE(waitForMenus(0));
        return area;
    }

    /// Whether a menu begins right beside the panel, or so many pixels from there, and in line with
    /// it but for its border.
    static bool isBeside(const Area& panel, Edge edge, const Area& menu, int slack = 0) {
        const bool isUpright = edge == Edge::left || edge == Edge::right;
        const int inLine = isUpright ? menu.y - panel.y : menu.x - panel.x;
        const int distances[] = {menu.y - panel.y - panel.height, panel.y - menu.y - menu.height,
                                 menu.x - panel.x - panel.width, panel.x - menu.x - menu.width};
        return std::abs(inLine) <= thickestBorder &&
               std::abs(distances[static_cast<int>(edge)]) <= slack;
    }

    std::string picture;
    std::unique_ptr<support::ChildProcess> host;
};

support::Spot cornerOf(const Area& area) {
    return {area.x, area.y};
}

struct OfXfce : MenuInTheTray, testing::WithParamInterface<Edge> {};
struct OfLxqt : OfXfce {};
struct OfTint2 : OfXfce {
    /// As it is shipped, but there and with nothing in it but the tray and a clock.
    std::unique_ptr<support::ChildProcess> startTint2(Edge edge) {
        constexpr const char* places[] = {"top center horizontal", "bottom center horizontal",
                                          "center left vertical"};
        std::ifstream shipped("/etc/xdg/tint2/tint2rc");
        const auto path = desktop.home() / "tint2rc";
        std::ofstream changed(path);
        for (std::string line; std::getline(shipped, line);)
            if (line.starts_with("panel_items"))
                changed << "panel_items = SC\n";
            else if (line.starts_with("panel_position"))
                changed << "panel_position = " << places[static_cast<int>(edge)] << '\n';
            else
                changed << line << '\n';
        changed.close();
        return desktop.spawn("tint2", {"-c", path});
    }
};
struct OfAPlainTray : OfXfce {
    void SetUp() override {
        if (!traytests::plainTrayCanBeAt(GetParam())) GTEST_SKIP() << "there is no trayer";
    }
};

} // namespace

// It holds nothing but the icon, in the middle of its edge.
TEST_P(OfAPlainTray, HangsFromTheIconByASecondStartAndByAClick) {
    picture = "plain-" + std::to_string(static_cast<int>(GetParam()));
    host = traytests::startHost(desktop, Host::plainTray, {.edge = GetParam(), .centred = true});
    startProgram();
    const Area icon = waitForPanel(GetParam());
    Area menu = menuOfASecondStart();
    EXPECT_TRUE(isBeside(icon, GetParam(), menu)) << menu.x << ' ' << menu.y;
    menu = menuOfAClick(icon.x + icon.width / 2, icon.y + icon.height / 2);
    EXPECT_TRUE(isBeside(icon, GetParam(), menu)) << menu.x << ' ' << menu.y;
}

// One over the icon would hide what the icon tells.
TEST_P(OfAPlainTray, HasItsToolTipBesideTheIcon) {
    constexpr int gap = 4;
    host = traytests::startHost(desktop, Host::plainTray, {.edge = GetParam(), .centred = true});
    startProgram();
    const Area icon = waitForPanel(GetParam());
    hand.moveTo(icon.x + icon.width / 2, icon.y + icon.height / 2);
    // The toolkit shows it where it likes, and it is moved then.
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto tips = menus(); // which it is as large as
        return tips.size() == 1 && isBeside(icon, GetParam(), tips.front(), gap);
    }));
}

// The coordinates of the toolkit are then other than the server's.
TEST_P(OfAPlainTray, HangsFromTheIconWhereTheToolkitIsScaled) {
    desktop.setVariable("QT_SCALE_FACTOR", "1.25");
    host = traytests::startHost(desktop, Host::plainTray, {.edge = GetParam(), .centred = true});
    startProgram();
    const Area icon = waitForPanel(GetParam());
    const Area menu = menuOfASecondStart();
    EXPECT_TRUE(isBeside(icon, GetParam(), menu, 1)) << menu.x << ' ' << menu.y;
}

INSTANTIATE_TEST_SUITE_P(MenuInTheTray, OfAPlainTray,
                         testing::Values(Edge::top, Edge::bottom, Edge::left, Edge::right));

TEST_P(OfXfce, HangsFromTheIconAtTheBeginningOfThePanel) {
    const bool isVertical = GetParam() == Edge::left || GetParam() == Edge::right;
    picture = "xfce-" + std::to_string(static_cast<int>(GetParam()));
    host = traytests::startHost(desktop, Host::xfcePanel, {.edge = GetParam()});
    startProgram();
    const Area panel = waitForPanel(GetParam());
    Area menu;
    // The panel takes the icon in some time after both are there.
    EXPECT_TRUE(support::waitUntil([&] {
        menu = menuOfASecondStart();
        const Area start = isVertical ? Area{panel.x, menu.y, panel.width, panel.height}
                                      : Area{menu.x, panel.y, panel.width, panel.height};
        return isBeside(start, GetParam(), menu) && (isVertical ? menu.y : menu.x) < thickest;
    })) << menu.x
        << ' ' << menu.y;
}

INSTANTIATE_TEST_SUITE_P(MenuInTheTray, OfXfce,
                         testing::Values(Edge::top, Edge::bottom, Edge::left, Edge::right));

TEST_P(OfTint2, HangsFromTheIconAtTheBeginningOfThePanel) {
    const bool isVertical = GetParam() == Edge::left;
    picture = "tint2-" + std::to_string(static_cast<int>(GetParam()));
    host = startTint2(GetParam());
    startProgram();
    Area menu, panel;
    EXPECT_TRUE(support::waitUntil([&] {
        menu = menuOfASecondStart();
        panel = panelAt(GetParam());
        const Area start = isVertical ? Area{panel.x, menu.y, panel.width, panel.height}
                                      : Area{menu.x, panel.y, panel.width, panel.height};
        return isBeside(start, GetParam(), menu) && (isVertical ? menu.y : menu.x) < thickest;
    })) << menu.x
        << ' ' << menu.y;
}

INSTANTIATE_TEST_SUITE_P(MenuInTheTray, OfTint2,
                         testing::Values(Edge::top, Edge::bottom, Edge::left));

// The item's place is not known before it has been clicked.
TEST_P(OfLxqt, HangsFromThePlaceOfTheLastClickAndBeforeFromTheEndOfThePanel) {
    const bool isVertical = GetParam() == Edge::left;
    picture = "lxqt-" + std::to_string(static_cast<int>(GetParam()));
    host = traytests::startHost(desktop, Host::lxqtPanel, {.edge = GetParam()});
    waitForPanel(GetParam());
    startProgram();
    Area menu, panel;
    EXPECT_TRUE(support::waitUntil([&] {
        menu = menuOfASecondStart();
        panel = panelAt(GetParam());
        const Area end = isVertical ? Area{panel.x, 800 - menu.height, panel.width, panel.height}
                                    : Area{1280 - menu.width, panel.y, panel.width, panel.height};
        return isBeside(end, GetParam(), menu);
    })) << menu.x
        << ' ' << menu.y;
    const int x = isVertical ? panel.width / 2 : 14;
    const int y = isVertical ? 14 : panel.y + panel.height / 2;
    const Area place = isVertical ? Area{panel.x, y, panel.width, panel.height}
                                  : Area{x, panel.y, panel.width, panel.height};
    EXPECT_TRUE(isBeside(place, GetParam(), menuOfAClick(x, y)));
    EXPECT_TRUE(isBeside(place, GetParam(), menuOfASecondStart()));
}

INSTANTIATE_TEST_SUITE_P(MenuInTheTray, OfLxqt,
                         testing::Values(Edge::top, Edge::bottom, Edge::left));

// As a host's own key does, which some hosts have no place for.
TEST_F(MenuInTheTray, OfAnItemHangsFromThePlaceThatTheHostTells) {
    host = traytests::startHost(desktop, Host::lxqtPanel, {.edge = Edge::bottom});
    const Area panel = waitForPanel(Edge::bottom);
    startProgram();
    const std::string item = "org.kde.StatusNotifierItem-" + std::to_string(program->pid()) + "-1";
    ASSERT_TRUE(desktop.isOnTheBusSoon(item));
    const auto activated = [&](int x, int y) {
        desktop.call({"--dest=" + item, "/StatusNotifierItem",
                      "org.kde.StatusNotifierItem.Activate", "int32:" + std::to_string(x),
                      "int32:" + std::to_string(y)});
        EXPECT_TRUE(waitForMenus(1));
        return closed();
    };
    const int y = panel.y + panel.height / 2;
    const Area menu = activated(700, y);
    EXPECT_EQ(cornerOf(menu), (support::Spot{700, panel.y - menu.height}));
    EXPECT_EQ(cornerOf(activated(300, y)).x, 300);
    EXPECT_EQ(cornerOf(activated(0, 0)).x, 300) << "no place";
    EXPECT_EQ(cornerOf(activated(400, 200)).x, 300) << "on no panel";
    EXPECT_EQ(cornerOf(menuOfASecondStart()).x, 300);
}

TEST_F(MenuInTheTray, IsAtTheCursorWhereThereIsNoTray) {
    startProgram();
    const Area menu = menuOfASecondStart();
    EXPECT_EQ(cornerOf(menu), (support::Spot{640, 400}));
}

namespace {

struct MinimisedWindow : MenuInTheTray {
    static constexpr int smallest = 200; ///< pixels wide, of a window that is meant

    /// Those windows of the program that are on the screen, but for menus.
    bool isShown() const {
        const auto windows = eye.windows();
        return std::ranges::any_of(windows, [](const auto& window) {
            return window.mapped && !window.inputOnly && !window.overrideRedirect &&
                   window.area.width > smallest && window.area.height > smallest;
        });
    }
    bool isShownSoon(bool shown = true) {
        return eye.waitUntilSeen([&] { return isShown() == shown; });
    }

    void clickOn(const Area& icon) {
        hand.moveTo(icon.x + icon.width / 2, icon.y + icon.height / 2);
        hand.click();
    }

    support::XConnection x{desktop.display()};
};

} // namespace

TEST_F(MinimisedWindow, OfInformationComesBackByAClickOnTheIcon) {
    host = traytests::startHost(desktop, Host::plainTray, {.centred = true});
    spawn({.more = {{"CHECK_0", desktop::text("0")}}});
    ASSERT_TRUE(isShownSoon()) << program->errors();
    const Area icon = waitForPanel(Edge::top);
    x.minimiseWindows(smallest);
    ASSERT_TRUE(isShownSoon(false));
    clickOn(icon);
    EXPECT_TRUE(isShownSoon());
    EXPECT_TRUE(menus().empty());
    clickOn(icon);
    EXPECT_TRUE(waitForMenus(1)) << "of the next click";
}

TEST_F(MinimisedWindow, OfAnAlertComesBackByAClickOnTheIcon) {
    host = traytests::startHost(desktop, Host::plainTray, {.centred = true});
    startProgram();
    const Area icon = waitForPanel(Edge::top);
    choose(2); // the shortcut
    ASSERT_TRUE(isShownSoon());
    x.minimiseWindows(smallest);
    ASSERT_TRUE(isShownSoon(false));
    clickOn(icon);
    EXPECT_TRUE(isShownSoon());
    EXPECT_TRUE(menus().empty());
}
