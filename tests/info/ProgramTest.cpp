#include "testing/desktop/Product.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>

// The information window as a user meets it: what is seen of it, its links, its check box, and the
// ways to close it.

namespace desktop {
namespace {

namespace key = support::key;

constexpr int contentsWidth = 400;

struct InfoWindowOfTheProgram : Product, testing::Test {
    InfoWindowOfTheProgram() : Product("1280x800+0+0,1024x768+1280+16") {
        // What the desktop opens addresses with writes them down.
        const auto bin = desktop.home() / "bin";
        std::filesystem::create_directories(bin);
        std::ofstream(bin / "xdg-open")
            << "#!/bin/sh\necho \"$1\" >>'" << opened().string() << "'\n";
        std::filesystem::permissions(bin / "xdg-open", std::filesystem::perms::owner_all);
        desktop.setVariable("PATH", bin.string() + ":" + std::getenv("PATH"));
        desktop.setVariable("XDG_CURRENT_DESKTOP", "X-Generic");
        desktop.startWindowManager("openbox");
        hand.moveTo(640, 700);
    }

    std::filesystem::path opened() const { return desktop.home() / "opened"; }

    /// Start at login is on, so that closing recommends nothing.
    void show(const std::string& product, const Entries& more = {{"CHECK_1", text("1")}}) {
        Entries all = more;
        all.insert({{"CHECK_0", text("0")}, {"RECOMMENDAUTOLOGIN", ""}});
        spawn({.product = product, .active = false, .more = all});
    }
    void restart() { program = run(); }

