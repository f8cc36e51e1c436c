#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::InfoButton;
using platform::InfoCheckBox;
using platform::InfoText;
using platform::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* shownAtStart =
    R"(window {"id":1,"kind":"info","frame":[0,0,0,0],"alpha":1,"level":0,"behaviour":0,)"
    R"("ignoresMouse":false,"background":null,"image":null})";
constexpr const char* activated = "applicationActivated {}";

struct InfoWindow : Program {
    explicit InfoWindow(int variant = variants::wrapAround) : Program(variant) {
        settled();
        setting(keys::CHECK_0, Value{"0"});
        setting(keys::CHECK_1, Value{"1"});
        platform.bundle.set("CFBundleDisplayName", Value{"A Name"});
        platform.bundle.set("CFBundleShortVersionString", Value{"2.5"});
        platform.bundle.set("SupportMail", Value{"help@maker.invalid"});
        platform.bundle.set("MakerSite", Value{"https://maker.invalid"});
    }

    /// The effects of the launch that concern the window.
    Lines launch() {
        app.applicationDidFinishLaunching();
        return effects({"window", "windowOut", "windowFrame", "applicationActivated", "alert"});
    }

    template <class View>
    std::vector<View> views() const {
        std::vector<View> found;
        for (const auto& view : platform.infoWindows.views())
            if (const auto* fitting = std::get_if<View>(&view)) found.push_back(*fitting);
        return found;
    }
    InfoButton button(std::string_view action) const {
        for (const auto& view : views<InfoButton>())
            if (view.action == action) return view;
        return {};
    }
    InfoButton picture(std::string_view image) const {
        for (const auto& view : views<InfoButton>())
            if (view.image == image) return view;
        return {};
    }
    InfoText text(std::string_view name) const {
        for (const auto& view : views<InfoText>())
            if (view.name == name) return view;
        return {};
    }
    InfoCheckBox box() const { return views<InfoCheckBox>().at(0); }
};

TEST(InfoWindow, IsShownAtStartAndFilledAfterwards) {
    InfoWindow program;
    program.platform.infoWindows.setImageSize("Orbisant", {160, 112});
    // One line for each of the three texts, and 5 more below the description.
    EXPECT_THAT(program.launch(), ElementsAre(shownAtStart, activated,
                                              R"(windowFrame {"id":1,"frame":[760,240,400,406]})"));
    EXPECT_EQ(program.platform.infoWindows.title(), "A Name 2.5");
    EXPECT_TRUE(program.app.windowInfo->isVisible());
    const auto shown = program.platform.windows.shown();
    ASSERT_THAT(shown, SizeIs(1));
    EXPECT_THAT(shown[0].text, HasSubstr(R"("behaviour":2)"));
}

TEST(InfoWindow, ThatIsNotWantedAtStartIsLaidOutUnseen) {
    InfoWindow program;
    program.setting(keys::CHECK_0, Value{"1"});
    EXPECT_THAT(program.launch(), IsEmpty());
    EXPECT_FALSE(program.app.windowInfo->isVisible());
    EXPECT_EQ(program.app.windowInfo->frame().width, 400);
    EXPECT_EQ(program.box().box.state, 1);
}

TEST(InfoWindow, ThatIsNotWantedAtStartRecommendsStartingAtLoginAtOnce) {
    InfoWindow program;
    program.setting(keys::CHECK_0, Value{"1"});
    program.setting(keys::CHECK_1, Value{"0"});
    program.platform.alerts.setAnswers({0});
    EXPECT_THAT(program.launch(), ElementsAre(HasSubstr("RECOMMEND_STARTATLOGIN")));
}

TEST(InfoWindow, OfEachProductHasItsDescriptionAndItsPicture) {
    const std::tuple<int, const char*, const char*> rows[] = {
        {1, "TESTO_VELLUMORTESTO_AGGIUNTO", "Vellumor"},
        {2, "TESTO_QUENLOWTESTO_AGGIUNTO", "Quenlow"},
        {3, "TESTO_AGGIUNTO", "icon_3"},
        {5, "TESTO_ORBISANTTESTO_AGGIUNTO", "Orbisant"},
        {7, "TESTO_AGGIUNTO", "icon_7"},
        {8, "TESTO_PALISOR", "Palisor"},
        {9, "TESTO_AGGIUNTO", "icon_9"},
    };
    for (const auto& [variant, description, picture] : rows) {
        InfoWindow program(variant);
        program.launch();
        EXPECT_EQ(program.text("description").text.text, description) << variant;
        EXPECT_EQ(program.picture(picture).action, "opentamberloosx") << variant;
    }
}

TEST(InfoWindow, OfAnUnknownProductHasThePictureOfItsNumberAndTheAddedText) {
    for (const int variant : {0, 4, 6, 1234, -1}) {
        InfoWindow program(variant);
        program.launch();
        EXPECT_EQ(program.text("description").text.text, "TESTO_AGGIUNTO");
        EXPECT_EQ(program.picture("icon_" + std::to_string(variant)).action, "opentamberloosx");
    }
}

