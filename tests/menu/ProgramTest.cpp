#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

// The menu of the real program, driven as a user drives it.

using namespace support;

namespace {

constexpr xcb_keysym_t down = 0xff54;
constexpr Colour white{255, 255, 255};

std::string integer(const std::string& key, int value) {
    return "<key>" + key + "</key><integer>" + std::to_string(value) + "</integer>";
}

std::string text(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

// Without one the program would ask for it first.
constexpr const char* shortcut =
    "<key>customShortcut</key><dict><key>keyCode</key><integer>40</integer>"
    "<key>modifierFlags</key><integer>1310720</integer></dict>";

class MenuOfTheProgram : public testing::Test {
  protected:
    MenuOfTheProgram() {
        desktop.startWindowManager("openbox");
        desktop.startCompositor();
        paper.emplace(desktop.display(), Area{1280, 16, 1024, 768}, white);
        hand.moveTo(400, 300);
    }

    /// Not the first start of its life, so that no menu and no window opens by itself.
    void start(const std::string& product, const std::string& settings) {
        name = product;
        std::ofstream(file()) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
                                 "version=\"1.0\"><dict>"
                              << text("PRIMOACCESSO", "1") << text("PRIMOACCESSOCONSLIDER", "1")
                              << text("CHECK_0", "1") << shortcut << settings
                              << "</dict></plist>\n";
        program = desktop.spawn(std::string(PROGRAMS) + "/" + product);
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    }

    std::filesystem::path file() const {
        return desktop.configFolder() / ("com.tamberlo." + name + ".plist");
    }

    /// Windows of the toolkit's menus, lowest first.
    std::vector<Area> menus() {
        std::vector<Area> areas;
        for (const auto& window : eye.windows())
            if (window.mapped && window.overrideRedirect && !window.inputOnly &&
                window.area.width > 60 && window.area.width < 600)
                areas.push_back(window.area);
        return areas;
    }
    bool waitForMenus(std::size_t count) {
        return eye.waitUntilSeen([&] { return menus().size() == count; });
    }

    /// A second start brings the menu of the first one up.
    void openMenu() {
        auto second = desktop.spawn(std::string(PROGRAMS) + "/" + name);
        EXPECT_EQ(second->wait(), 0);
        ASSERT_TRUE(waitForMenus(1));
    }

    /// The slider's panel in the submenu of the entry that so many downward steps reach.
    Area openSubmenu(int steps) {
        for (int step = 0; step < steps; ++step)
            hand.type(down);
        hand.type(key::right);
        EXPECT_TRUE(waitForMenus(2));
        for (const Area& area : menus())
            if (area.width == 210) return {area.x, area.y + (area.height - 50) / 2, 210, 50};
        ADD_FAILURE() << "no slider";
        return {};
    }

    void closeMenus() {
        for (auto left = menus().size(); left > 0; --left) {
            hand.type(key::escape);
            ASSERT_TRUE(waitForMenus(left - 1));
        }
    }

    /// What the program has stored when it has ended.
    std::string stored() {
        program->end();
        std::ifstream stream(file());
        std::string content{std::istreambuf_iterator<char>(stream), {}};
        std::erase_if(content, [](char letter) { return letter == '\n' || letter == '\t'; });
        return content;
    }

    bool turnsInto(int brightness) {
        return eye.waitUntilSeen(
            [&] { return std::abs(eye.colour(2000, 400).green - brightness) <= 1; });
    }

    PrivateDesktop desktop{"1280x800+0+0,1024x768+1280+16"};
    Eye eye{desktop.display()};
    Hand hand{desktop.display()};
    std::optional<TestWindow> paper;
    std::string name;
    std::unique_ptr<ChildProcess> program;
};

testing::AssertionResult holds(const std::string& list, const std::string& part) {
    if (list.find(part) != std::string::npos) return testing::AssertionSuccess();
    return testing::AssertionFailure() << part << " is not in " << list;
}

} // namespace

TEST_F(MenuOfTheProgram, DarkensTheOtherMonitorWhileItsSliderIsDragged) {
    start("palisor", integer("OTHERS_DARK", 4));
    ASSERT_TRUE(turnsInto(204));
    openMenu();
    const Area slider = openSubmenu(3);
    const int y = slider.y + 40;
    hand.moveTo(slider.x + 5 + 7 + 37, y);
    hand.pressButton();
    hand.moveTo(slider.x + 105, y);
    EXPECT_TRUE(turnsInto(128)) << "before the button is released";
    hand.moveTo(slider.x + 5 + 7 + 186 * 3 / 4, y);
    EXPECT_TRUE(turnsInto(64));
    hand.releaseButton();
    closeMenus();
    EXPECT_TRUE(holds(stored(), integer("OTHERS_DARK", 15)));
}

TEST_F(MenuOfTheProgram, NeverRewritesTheDarknessByBeingBuilt) {
    start("palisor", integer("OTHERS_DARK", 4000));
    openMenu();
    for (int step = 0; step < 5; ++step)
        hand.type(down);
    hand.type(key::enter);
    ASSERT_TRUE(waitForMenus(0));
    openMenu();
    openSubmenu(3);
    closeMenus();
    const std::string list = stored();
    EXPECT_TRUE(holds(list, integer("OTHERS_DARK", 4000)));
    EXPECT_TRUE(holds(list, "<key>CTRLALTCMD</key><false/>")) << "the entry that was chosen";
}

TEST_F(MenuOfTheProgram, KeepsTheDarknessInRangeWhateverIsStored) {
    struct Row {
        std::string before;
        xcb_keysym_t pressed;
        int after;
    };
    const Row rows[] = {{integer("OTHERS_DARK", -7), key::right, 1},
                        {integer("OTHERS_DARK", 4000), key::left, 19},
                        {text("OTHERS_DARK", "x"), key::right, 1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.before);
        start("palisor", row.before + integer("VELOCITY", 0));
        openMenu();
        openSubmenu(3);
        hand.type(row.pressed);
        closeMenus();
        const std::string list = stored();
        EXPECT_TRUE(holds(list, integer("OTHERS_DARK", row.after)));
        EXPECT_TRUE(holds(list, integer("VELOCITY", 1)));
    }
}

TEST_F(MenuOfTheProgram, KeepsTheTimeInRangeWhateverIsStored) {
    for (const std::string silly : {"abc", "-7"}) {
        SCOPED_TRACE(silly);
        start("vellumor", text("SCHEDULE", silly));
        openMenu();
        openSubmenu(5);
        hand.type(key::right);
        closeMenus();
        EXPECT_TRUE(holds(stored(), text("SCHEDULE", "1")));
    }
}

TEST_F(MenuOfTheProgram, IsDarkWhereTheDesktopAsksForIt) {
    auto portal = desktop.spawn(PORTAL);
    ASSERT_TRUE(portal->waitForText("ready"));
    start("palisor", "");
    openMenu();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto areas = menus();
        return !areas.empty() && eye.picture(areas.front()).brightness() < 80;
    }));
}

TEST_F(MenuOfTheProgram, IsLightWithoutAPortal) {
    start("palisor", "");
    openMenu();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        const auto areas = menus();
        return !areas.empty() && eye.picture(areas.front()).brightness() > 180;
    }));
}
