#include "platform/memory/MemoryPlatform.h"
#include "testing/Layouts.h"

#include <gmock/gmock.h>

namespace platform::memory {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct MemoryEffects : testing::Test {
    MemoryPlatform platform;
    MemoryEffects() { platform.effects.keep(); }
};

TEST_F(MemoryEffects, AreKeptInOrderAndTakenOnce) {
    platform.advance(0.5);
    platform.pointer.warp({1919, 0.5});
    platform.cursor.hide();
    EXPECT_THAT(platform.effects.timedLines({"warp"}),
                ElementsAre(R"({"t":0.5,"effect":"warp","to":[1919,0.5]})"));
    EXPECT_THAT(platform.effects.take(), ElementsAre(R"(warp {"to":[1919,0.5]})", "hideCursor {}"));
    EXPECT_THAT(platform.effects.lines(), IsEmpty());
}

TEST_F(MemoryEffects, TellOfAWindowOnceItHasBeenShown) {
    auto window = platform.windows.create({.frame = {0, 0, 2, 3}});
    window->setAlpha(0.5f);
    EXPECT_EQ(window->id(), 0u);
    window->makeKeyAndOrderFront();
    window->makeKeyAndOrderFront();
    window->setAlpha(7);
    window->orderOut();
    window->orderOut();
    EXPECT_THAT(platform.effects.take(),
                ElementsAre(R"(window {"id":1,"kind":"dark","frame":[0,0,2,3],"alpha":0.5,)"
                            R"("level":0,"behaviour":0,"ignoresMouse":false,)"
                            R"("background":"clear","image":null})",
                            R"(windowAlpha {"id":1,"alpha":1})", R"(windowOut {"id":1})"));
}

TEST_F(MemoryEffects, SayNothingOfAWindowThatIsDestroyed) {
    auto window = platform.windows.create({});
    window->makeKeyAndOrderFront();
    platform.effects.clear();
    window.reset();
    EXPECT_THAT(platform.effects.lines(), IsEmpty());
    EXPECT_THAT(platform.windows.shown(), IsEmpty());
}

TEST_F(MemoryEffects, SayNothingOfAnOutsideEdit) {
    platform.settings.edit("a", Value{"1"});
    EXPECT_EQ(platform.settings.stringForKey("a"), "1");
    EXPECT_THAT(platform.effects.lines(), IsEmpty());
}

TEST_F(MemoryEffects, TellOfEachKeyOfAReplacedDomain) {
    platform.settings.edit("b", Value{"1"});
    platform.settings.edit("a", Value{"1"});
    platform.settings.setPersistentDomain({{"b", Value{"2"}}});
    EXPECT_THAT(platform.effects.lines(), ElementsAre(R"(write {"key":"a","value":null})",
                                                      R"(write {"key":"b","value":"2"})"));
}

TEST(MemorySettings, LoseWhatWasNotSavedWhenReadAfresh) {
    MemoryPlatform platform;
    platform.settings.set("saved", Value{"1"});
    platform.settings.synchronize();
    platform.settings.set("saved", Value{"2"});
    platform.settings.set("new", Value{"1"});
    platform.settings.set("new", Value{"2"});
    platform.settings.resetStandardUserDefaults();
    EXPECT_EQ(platform.settings.stringForKey("saved"), "1");
    EXPECT_EQ(platform.settings.object("new"), nullptr);
}

TEST(MemoryCursor, IsVisibleAgainWhenEachHideHasItsShow) {
    MemoryPlatform platform;
    platform.cursor.show();
    platform.cursor.hide();
    platform.cursor.hide();
    platform.cursor.show();
    EXPECT_FALSE(platform.cursor.isVisible());
    platform.cursor.show();
    EXPECT_TRUE(platform.cursor.isVisible());
}

TEST(MemoryInput, DeliversByTheMaskAlone) {
    MemoryPlatform platform;
    std::vector<int> seen;
    platform.input.addGlobalMonitor(maskOf(EventType::mouseMoved),
                                    [&](const InputEvent&) { seen.push_back(1); });
    platform.input.addTap({.mask = allEvents}, [&](const InputEvent&) { seen.push_back(2); });
    platform.move({1, 2});
    platform.move({1, 2}, EventType::keyDown);
    platform.changeModifier(55);
    EXPECT_THAT(seen, ElementsAre(1, 2, 2, 2));
}

TEST(MemoryDisplays, AScreenIsGoneWhenTheListIsShorterAndTheSameWhenItIsBack) {
    MemoryPlatform platform;
    platform.displays.replace(palisor::screensFromLayout("1920x1080+0+0,1280x1024+1920+56"));
    const ScreenId second = platform.displays.screens()[1].id;
    EXPECT_EQ(platform.displays.frame(second), (Rect{1920, 0, 1280, 1024}));
    platform.displays.change(palisor::screensFromLayout("1920x1080+0+0"));
    EXPECT_EQ(platform.displays.frame(second), std::nullopt);
    platform.displays.change(palisor::screensFromLayout("1920x1080+0+0,800x600+-800+0"));
    EXPECT_EQ(platform.displays.frame(second), (Rect{-800, 480, 800, 600}));
}

TEST(MemoryBundle, ReadsAMissingOrGarbledNumberAsZero) {
    MemoryPlatform platform;
    EXPECT_EQ(platform.bundle.integer("IDApp"), 0);
    platform.bundle.set("IDApp", Value{"eight"});
    EXPECT_EQ(platform.bundle.integer("IDApp"), 0);
    platform.bundle.set("IDApp", Value{Data{8}});
    EXPECT_EQ(platform.bundle.integer("IDApp"), 0);
}

TEST(MemoryBundle, ShowsTheKeysWithoutATable) {
    MemoryPlatform platform;
    platform.bundle.setStrings([](std::string_view language, std::string_view key) {
        return language == "it" ? std::string_view("testo") : key;
    });
    platform.bundle.setLanguages({"it-CH"});
    EXPECT_EQ(platform.bundle.localizedString("KEY"), "testo");
    platform.bundle.setLanguages({"zz", "it"});
    EXPECT_EQ(platform.bundle.localizedString("KEY"), "KEY");
}

} // namespace
} // namespace platform::memory