TEST(InfoWindow, IsStackedFromTheBottomUpwards) {
    InfoWindow program;
    auto& windows = program.platform.infoWindows;
    windows.setImageSize("logo", {70, 50});
    windows.setImageSize("Orbisant", {161, 90});
    program.platform.bundle.setLanguages({"en"});
    program.platform.bundle.setStrings([](std::string_view, std::string_view key) {
        return key == "TESTO_ORBISANT" ? std::string_view("one\n\nthree") : std::string_view();
    });
    program.launch();
    EXPECT_EQ(program.button("closeInfo").frame, (Rect{150, 20, 100, 40}));
    EXPECT_EQ(program.box().frame, (Rect{41, 80, 418, 18}));
    EXPECT_EQ(program.picture("logo").frame, (Rect{121, 122, 70, 50}));
    EXPECT_EQ(program.text("contact").frame, (Rect{20, 172, 360, 15}));
    EXPECT_EQ(program.button("openConsigli").frame, (Rect{20, 122, 100, 40}));
    EXPECT_EQ(program.text("web").frame, (Rect{20, 187, 360, 15}));
    EXPECT_EQ(program.text("description").frame, (Rect{20, 202, 360, 50}));
    EXPECT_EQ(program.picture("Orbisant").frame, (Rect{119.5, 271, 161, 90}));
    EXPECT_EQ(program.app.windowInfo->frame().height, 361 + 19 + 20);
}

TEST(InfoWindow, GrowsWithItsTexts) {
    InfoWindow program;
    program.platform.bundle.set("SupportMail", Value{std::string(61, 'a')});
    program.launch();
    EXPECT_EQ(program.text("contact").frame.height, 30);
    EXPECT_EQ(program.text("web").frame.y, program.text("contact").frame.y + 30);
    EXPECT_EQ(program.button("openConsigli").frame.y, program.text("contact").frame.y - 50);
}

TEST(InfoWindow, StandsInTheMiddleOfTheMainScreenWithItsFootBelow) {
    const std::tuple<std::vector<Rect>, std::size_t, double, double> rows[] = {
        {{{0, 0, 1920, 1080}, {1920, 0, 1281, 1025}}, 1, 440.5, 212.5},
        {{{0, 0, 800, 600}}, 0, 200, 0},
        {{}, 0, -200, -300},
    };
    for (const auto& [screens, main, x, y] : rows) {
        InfoWindow program;
        program.platform.displays.replace(screens, main);
        program.launch();
        EXPECT_EQ(program.app.windowInfo->frame().x, x);
        EXPECT_EQ(program.app.windowInfo->frame().y, y);
    }
}

TEST(InfoWindow, HasTheTitlesOfItsButtonsInTheSessionsLanguage) {
    InfoWindow program;
    program.launch();
    EXPECT_EQ(program.button("closeInfo").title, "DONE");
    EXPECT_TRUE(program.button("closeInfo").closes);
    EXPECT_EQ(program.button("openConsigli").title, "CONSIGLIA");
    EXPECT_FALSE(program.button("openConsigli").closes);
    EXPECT_EQ(program.box().title, "NON_MOSTRARE_FINESTRA");
}

TEST(InfoWindow, HasItsBoxCheckedUnlessTheSettingSaysZeroAndIsShownUnlessItSaysOne) {
    struct {
        Value stored;
        int state;
        bool shown;
    } const cases[] = {
        {Value{"0"}, 0, true},   {Value{"1"}, 1, false},
        {Value{""}, 1, true},    {Value{"no"}, 1, true},
        {Value{"2"}, 1, true},   {Value{"YES"}, 1, true},
        {Value{true}, 1, true},  {Value{std::int64_t{1}}, 1, true},
        {Value{false}, 1, true},
    };
    for (const auto& [stored, state, shown] : cases) {
        const auto text = platform::stringValue(stored).value_or("no text");
        InfoWindow program;
        program.setting(keys::CHECK_0, stored);
        program.launch();
        EXPECT_EQ(program.box().box.state, state) << text;
        EXPECT_EQ(program.app.windowInfo->isVisible(), shown) << text;
    }
    InfoWindow absent;
    absent.platform.settings.edit(keys::CHECK_0, std::nullopt);
    EXPECT_THAT(absent.launch(), SizeIs(3)) << "shown";
    EXPECT_EQ(absent.box().box.state, 1);
}

TEST(InfoWindow, StoresItsBoxAtOnceAndHeedsItAtTheNextStart) {
    InfoWindow program;
    program.launch();
    ASSERT_TRUE(program.platform.infoWindows.click(0, 1));
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(write {"key":"CHECK_0","value":"1"})", "synchronize {}"));
    EXPECT_TRUE(program.app.windowInfo->isVisible());
    ASSERT_TRUE(program.platform.infoWindows.click(0, 0));
    EXPECT_THAT(program.writesOf("CHECK_0"), ElementsAre(R"(write {"key":"CHECK_0","value":"0"})"));
}

