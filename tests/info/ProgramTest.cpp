#include "testing/desktop/Product.h"

#include <algorithm>
#include <csignal>
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
    explicit InfoWindowOfTheProgram(const std::string& monitors = "1280x800+0+0,1024x768+1280+16")
        : Product(monitors) {
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

    /// Those of the shipped dictionaries are reserved names. Starts a product that has others.
    void showWithRealAddresses() {
        useDictionary("orbisant", {{"IDApp", number(5)},
                                   {"CFBundleDisplayName", text("Orbisant")},
                                   {"CFBundleIdentifier", text("com.tamberlo.orbisant")},
                                   {"CFBundleShortVersionString", text("1.0")},
                                   {"MakerSite", text("https://tamberlo.example")},
                                   {"SupportMail", text("help@tamberlo.example")}});
        show("orbisant");
    }

    xcb_window_t focused() const {
        const auto reply = support::own(
            xcb_get_input_focus_reply(server.get(), xcb_get_input_focus(server.get()), nullptr));
        return reply ? reply->focus : static_cast<xcb_window_t>(XCB_NONE);
    }

    /// It is as wide as the contents and a line around them.
    std::optional<Area> frame() const {
        for (const support::SeenWindow& window : eye.windows())
            if (window.mapped && !window.inputOnly && !window.overrideRedirect &&
                window.area.width == contentsWidth + 2 * border && window.area.height > 300)
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
    /// From its lower left corner.
    Spot at(int x, int y) const {
        const Area area = frame().value();
        return {area.x + border + x, area.y + area.height - border - y};
    }
    Spot done() const { return at(330, 52); }
    Spot recommend() const { return at(220, 52); }
    Spot logo() const { return at(50, 52); }
    Spot checkBox() const { return at(28, 109); }
    Spot site() const { return at(40, 142); }
    Spot contact() const { return at(250, 142); }
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

    static constexpr int border = 1;
    support::XConnection server{desktop.display()};
};

TEST_F(InfoWindowOfTheProgram, IsShownInEveryProductAndClosedByItsButton) {
    for (const char* product : {"palisor", "vellumor", "quenlow", "orbisant", "stay-awake",
                                "crosshair", "calendar-alerts"}) {
        SCOPED_TRACE(product);
        show(product);
        ASSERT_TRUE(isShownSoon()) << program->errors();
        click(done());
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
    click(checkBox());
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
    showWithRealAddresses();
    ASSERT_TRUE(isShownSoon());
    const std::string mail = "mailto:help@tamberlo.example?Subject=";
    const std::string body = "&body=%0A%0ASent%20about%20Orbisant";
    click(contact());
    EXPECT_TRUE(opensSoon(mail + "Orbisant" + body)) << openedText();
    std::filesystem::remove(opened());
    click(site());
    EXPECT_TRUE(opensSoon("https://tamberlo.example")) << openedText();
    std::filesystem::remove(opened());
    click(logo());
    EXPECT_TRUE(opensSoon("https://tamberlo.example")) << openedText();
    std::filesystem::remove(opened());
    click(recommend());
    EXPECT_TRUE(opensSoon(mail + "Recommend" + body)) << openedText();
}

TEST_F(InfoWindowOfTheProgram, OffersNoReservedAddress) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    // The pictures, the links and the button are none for the keyboard either.
    hand.type(key::tab);
    hand.type(key::space);
    EXPECT_TRUE(storesSoon("CHECK_0", "1"));
    const Area window = frame().value();
    for (const Spot& spot : {contact(), site(), logo(), recommend(), at(200, window.height - 80)})
        click(spot);
    hand.type(key::escape);
    ASSERT_TRUE(isGoneSoon());
    program->end();
    EXPECT_EQ(openedText(), "");
}

TEST_F(InfoWindowOfTheProgram, LetsTheKeyboardReachItsLinks) {
    showWithRealAddresses();
    ASSERT_TRUE(isShownSoon());
    for (int step = 0; step < 3; ++step) // the picture and the site are before it
        hand.type(key::tab);
    hand.type(key::enter);
    EXPECT_TRUE(opensSoon("mailto:help@tamberlo.example?Subject=Orbisant&body="
                          "%0A%0ASent%20about%20Orbisant"))
        << openedText();
    EXPECT_TRUE(frame()) << "Enter was for the link";
}

TEST_F(InfoWindowOfTheProgram, HasNoneOfTheButtonsOfATitleBar) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    ASSERT_TRUE(waitUntil([&] { return focused() > XCB_INPUT_FOCUS_POINTER_ROOT; }));
    const auto contents = support::own(
        xcb_get_geometry_reply(server.get(), xcb_get_geometry(server.get(), focused()), nullptr));
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->height, frame()->height) << "the window manager adds nothing to it";
}

TEST_F(InfoWindowOfTheProgram, IsSeenOverAFullScreenWindowThatHasTheKeyboard) {
    support::TestWindow film(desktop.display(), {0, 0, 300, 200}, {10, 200, 10}, "film");
    film.makeFullScreen();
    ASSERT_TRUE(eye.waitForColour(640, 700, {10, 200, 10}));
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    ASSERT_TRUE(waitUntil([&] { return focused() == film.id(); })) << "half a second later";
    const Spot corner = at(200, 10);
    EXPECT_FALSE(eye.waitForColour(corner.x, corner.y, {10, 200, 10}, support::milliseconds(500)));
    click(corner);
    ASSERT_TRUE(waitUntil([&] { return focused() != film.id(); })) << "it can be clicked";
    hand.type(key::escape);
    EXPECT_TRUE(isGoneSoon()) << "and typed into";
}

