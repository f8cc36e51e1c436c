#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(Highlight, OfNoneChangesNothing) {
    Program program(variants::cursorHider);
    program.launched();
    program.app.highLightBoders(0);
    EXPECT_THAT(program.effects(), IsEmpty());
}

TEST(Highlight, LaysAFrameOverEveryMonitorForHalfASecond) {
    for (const int shown : {1, 2, -1}) {
        Program program(variants::cursorHider);
        program.launched();
        program.app.highLightBoders(shown);
        EXPECT_THAT(
            program.effects({"window", "timer"}),
            ElementsAre(
                testing::HasSubstr("hotBordersModeOn"), testing::HasSubstr("hotBordersModeOn"),
                R"(timer {"selector":"otherMonitorsLight","interval":0.5,"repeats":false})"));
        program.platform.advance(0.49);
        EXPECT_THAT(program.effects({"windowOut"}), IsEmpty());
        program.platform.advance(0.01);
        EXPECT_THAT(program.effects({"windowOut"}), SizeIs(2));
    }
}

TEST(Highlight, OfTheOtherProductsDarkensTheOtherMonitors) {
    Program program(variants::wrapAround);
    program.launched();
    program.app.detectCurrentScreen();
    program.app.highLightBoders(1);
    EXPECT_THAT(program.effects({"window"}),
                ElementsAre(testing::HasSubstr(R"("background":"black")")));
    program.platform.advance(0.5);
    EXPECT_THAT(*program.app.AWindowsDark, IsEmpty());
}

TEST(Highlight, AgainBeforeItsEndIsTakenAwayByTheFirstTimer) {
    Program program(variants::cursorHider);
    program.launched();
    program.app.highLightBoders(1);
    program.platform.advance(0.3);
    program.app.highLightBoders(1);
    program.effects();
    program.platform.advance(0.2);
    EXPECT_THAT(program.effects({"windowOut"}), SizeIs(2));
}

TEST(Highlight, IsShownAtTheStartOfACursorHiderWithHotBordersThatIsOnAndNotHidden) {
    for (const auto& [hot, active, hidden, windows] :
         {std::tuple{"1", true, false, 2}, std::tuple{"1", false, false, 0},
          std::tuple{"1", true, true, 0}, std::tuple{"0", true, false, 0}}) {
        Program program(variants::cursorHider);
        program.settled().setting(keys::HOT_BOUNDS, Value{std::string(hot)});
        program.setting(keys::ATTIVO, Value{active});
        program.setting(keys::STAY_HIDDEN, Value{hidden});
        program.setting(keys::customShortcutEnabled, Value{false}); // of no concern here
        program.app.applicationDidFinishLaunching();
        EXPECT_THAT(program.effects({"window"}), SizeIs(windows)) << hot << active << hidden;
    }
}

TEST(BorderWindow, FadesInAndOutInFiveStepsAndLeaves) {
    Program program(variants::cursorHider);
    program.launched();
    program.app.initWindowBorders();
    EXPECT_EQ(program.app.windowHotBorders->frame(), (Rect{0, 0, 3200, 1080}));
    program.app.windowHotBorders->makeKeyAndOrderFront();
    EXPECT_THAT(
        program.effects({"window"}),
        ElementsAre(
            R"(window {"id":1,"kind":"border","frame":[0,0,3200,1080],"alpha":0,"level":21,"behaviour":0,"ignoresMouse":false,"background":"clear","image":"hotborders_yellow2"})"));
    for (int step = 0; step < 5; ++step)
        program.app.appari();
    EXPECT_EQ(program.app.countanimation, 5);
    EXPECT_THAT(
        program.effects(),
        ElementsAre(R"(windowAlpha {"id":1,"alpha":0.2})", R"(windowAlpha {"id":1,"alpha":0.4})",
                    R"(windowAlpha {"id":1,"alpha":0.6})", R"(windowAlpha {"id":1,"alpha":0.8})",
                    R"(windowAlpha {"id":1,"alpha":1})",
                    R"(timer {"selector":"scompari","interval":0.05,"repeats":true})"));
    program.platform.advance(0.25);
    EXPECT_THAT(
        program.effects({"windowAlpha", "windowOut"}),
        ElementsAre(R"(windowAlpha {"id":1,"alpha":0.8})", R"(windowAlpha {"id":1,"alpha":0.6})",
                    R"(windowAlpha {"id":1,"alpha":0.4})", R"(windowAlpha {"id":1,"alpha":0.2})",
                    R"(windowAlpha {"id":1,"alpha":0})", R"(windowOut {"id":1})"));
    program.platform.advance(1);
    EXPECT_EQ(program.app.countanimation, 0);
}

} // namespace
} // namespace palisor
