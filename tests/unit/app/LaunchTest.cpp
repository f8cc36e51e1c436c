#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST(Launch, ScansTheScreensBeforehandExceptForTheCalendarProduct) {
    for (int variant = 0; variant < 10; ++variant) {
        Program program(variant);
        program.platform.http.setReply(R"({"question":"Well?","active_1":1})");
        // The question comes before the start, which scans in every product.
        std::optional<float> atTheQuestion;
        program.platform.alerts.setWhileOpen([&](const platform::Alert& alert) {
            if (alert.informative == "Well?") atTheQuestion = program.app.MAX_W;
        });
        program.app.applicationDidFinishLaunching();
        EXPECT_EQ(atTheQuestion, variant == variants::calendarAlerts ? 0 : 3200) << variant;
        EXPECT_EQ(program.app.MAX_W, 3200) << variant;
    }
}

TEST(Launch, WithoutAReadableVariantIsThatOfVariantZero) {
    for (const Value& value : {Value{"eight"}, Value{false}, Value{platform::Data{8}}}) {
        Program program(0);
        program.platform.bundle.set("IDApp", value);
        program.app.applicationDidFinishLaunching();
        EXPECT_EQ(program.app.IDApp(), 0);
        EXPECT_THAT(program.effects({"monitor"}), testing::SizeIs(1));
        EXPECT_THAT(program.effects({"connectionProperty", "window"}), IsEmpty());
        EXPECT_THAT(program.app.AButtonBounds, IsEmpty());
    }
}

TEST(Launch, AsksForLeaveToHideTheCursorInTheTwoHidingProducts) {
    for (int variant = 0; variant < 10; ++variant) {
        Program program(variant);
        program.app.applicationDidFinishLaunching();
        const bool hides = variant == 1 || variant == 7;
        EXPECT_THAT(
            program.effects({"connectionProperty"}),
            hides ? Lines{R"(connectionProperty {"name":"SetsCursorInBackground","value":true})"}
                  : Lines{})
            << variant;
    }
}

TEST(Launch, RefreshesTheScreensEveryThreeSecondsAndEveryTenthForTheCrossHair) {
    for (int variant = 0; variant < 10; ++variant) {
        Program program(variant);
        program.app.applicationDidFinishLaunching();
        const std::string interval = variant == 7 ? "0.1" : "3";
        EXPECT_THAT(program.effects({"timer"}),
                    Contains(R"(timer {"selector":"updateScreensSize","interval":)" + interval +
                             R"(,"repeats":true})"))
            << variant;
    }
}

TEST(HotBorderButtons, TakeTheirStateFromTheSettingsInTheThreeProductsThatHaveThem) {
    for (const int variant : {1, 2, 5}) {
        Program program(variant);
        program.setting(keys::BUTANGOLO3, Value{true});
        program.setting(keys::BUTLATO3, Value{false});
        program.launched();
        const auto& app = program.app;
        EXPECT_THAT(app.AButtonBounds,
                    ElementsAre(&app.butangolo1, &app.butangolo2, &app.butangolo3, &app.butangolo4,
                                &app.butlato1, &app.butlato2, &app.butlato3, &app.butlato4));
        std::vector<int> tags, states;
        for (const CheckBox* button : app.AButtonBounds) {
            tags.push_back(button->tag);
            states.push_back(button->state);
            EXPECT_EQ(button->action, "valueChange:");
        }
        EXPECT_THAT(tags, ElementsAre(1, 2, 3, 4, 11, 12, 13, 14));
        EXPECT_THAT(states, ElementsAre(0, 0, 1, 0, 1, 0, 0, 0));
    }
}

TEST(HotBorderButtons, AreNotSetUpInTheOtherProducts) {
    for (const int variant : {0, 3, 4, 6, 7, 8, 9}) {
        Program program(variant);
        program.setting(keys::BUTANGOLO1, Value{true});
        program.launched();
        EXPECT_THAT(program.app.AButtonBounds, IsEmpty()) << variant;
        EXPECT_EQ(program.app.butangolo1.state, 0) << variant;
    }
}

TEST(HotBorderButtons, OfTheUpperAndLowerSideAreDisabledInTheDesktopSwitcher) {
    for (const int variant : {1, 2, 5}) {
        Program program(variant);
        program.launched();
        for (const CheckBox* button : {&program.app.butlato2, &program.app.butlato4}) {
            EXPECT_EQ(button->enabled, variant != 2);
            EXPECT_EQ(button->alpha, variant == 2 ? 0.5 : 1.0);
        }
        EXPECT_TRUE(program.app.butlato1.enabled && program.app.butlato3.enabled);
    }
}

TEST(BoundsText, HasAnAdditionInTheCursorHider) {
    for (const auto& [variant, text] :
         {std::pair{variants::barrier, "BOUNDS_MESSAGE"},
          std::pair{variants::cursorHider, "BOUNDS_MESSAGEBOUNDS_MESSAGE_VELLUMOR_ADDICT"}}) {
        Program program(variant);
        program.launched();
        EXPECT_EQ(program.app.TFBounds, text);
    }
}

TEST(FirstActions, OfTheBarrierDarkenTheOtherMonitors) {
    Program program(variants::barrier);
    program.settled().platform.pointer.place({2000, 500});
    program.app.applicationDidFinishLaunching();
    EXPECT_EQ(program.app.switchedScreen, program.screen(1));
    EXPECT_THAT(
        program.effects({"window", "frontmostActivated"}),
        ElementsAre(
            R"(window {"id":1,"kind":"dark","frame":[0,0,1920,1080],"alpha":0.75,"level":21,"behaviour":4369,"ignoresMouse":false,"background":"black","image":null})",
            "frontmostActivated {}"));
}

TEST(FirstActions, OfTheBarrierThatIsOffDarkenNothing) {
    Program program(variants::barrier);
    program.settled().setting(keys::ATTIVO, Value{false});
    program.app.applicationDidFinishLaunching();
    EXPECT_THAT(program.effects({"window"}), IsEmpty());
}

TEST(FirstActions, OfTheCursorHiderThatStaysHiddenHideAtOnce) {
    for (const bool active : {true, false}) {
        Program program(variants::cursorHider);
        program.setting(keys::STAY_HIDDEN, Value{true});
        program.setting(keys::ATTIVO, Value{active});
        program.app.applicationDidFinishLaunching();
        EXPECT_EQ(program.platform.cursor.isVisible(), !active);
    }
}

} // namespace
} // namespace palisor