TEST_F(InfoWindowOfTheProgram, GetsTheKeyboardBackByAClickBesideADarkMonitor) {
    const support::TestWindow work(desktop.display(), {0, 0, 1200, 780}, {250, 250, 250}, "work");
    ASSERT_TRUE(waitUntil([&] { return focused() == work.id(); }));
    spawn({.product = "palisor",
           .more = {{"CHECK_1", text("1")}, {"CHECK_0", text("0")}, {"RECOMMENDAUTOLOGIN", ""}}});
    ASSERT_TRUE(isShownSoon()) << program->errors();
    ASSERT_TRUE(coveredSoon(1, 0));
    ASSERT_TRUE(waitUntil([&] { return focused() == work.id(); })) << "half a second later";
    click(at(200, 10));
    ASSERT_TRUE(waitUntil([&] { return focused() != work.id(); }));
    hand.type(key::escape);
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(InfoWindowOfTheProgram, HasTheMenuOfTheFirstStartWaitUntilItIsClosed) {
    spawn({.product = "orbisant",
           .active = false,
           .more = {{"PRIMOACCESSO", ""}, {"RECOMMENDAUTOLOGIN", ""}}});
    ASSERT_TRUE(isShownSoon()) << program->errors();
    // Longer than the program takes to ask for the menu, and to give the keyboard away.
    EXPECT_FALSE(
        eye.waitUntilSeen([this] { return !menus().empty(); }, support::milliseconds(1000)));
    click(done());
    ASSERT_TRUE(isGoneSoon());
    const auto hasAlert = [this] {
        return std::ranges::any_of(eye.windows(), [](const support::SeenWindow& window) {
            return window.mapped && !window.overrideRedirect && window.area.width > 300;
        });
    };
    ASSERT_TRUE(eye.waitUntilSeen(hasAlert)) << "the question whether to start at login";
    EXPECT_TRUE(menus().empty());
    ASSERT_TRUE(waitUntil([&] {
        hand.type(key::escape);
        return storedSettings().find("RECOMMENDAUTOLOGIN") != std::string::npos;
    }));
    EXPECT_TRUE(waitForMenus(1));
}

TEST_F(InfoWindowOfTheProgram, IsNotWaitedForWhereThereIsNone) {
    // Another start than the first shows no window, and its first menu is the user's.
    show("orbisant", {{"CHECK_1", text("1")}, {"CHECK_0", text("1")}, {"PRIMOACCESSO", text("1")}});
    ASSERT_TRUE(isUpSoon()) << program->errors();
    openMenu();
    EXPECT_EQ(menus().size(), 1u);
}

struct InfoWindowAtScale2 : InfoWindowOfTheProgram {
    InfoWindowAtScale2() : InfoWindowOfTheProgram("1920x1080+0+0,1280x1024+1920+56") {
        desktop.setVariable("QT_SCALE_FACTOR", "2");
    }
};

TEST_F(InfoWindowAtScale2, HasNoScrollBar) {
    for (const char* language : {"en_US.UTF-8", "it_IT.UTF-8"}) {
        desktop.setVariable("LC_ALL", language);
        for (const char* product : {"palisor", "vellumor", "quenlow", "orbisant", "stay-awake",
                                    "crosshair", "calendar-alerts"}) {
            SCOPED_TRACE(std::string(product) + " " + language);
            show(product);
            const auto window = [this]() -> std::optional<Area> {
                for (const support::SeenWindow& each : eye.windows())
                    if (each.mapped && !each.inputOnly && !each.overrideRedirect &&
                        each.area.width >= 2 * contentsWidth && each.area.width < 1000)
                        return each.area;
                return std::nullopt;
            };
            ASSERT_TRUE(eye.waitUntilSeen([&] { return window().has_value(); }));
            EXPECT_EQ(window()->width, 2 * (contentsWidth + 2 * border)) << "none beside them";
            EXPECT_LE(window()->height, 1080);
            program->end();
            ASSERT_TRUE(eye.waitUntilSeen([&] { return !window(); }));
        }
    }
}

TEST_F(InfoWindowOfTheProgram, StaysInFrontWhenTheKeyboardGoesBackToTheUser) {
    const support::TestWindow work(desktop.display(), {0, 0, 1200, 780}, {250, 250, 250}, "work");
    ASSERT_TRUE(eye.waitForColour(1000, 400, {250, 250, 250}));
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

TEST_F(InfoWindowOfTheProgram, StaysAwayWhereAnUpgradeStartsTheProgramAgain) {
    show("orbisant");
    ASSERT_TRUE(isShownSoon());
    const auto process = program->pid();
    ASSERT_EQ(::kill(process, SIGUSR1), 0);
    ASSERT_TRUE(eye.waitUntilSeen([this] { return !frame(); }));
    constexpr std::string_view word = "macOS 10.14";
    ASSERT_TRUE(waitUntil([&] {
        const std::string said = program->errors();
        return said.find(word) != said.rfind(word);
    })) << "it has not started again";
    openMenu();
    EXPECT_FALSE(frame());
    EXPECT_TRUE(program->running());
    EXPECT_EQ(program->pid(), process);
}

} // namespace
} // namespace desktop
