#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using platform::EventType;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

Slider slider(double value) {
    return {.minimum = 0, .maximum = 100, .value = value, .tickMarks = 0, .action = ""};
}

TEST(DarkLevelLabel, IsAPercentageOfFullDarknessOrAText) {
    Program program(variants::barrier);
    program.launched();
    for (const auto& [value, text] :
         {std::pair{0.0, "0_DARK_LEVEL"}, std::pair{0.9, "0_DARK_LEVEL"}, std::pair{1.0, "5%"},
          std::pair{7.0, "35%"}, std::pair{7.5, "38%"}, std::pair{20.0, "100%"}}) {
        program.app.updateTV(slider(value));
        EXPECT_EQ(program.app.tv->text, text);
    }
}

TEST(DarkLevelSlider, StoresAndDarkensOnlyWhileItIsDraggedOrReleased) {
    for (const auto& [event, stores] :
         {std::pair{EventType::leftMouseUp, true}, std::pair{EventType::leftMouseDragged, true},
          std::pair{EventType::leftMouseDown, false}, std::pair{EventType::mouseMoved, false}}) {
        Program program(variants::barrier);
        program.launched();
        program.platform.application.setCurrentEvent({.type = event});
        program.app.sliderDidMove(slider(7.9));
        if (stores)
            EXPECT_THAT(program.effects(),
                        ElementsAre(R"(write {"key":"OTHERS_DARK","value":7})", "synchronize {}",
                                    R"(label {"view":"tv","text":"40%"})",
                                    R"(windowAlpha {"id":1,"alpha":0.35})"));
        else
            EXPECT_THAT(program.effects(), IsEmpty());
    }
}

TEST(DarkLevelSlider, IsNotStoredByBuildingTheMenu) {
    Program program(variants::barrier);
    program.setting(keys::OTHERS_DARK, Value{std::int64_t{4000}});
    program.launched();
    program.app.updateMenuItems();
    EXPECT_THAT(program.writesOf(keys::OTHERS_DARK), IsEmpty());
    EXPECT_EQ(program.platform.settings.integerForKey(keys::OTHERS_DARK), 4000);
}

TEST(TimeSlider, StoresWholeSecondsAsTextOnEveryCall) {
    for (const auto& [value, stored, text] :
         {std::tuple{12.7, "12", "N_SECONDI"}, std::tuple{33.9, "33", "N_SECONDI"},
          std::tuple{1.0, "1", "N_SECONDI"}, std::tuple{0.9, "0", "0_SECONDI"},
          std::tuple{0.0, "0", "0_SECONDI"}}) {
        Program program(variants::cursorHider);
        program.launched();
        program.app.sliderDidMove(slider(value));
        EXPECT_THAT(
            program.effects(),
            ElementsAre(R"(write {"key":"SCHEDULE","value":")" + std::string(stored) + R"("})",
                        "synchronize {}",
                        R"(label {"view":"tv","text":")" + std::string(text) + R"("})"));
    }
}

TEST(TimeSlider, PutsTheSecondsIntoItsText) {
    Program program(variants::cursorHider);
    program.platform.bundle.setLanguages({"en"});
    program.platform.bundle.setStrings([](std::string_view, std::string_view key) {
        return key == "N_SECONDI" ? "in %d s" : key;
    });
    program.launched();
    program.app.sliderDidMove(slider(12));
    EXPECT_EQ(program.app.tv->text, "in 12 s");
}

TEST(VelocitySlider, StoresANumberOnEveryCall) {
    for (const int variant : {2, 5, 8}) {
        Program program(variant);
        program.platform.bundle.setLanguages({"en"});
        program.platform.bundle.setStrings([](std::string_view, std::string_view key) {
            return key == "N_SENSIBILITY" ? "push %d" : key;
        });
        program.launched();
        for (const double value : {33.0, 33.4, 33.9}) {
            program.app.velocitySliderDidMove(slider(value));
            EXPECT_THAT(program.effects(),
                        ElementsAre(R"(write {"key":"VELOCITY","value":33})", "synchronize {}",
                                    R"(label {"view":"tvVelocity","text":"push 33"})"))
                << value;
        }
    }
}

TEST(Sliders, HaveTheirTextsWhenTheMenuHasBeenBuilt) {
    struct {
        int variant;
        const char* key;
        Value stored;
        const char *tv, *tvVelocity; ///< null for a label that the menu does not hold
    } const cases[] = {
        {8, "OTHERS_DARK", Value{std::int64_t{7}}, "35%", "push 50"},
        {8, "OTHERS_DARK", Value{std::int64_t{0}}, "0_DARK_LEVEL", "push 50"},
        {8, "VELOCITY", Value{std::int64_t{34}}, "75%", "push 34"},
        {2, "VELOCITY", Value{std::int64_t{34}}, "", "push 34"},
        {5, "VELOCITY", Value{std::int64_t{340}}, "", "push 100"},
        {1, "SCHEDULE", Value{"1"}, "in 1 s", nullptr},
        {1, "SCHEDULE", Value{"0"}, "0_SECONDI", nullptr},
        {0, "SCHEDULE", Value{"1"}, "", nullptr},
    };
    for (const auto& [variant, key, stored, tv, tvVelocity] : cases) {
        Program program(variant);
        program.platform.bundle.setLanguages({"en"});
        program.platform.bundle.setStrings([](std::string_view, std::string_view text) {
            if (text == "N_SENSIBILITY") return std::string_view("push %d");
            return text == "N_SECONDI" ? std::string_view("in %d s") : text;
        });
        program.settled().setting(key, stored);
        program.app.applicationDidFinishLaunching();
        EXPECT_EQ(program.app.tv->text, tv) << variant;
        EXPECT_EQ(program.app.tvVelocity != nullptr, tvVelocity != nullptr) << variant;
        if (tvVelocity) {
            EXPECT_EQ(program.app.tvVelocity->text, tvVelocity) << variant;
        }
    }
}

TEST(Sliders, OfThePushAloneNameTheirEnds) {
    Program program(8);
    program.launched();
    const auto endsIn = [](const platform::Menu& menu) {
        const auto& ends = std::get<platform::SliderView>(menu.items.front()->view).ends;
        return ends.least + "-" + ends.most;
    };
    EXPECT_EQ(endsIn(*program.app.velocitySubMenu), "LESS-MORE");
    EXPECT_EQ(endsIn(*program.app.timeSubMenu), "-");
}

TEST(Sliders, OfOtherProductsStoreNothing) {
    for (const int variant : {0, 2, 3, 5, 7, 9}) {
        Program program(variant);
        program.launched();
        program.app.sliderDidMove(slider(5));
        EXPECT_THAT(program.effects(), IsEmpty()) << variant;
    }
}

} // namespace
} // namespace palisor