    /// The frame that the window manager made for it, which is as wide as the contents and its
    /// borders.
    std::optional<Area> frame() const {
        for (const support::SeenWindow& window : eye.windows())
            if (window.mapped && !window.inputOnly && window.area.width >= contentsWidth &&
                window.area.width < contentsWidth + 20 && window.area.height > 300)
                return window.area;
        return std::nullopt;
    }
    bool isShownSoon() {
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

    bool storesSoon(const std::string& key, const std::string& value) const {
        return stores(entry(key, text(value)));
    }
    std::string openedText() const {
        std::ifstream stream(opened());
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    bool opensSoon(const std::string& address) const {
        return waitUntil([&] { return openedText().find(address + "\n") != std::string::npos; });
    }

    static constexpr int bottomBorder = 1;
};

TEST_F(InfoWindowOfTheProgram, IsShownInEveryProductAndClosedByItsButton) {
    for (const char* product : {"palisor", "vellumor", "quenlow", "orbisant", "stay-awake",
                                "crosshair", "calendar-alerts"}) {
        SCOPED_TRACE(product);
        show(product);
        ASSERT_TRUE(isShownSoon()) << program->errors();
        click(at(200, 40));
        EXPECT_TRUE(isGoneSoon());
        EXPECT_EQ(program->errors().find("image"), std::string::npos) << program->errors();
        EXPECT_TRUE(program->running());
        program->end();
    }
}

TEST_F(InfoWindowOfTheProgram, IsClosedByEscapeAndByEnter) {
    for (const xcb_keysym_t pressed : {key::escape, key::enter}) {
        show("orbisant");
        ASSERT_TRUE(isShownSoon());
        hand.type(pressed);
        EXPECT_TRUE(isGoneSoon());
        EXPECT_TRUE(program->running());
        program->end();
    }
}

TEST_F(InfoWindowOfTheProgram, IsClosedThroughTheWindowManager) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    hand.chord({key::leftAlt, 0xffc1}); // F4
    EXPECT_TRUE(isGoneSoon());
    EXPECT_TRUE(program->running());
}

TEST_F(InfoWindowOfTheProgram, StoresItsCheckBoxWhichHoldsOverARestart) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    click(at(50, 89));
    EXPECT_TRUE(storesSoon("CHECK_0", "1"));
    EXPECT_TRUE(frame()) << "it stays until it is closed";
    program->end();
    restart();
    ASSERT_TRUE(isUpSoon()) << program->errors();
    EXPECT_FALSE(frame());
    program->end();

    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    hand.type(key::tab);
    hand.type(key::space);
    EXPECT_TRUE(storesSoon("CHECK_0", "1"));
    hand.type(key::space);
    EXPECT_TRUE(storesSoon("CHECK_0", "0"));
}

TEST_F(InfoWindowOfTheProgram, OpensTheAddressesOfItsLinks) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    const int contact = 122 + 64; // above the logo
    click(at(40, contact + 7));
    EXPECT_TRUE(opensSoon("mailto:support@tamberlo.invalid?Subject=Orbisant&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
    std::filesystem::remove(opened());
    click(at(40, contact + 22));
    EXPECT_TRUE(opensSoon("https://www.tamberlo.invalid")) << openedText();
    std::filesystem::remove(opened());
    click(at(160, 150)); // the logo
    EXPECT_TRUE(opensSoon("https://www.tamberlo.invalid")) << openedText();
    std::filesystem::remove(opened());
    click(at(70, contact - 30)); // Recommend
    EXPECT_TRUE(opensSoon("mailto:support@tamberlo.invalid?Subject=Recommend&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
}

TEST_F(InfoWindowOfTheProgram, LetsTheKeyboardReachItsLinks) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    for (int step = 0; step < 3; ++step)
        hand.type(key::tab);
    hand.type(key::enter);
    EXPECT_TRUE(opensSoon("mailto:support@tamberlo.invalid?Subject=Orbisant&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
    EXPECT_TRUE(frame()) << "Enter was for the link";
}

TEST_F(InfoWindowOfTheProgram, StaysInFrontWhenTheKeyboardGoesBackToTheUser) {
    const support::TestWindow work(desktop.display(), {0, 0, 1200, 780}, {250, 250, 250}, "work");
    ASSERT_TRUE(eye.waitForColour(1000, 400, {250, 250, 250}));
    const support::XConnection x(desktop.display());
    const auto focused = [&x] {
        const auto reply =
            support::own(xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
        return reply ? reply->focus : XCB_NONE;
    };
    ASSERT_TRUE(waitUntil([&] { return focused() == work.id(); }));
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    ASSERT_TRUE(waitUntil([&] { return focused() == work.id(); }))
        << "half a second after the start";
    const Area window = frame().value();
    EXPECT_TRUE(eye.waitUntilSeen([&] {
        return eye.picture(window).at(window.x + 30, window.y + window.height - 10) !=
               Colour{250, 250, 250};
    }));
}

TEST_F(InfoWindowOfTheProgram, ComesToTheMonitorOfTheCursor) {
    hand.moveTo(1800, 700);
    show("palisor");
    ASSERT_TRUE(isShownSoon());
    EXPECT_GE(frame()->x, 1280);
    EXPECT_NEAR(frame()->x + frame()->width / 2, 1280 + 512, 2);
}

TEST_F(InfoWindowOfTheProgram, RecommendsStartingAtLoginWhenItIsFirstClosed) {
    show("orbisant", {});
    ASSERT_TRUE(isShownSoon());
    hand.type(key::escape);
    const auto alert = [this] {
        return std::ranges::any_of(eye.windows(), [](const support::SeenWindow& window) {
            return window.mapped && window.area.width > 300 && window.area.height < 300 &&
                   window.area.height > 80;
        });
    };
    ASSERT_TRUE(eye.waitUntilSeen(alert));
    EXPECT_FALSE(frame());
    // Until the alert has the keyboard a key would go to nobody.
    EXPECT_TRUE(waitUntil([&] {
        hand.type(key::escape);
        return storedSettings().find("RECOMMENDAUTOLOGIN") != std::string::npos;
    }));
    EXPECT_TRUE(storesSoon("CHECK_1", "0"));
}

TEST_F(InfoWindowOfTheProgram, IsDarkWhereTheDesktopAsksForIt) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
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
} // namespace desktop
