#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

// The information window as a user meets it: what is seen of it, its links, its check box, and the
// ways to close it.

namespace {

namespace fs = std::filesystem;
using namespace support;

constexpr xcb_keysym_t tab = 0xff09, space = 0x20;
constexpr int contentsWidth = 400;

std::string text(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

class InfoWindowOfTheProgram : public testing::Test {
  protected:
    InfoWindowOfTheProgram() {
        // What the desktop opens addresses with writes them down.
        fs::create_directories(bin);
        std::ofstream(bin / "xdg-open")
            << "#!/bin/sh\necho \"$1\" >>'" << opened().string() << "'\n";
        fs::permissions(bin / "xdg-open", fs::perms::owner_all);
        desktop.setVariable("PATH", bin.string() + ":" + std::getenv("PATH"));
        desktop.setVariable("XDG_CURRENT_DESKTOP", "X-Generic");
        desktop.startWindowManager("openbox");
        hand.moveTo(640, 700);
    }

    fs::path opened() const { return desktop.home() / "opened"; }
    fs::path settings() const {
        return desktop.configFolder() / ("com.tamberlo." + name + ".plist");
    }

    /// Not the first start, so that no menu opens by itself. Start at login is on, so that closing
    /// recommends nothing.
    void start(const std::string& product, const std::string& more = {}) {
        name = product;
        std::ofstream(settings())
            << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
            << text("PRIMOACCESSO", "1") << text("PRIMOACCESSOCONSLIDER", "1")
            << "<key>ATTIVO</key><false/><key>customShortcut</key><dict><key>keyCode</key>"
               "<integer>40</integer><key>modifierFlags</key><integer>1310720</integer></dict>"
            << (more.empty() ? text("CHECK_0", "0") + text("CHECK_1", "1") : more)
            << "</dict></plist>\n";
        restart();
    }
    void restart() { program = desktop.spawn(PALISOR, {"--product", name}); }

    /// The frame that the window manager made for it, which is as wide as the contents and its
    /// borders.
    std::optional<Area> frame() const {
        for (const SeenWindow& window : eye.windows())
            if (window.mapped && !window.inputOnly && window.area.width >= contentsWidth &&
                window.area.width < contentsWidth + 20 && window.area.height > 300)
                return window.area;
        return std::nullopt;
    }
    bool isUpSoon() {
        return eye.waitUntilSeen([this] { return frame() && isPainted(*frame()); });
    }
    bool isGoneSoon() {
        return eye.waitUntilSeen([this] { return !frame(); });
    }
    /// Its lower part is that of the toolkit and not the black of a window just mapped.
    bool isPainted(const Area& area) const {
        const Colour colour = eye.colour(area.x + 30, area.y + area.height - 10);
        return colour.red > 30;
    }
    /// A point of the contents, whose origin is at the bottom left.
    Spot at(int x, int y) const {
        const Area area = frame().value();
        const int border = (area.width - contentsWidth) / 2;
        return {area.x + border + x, area.y + area.height - bottomBorder - y};
    }
    void click(const Spot& spot) {
        hand.moveTo(spot.x, spot.y);
        hand.click();
    }

    std::string stored() const {
        std::ifstream stream(settings());
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    static bool soon(const std::function<bool()>& reached) {
        const auto deadline = Clock::now() + generous;
        while (!reached())
            if (Clock::now() > deadline) return false;
        return true;
    }
    bool storesSoon(const std::string& key, const std::string& value) const {
        return soon([&] {
            std::string all = stored();
            std::erase_if(all, [](char letter) { return letter == '\n' || letter == '\t'; });
            return all.find(text(key, value)) != std::string::npos;
        });
    }
    std::string openedText() const {
        std::ifstream stream(opened());
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    bool opensSoon(const std::string& address) const {
        return soon([&] { return openedText().find(address + "\n") != std::string::npos; });
    }

    static constexpr int bottomBorder = 1;

    PrivateDesktop desktop{"1280x800+0+0,1024x768+1280+16"};
    TemporaryFolder folder;
    fs::path bin = folder.path() / "bin";
    Eye eye{desktop.display()};
    Hand hand{desktop.display()};
    std::string name;
    std::unique_ptr<ChildProcess> program;
};

TEST_F(InfoWindowOfTheProgram, IsShownInEveryProductAndClosedByItsButton) {
    for (const char* product : {"palisor", "vellumor", "quenlow", "orbisant", "stay-awake",
                                "crosshair", "calendar-alerts"}) {
        SCOPED_TRACE(product);
        start(product);
        ASSERT_TRUE(isUpSoon()) << program->errors();
        click(at(200, 40));
        EXPECT_TRUE(isGoneSoon());
        EXPECT_EQ(program->errors().find("image"), std::string::npos) << program->errors();
        EXPECT_TRUE(program->running());
        program->end();
    }
}

TEST_F(InfoWindowOfTheProgram, IsClosedByEscapeAndByEnter) {
    for (const xcb_keysym_t pressed : {key::escape, key::enter}) {
        start("orbisant");
        ASSERT_TRUE(isUpSoon());
        hand.type(pressed);
        EXPECT_TRUE(isGoneSoon());
        EXPECT_TRUE(program->running());
        program->end();
    }
}

TEST_F(InfoWindowOfTheProgram, IsClosedThroughTheWindowManager) {
    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    hand.chord({key::leftAlt, 0xffc1}); // F4
    EXPECT_TRUE(isGoneSoon());
    EXPECT_TRUE(program->running());
}

TEST_F(InfoWindowOfTheProgram, StoresItsCheckBoxWhichHoldsOverARestart) {
    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    click(at(50, 89));
    EXPECT_TRUE(storesSoon("CHECK_0", "1"));
    EXPECT_TRUE(frame()) << "it stays until it is closed";
    program->end();
    restart();
    // What it says of the tray comes from its run loop, when the window would be there.
    ASSERT_TRUE(program->waitForText("no tray")) << program->errors();
    EXPECT_FALSE(frame());
    program->end();

    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    hand.type(tab);
    hand.type(space);
    EXPECT_TRUE(storesSoon("CHECK_0", "1"));
    hand.type(space);
    EXPECT_TRUE(storesSoon("CHECK_0", "0"));
}

TEST_F(InfoWindowOfTheProgram, OpensTheAddressesOfItsLinks) {
    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    const int contact = 122 + 64; // above the logo
    click(at(40, contact + 7));
    EXPECT_TRUE(opensSoon("mailto:support@tamberlo.invalid?Subject=Orbisant&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
    fs::remove(opened());
    click(at(40, contact + 22));
    EXPECT_TRUE(opensSoon("https://www.tamberlo.invalid")) << openedText();
    fs::remove(opened());
    click(at(160, 150)); // the logo
    EXPECT_TRUE(opensSoon("https://www.tamberlo.invalid")) << openedText();
    fs::remove(opened());
    click(at(70, contact - 30)); // Recommend
    EXPECT_TRUE(opensSoon("mailto:support@tamberlo.invalid?Subject=Recommend&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
}

TEST_F(InfoWindowOfTheProgram, LetsTheKeyboardReachItsLinks) {
    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    for (int step = 0; step < 3; ++step)
        hand.type(tab);
    hand.type(key::enter);
    EXPECT_TRUE(opensSoon("mailto:support@tamberlo.invalid?Subject=Orbisant&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
    EXPECT_TRUE(frame()) << "Enter was for the link";
}

TEST_F(InfoWindowOfTheProgram, StaysInFrontWhenTheKeyboardGoesBackToTheUser) {
    const TestWindow work(desktop.display(), {0, 0, 1200, 780}, {250, 250, 250}, "work");
    ASSERT_TRUE(eye.waitForColour(1000, 400, {250, 250, 250}));
    XConnection x(desktop.display());
    const auto focused = [&x] {
        const auto reply =
            own(xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
        return reply ? reply->focus : XCB_NONE;
    };
    ASSERT_TRUE(soon([&] { return focused() == work.id(); }));
    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    ASSERT_TRUE(soon([&] { return focused() == work.id(); })) << "half a second after the start";
    const Area window = frame().value();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        return eye.picture(window).at(window.x + 30, window.y + window.height - 10) !=
               Colour{250, 250, 250};
    }));
}

TEST_F(InfoWindowOfTheProgram, ComesToTheMonitorOfTheCursor) {
    hand.moveTo(1800, 700);
    start("palisor");
    ASSERT_TRUE(isUpSoon());
    EXPECT_GE(frame()->x, 1280);
    EXPECT_NEAR(frame()->x + frame()->width / 2, 1280 + 512, 2);
}

TEST_F(InfoWindowOfTheProgram, RecommendsStartingAtLoginWhenItIsFirstClosed) {
    start("orbisant", text("CHECK_0", "0") + text("CHECK_1", "0"));
    ASSERT_TRUE(isUpSoon());
    hand.type(key::escape);
    const auto alert = [this] {
        return std::ranges::any_of(eye.windows(), [](const SeenWindow& window) {
            return window.mapped && window.area.width > 300 && window.area.height < 300 &&
                   window.area.height > 80;
        });
    };
    ASSERT_TRUE(eye.waitUntilSeen(alert));
    EXPECT_FALSE(frame());
    // Until the alert has the keyboard a key would go to nobody.
    EXPECT_TRUE(soon([&] {
        hand.type(key::escape);
        return stored().find("RECOMMENDAUTOLOGIN") != std::string::npos;
    }));
    EXPECT_TRUE(storesSoon("CHECK_1", "0"));
}

TEST_F(InfoWindowOfTheProgram, IsDarkWhereTheDesktopAsksForIt) {
    start("orbisant");
    ASSERT_TRUE(isUpSoon());
    EXPECT_GT(eye.picture(*frame()).brightness(), 180);
    program->end();
    ASSERT_TRUE(isGoneSoon());
    const auto portal = desktop.spawn(PORTAL);
    ASSERT_TRUE(portal->waitForText("ready"));
    restart();
    EXPECT_TRUE(
        eye.waitUntilSeen([this] { return frame() && eye.picture(*frame()).brightness() < 100; }));
}

} // namespace