TEST(InfoWindow, IsClosedByItsButton) {
    InfoWindow program;
    program.launch();
    ASSERT_TRUE(program.platform.infoWindows.press("closeInfo"));
    EXPECT_THAT(program.effects(), ElementsAre(R"(windowOut {"id":1})"));
    EXPECT_FALSE(program.app.windowInfo->isVisible());
}

TEST(InfoWindow, RecommendsStartingAtLoginOnceItIsOut) {
    InfoWindow program;
    program.launch();
    program.setting(keys::CHECK_1, Value{"0"});
    program.platform.alerts.setWhileOpen(
        [&](const auto&) { EXPECT_FALSE(program.app.windowInfo->isVisible()); });
    EXPECT_EQ(program.app.butautologin.state, 0);
    ASSERT_TRUE(program.platform.infoWindows.press("closeInfo"));
    EXPECT_THAT(program.effects({"windowOut", "alert", "loginItem"}),
                ElementsAre(R"(windowOut {"id":1})", HasSubstr("RECOMMEND_STARTATLOGIN"),
                            HasSubstr(R"("enabled":true)")));
    EXPECT_EQ(program.app.butautologin.state, 1);
}

TEST(InfoWindow, ThatIsClosedTwiceGoesOutOnce) {
    InfoWindow program;
    program.launch();
    program.app.closeInfo();
    program.app.closeInfo();
    EXPECT_THAT(program.effects({"windowOut"}), SizeIs(1));
}

TEST(InfoWindow, ThatIsOpenedAgainComesToTheDesktopOfTheUser) {
    InfoWindow program;
    program.launch();
    program.app.closeInfo();
    program.effects();
    program.app.openInfo();
    EXPECT_THAT(program.effects(), ElementsAre(HasSubstr(R"("behaviour":2)"), activated));
}

TEST(InfoWindow, BeforeTheLaunchCanBeOpenedAndClosed) {
    InfoWindow program;
    program.app.openInfo();
    program.app.closeInfo();
    EXPECT_THAT(program.effects({"window", "windowOut"}), SizeIs(2));
}

TEST(InfoLinks, LookLikeLinks) {
    const auto link = InfoWindow().app.hyperlinkFromString_withURL("text", "https://address");
    EXPECT_EQ(link.text, "text");
    EXPECT_EQ(link.link, "https://address");
    EXPECT_EQ(link.colour, platform::TextColour::blue);
    EXPECT_TRUE(link.underlined);
}

TEST(InfoLinks, AreTheAddressesOfTheMaker) {
    InfoWindow program;
    program.launch();
    EXPECT_EQ(program.text("contact").text.text, "help@maker.invalid");
    EXPECT_EQ(program.text("contact").text.link, "email:help@maker.invalid");
    EXPECT_EQ(program.text("web").text.text, "https://maker.invalid");
    EXPECT_EQ(program.text("web").text.link, "https://maker.invalid");
    EXPECT_EQ(program.text("description").text.link, "");
}

TEST(InfoLinks, OfTheContactOpenTheMailProgramAndNeverTheirOwnAddress) {
    InfoWindow program;
    program.launch();
    ASSERT_TRUE(program.platform.infoWindows.followLink("contact", "email:help@maker.invalid"));
    EXPECT_THAT(
        program.effects(),
        ElementsAre(
            R"(openURL {"url":"mailto:help@maker.invalid?Subject=A%20Name&body=MAIL_BOTTOM"})"));
}

TEST(InfoLinks, OfTheContactThatLeadElsewhereDoNothing) {
    InfoWindow program;
    program.launch();
    for (const char* other : {"email:HELP@maker.invalid", "https://maker.invalid", "", "email:"}) {
        ASSERT_TRUE(program.platform.infoWindows.followLink("contact", other));
        EXPECT_TRUE(program.app.textView_clickedOnLink("contact", other)) << "dealt with";
    }
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(InfoLinks, OfTheWebOpenTheirAddress) {
    InfoWindow program;
    program.launch();
    ASSERT_TRUE(program.platform.infoWindows.followLink("web", "https://maker.invalid"));
    EXPECT_THAT(program.effects(), ElementsAre(R"(openURL {"url":"https://maker.invalid"})"));
}

TEST(InfoLinks, OfThePicturesOpenTheMakersSite) {
    InfoWindow program;
    program.launch();
    ASSERT_TRUE(program.platform.infoWindows.press("opentamberloosx"));
    EXPECT_THAT(program.effects(), ElementsAre(R"(openURL {"url":"https://maker.invalid"})"));
}

TEST(Recommending, OpensAMailAboutTheProductToTheMaker) {
    InfoWindow program;
    program.platform.bundle.setLanguages({"en"});
    program.platform.bundle.setStrings([](std::string_view, std::string_view key) {
        return key == "MAIL_BOTTOM" ? std::string_view("about %@, %@") : key;
    });
    program.launch();
    ASSERT_TRUE(program.platform.infoWindows.press("openConsigli"));
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(openURL {"url":"mailto:help@maker.invalid?Subject=CONSIGLIA)"
                            R"(&body=about%20A%20Name%2C%20%25%40"})"));
}

} // namespace
} // namespace palisor
