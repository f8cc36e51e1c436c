#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string window(int id, const char* frame, const char* look) {
    return R"(window {"id":)" + std::to_string(id) + R"(,"kind":"dark","frame":)" + frame +
           R"(,"alpha":)" + look + "}";
}

std::string black(const char* alpha) {
    return std::string(alpha) + R"(,"level":21,"behaviour":4369,"ignoresMouse":false,)" +
           R"("background":"black","image":null)";
}

constexpr const char* threeMonitors = "1920x1080+0+0,1280x1024+1920+56,800x600+-800+0";

TEST(Darkening, CoversEveryScreenButTheCurrentOneInTheOrderOfTheList) {
    Program program(variants::barrier, threeMonitors);
    program.platform.pointer.place({2000, 500});
    program.launched();
    program.app.otherMonitorsDark();
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(windowOut {"id":1})", R"(windowOut {"id":2})",
                            window(3, "[0,0,1920,1080]", black("0.75").c_str()),
                            window(4, "[-800,480,800,600]", black("0.75").c_str()),
                            "frontmostActivated {}"));
    EXPECT_THAT(*program.app.AWindowsDark, SizeIs(2));
}

TEST(Darkening, TakesItsOpacityFromTheSettingInSinglePrecision) {
    for (const auto& [level, alpha] :
         {std::pair{0, "0"}, std::pair{1, "0.05"}, std::pair{7, "0.35"}, std::pair{20, "1"}}) {
        Program program(variants::barrier);
        program.settled().setting(keys::OTHERS_DARK, Value{std::int64_t{level}});
        program.app.applicationDidFinishLaunching();
        EXPECT_THAT(program.effects({"window"}),
                    ElementsAre(window(1, "[1920,0,1280,1024]", black(alpha).c_str())));
    }
}

TEST(Darkening, WithASingleMonitorMakesNoWindow) {
    Program program(variants::wrapAround, oneMonitor);
    program.launched();
    program.app.detectCurrentScreen();
    program.app.otherMonitorsDark();
    EXPECT_THAT(program.effects({"window"}), IsEmpty());
    ASSERT_TRUE(program.app.AWindowsDark.has_value());
    EXPECT_THAT(*program.app.AWindowsDark, IsEmpty());
}

TEST(Darkening, OfTheCursorHiderPutsAFrameOverEveryMonitor) {
    Program program(variants::cursorHider);
    program.launched();
    program.app.detectCurrentScreen();
    program.app.otherMonitorsDark();
    const char* look = R"(1,"level":21,"behaviour":4369,"ignoresMouse":false,)"
                       R"("background":"clear","image":"hotBordersModeOn")";
    EXPECT_THAT(program.effects({"window"}), ElementsAre(window(1, "[0,0,1920,1080]", look),
                                                         window(2, "[1920,0,1280,1024]", look)));
}

TEST(Lightening, BeforeAnyDarkeningDoesNothing) {
    Program program(variants::barrier);
    program.app.otherMonitorsLight();
    EXPECT_THAT(program.effects(), IsEmpty());
    EXPECT_FALSE(program.app.AWindowsDark.has_value());
}

TEST(Lightening, TakesEveryWindowOut) {
    Program program(variants::barrier, threeMonitors);
    program.launched();
    program.app.otherMonitorsLight();
    program.app.otherMonitorsLight();
    EXPECT_THAT(program.effects(), ElementsAre(R"(windowOut {"id":1})", R"(windowOut {"id":2})"));
    EXPECT_THAT(*program.app.AWindowsDark, IsEmpty());
}

TEST(UpdateShadow, ChangesTheOpacityWithoutANewWindow) {
    Program program(variants::barrier, threeMonitors);
    program.launched();
    program.setting(keys::OTHERS_DARK, Value{std::int64_t{7}});
    program.app.updateShadow();
    EXPECT_THAT(program.effects(), ElementsAre(R"(windowAlpha {"id":1,"alpha":0.35})",
                                               R"(windowAlpha {"id":2,"alpha":0.35})"));
}

TEST(UpdateShadow, WithoutWindowsDoesNothing) {
    Program program(variants::barrier);
    program.app.updateShadow();
    program.launched();
    program.app.otherMonitorsLight();
    program.effects();
    program.app.updateShadow();
    EXPECT_THAT(program.effects(), IsEmpty());
}

} // namespace
} // namespace palisor
