#include "util/MacUtils.h"
#include "platform/memory/Utf8.h"
#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

using testing::ElementsAre;

TEST(FixDefaults, TakesItsProbeBackWhenTheSettingsFileIsThere) {
    Program program(variants::barrier);
    MacUtils::fixDefaultsIfNeeded(program.platform.services());
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(write {"key":"qwe","value":"qwe"})", "synchronize {}",
                            R"(write {"key":"qwe","value":null})", "synchronize {}"));
}

TEST(FixDefaults, MakesAnEmptyFileAndEndsWhenThereIsNone) {
    Program program(variants::barrier);
    program.platform.settings.loseFile();
    EXPECT_THROW(MacUtils::fixDefaultsIfNeeded(program.platform.services()),
                 platform::memory::ProgramEnded);
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(write {"key":"qwe","value":"qwe"})", "synchronize {}",
                            "synchronize {}",
                            R"-(log {"text":"FIX for PREFERENCES but need restart --> exit(0)"})-",
                            R"(write {"key":"qwe","value":null})", "synchronize {}",
                            R"(exit {"status":0})"));
    EXPECT_TRUE(program.platform.files.exists("/memory/Preferences/com.tamberlo.palisor.plist"));
    EXPECT_EQ(program.platform.settings.object("qwe"), nullptr);
}

TEST(FixDefaults, DoesNotLookForAFileWhereThereIsNoPreferencesFolder) {
    Program program(variants::barrier);
    program.platform.settings.loseFile();
    program.platform.files.removePreferencesFolder();
    EXPECT_NO_THROW(MacUtils::fixDefaultsIfNeeded(program.platform.services()));
    EXPECT_EQ(program.platform.settings.object("qwe"), nullptr);
}

TEST(DeleteAllSavedUserDefaults, MakesTheNextLaunchAFirstLaunch) {
    Program program(variants::cursorHider);
    program.app.initiailValuesForUserDefaults();
    const Lines firstLaunch = program.effects({"write", "synchronize", "timer"});
    MacUtils::deleteAllSavedUserDefaults(program.platform.services());
    program.effects();
    program.app.initiailValuesForUserDefaults();
    EXPECT_EQ(program.effects({"write", "synchronize", "timer"}), firstLaunch);
}

TEST(ValidInfo, IsATextThatSaysSomething) {
    for (const auto* text : {"x", " x ", "null", "NULL ", "(NULL)", "0", "\u200bx"})
        EXPECT_TRUE(MacUtils::isValidInfo(text)) << text;
}

TEST(ValidInfo, IsNotAnEmptyTextNorABlankOneNorAWordForNothing) {
    for (const auto* text : {"", " ", "  ", "\t\n\r", "\u00a0\u2029", "NULL", "(null)"})
        EXPECT_FALSE(MacUtils::isValidInfo(text)) << text;
}

TEST(ValidInfo, SaysNothingInBlanksAndLineEndsOfAnyWritingAndSomethingInTheirNeighbours) {
    const std::pair<char32_t, char32_t> ranges[] = {
        {0x9, 0xd},       {0x20, 0x20},     {0x85, 0x85},     {0xa0, 0xa0},
        {0x1680, 0x1680}, {0x180e, 0x180e}, {0x2000, 0x200b}, {0x2028, 0x2029},
        {0x202f, 0x202f}, {0x205f, 0x205f}, {0x3000, 0x3000}};
    const auto isValid = [](char32_t code) {
        std::string text;
        platform::memory::appendUtf8(text, code);
        return MacUtils::isValidInfo(text);
    };
    for (const auto& [first, last] : ranges) {
        EXPECT_TRUE(isValid(first - 1)) << std::uint32_t{first};
        for (char32_t code = first; code <= last; ++code)
            EXPECT_FALSE(isValid(code)) << std::uint32_t{code};
        EXPECT_TRUE(isValid(last + 1)) << std::uint32_t{first};
    }
}

TEST(Mail, CarriesBlanksAmpersandsAndAccentsToTheMailProgramEscaped) {
    Program program(variants::barrier);
    MacUtils::sendEmailTo_Subject_Body(program.platform.services(), "help@example.invalid", "A & B",
                                       "perch\u00e9? 100%\n");
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(openURL {"url":"mailto:help@example.invalid?Subject=A%20%26%20B)"
                            R"(&body=perch%C3%A9%3F%20100%25%0A"})"));
}

TEST(UrlEncoding, EscapesTheCharactersThatSeparateThePartsOfAnAddress) {
    Program program(variants::barrier);
    EXPECT_EQ(MacUtils::URLEncodedString(
                  program.platform.services(),
                  " \u00b0\u00e9\u00e8\u00e0\u00ec\u00f2\u00f9[]@%'\"?&+><;:-$,#*\u00a3"),
              "%20%C2%B0%C3%A9%C3%A8%C3%A0%C3%AC%C3%B2%C3%B9%5B%5D%40%25%27%22%3F%26%2B%3E%3C%3B"
              "%3A%2D%24%2C%23%2A%C2%A3");
    EXPECT_EQ(MacUtils::URLEncodedString(program.platform.services(), "a/b=c_d.e~f!(g)"),
              "a/b=c_d.e~f!(g)");
}

TEST(StorePage, IsOpenedOnTheWebAndThenInTheStore) {
    Program program(variants::barrier);
    auto& bundle = program.platform.bundle;
    bundle.set("StoreWebPage", platform::Value{"https://web.invalid/%@"});
    bundle.set("StorePage", platform::Value{"https://store.invalid/%@?mt=12"});
    bundle.set("MobileStorePage", platform::Value{"https://mobile.invalid/%@"});
    MacUtils::openStorePageWithID_osx(program.platform.services(), "611203457", true);
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(log {"text":"stringID: 611203457 osx: 1"})",
                            R"(openURL {"url":"https://web.invalid/611203457"})",
                            R"(openURL {"url":"https://store.invalid/611203457?mt=12"})"));
    MacUtils::openStorePageWithID_osx(program.platform.services(), "611203459", false);
    EXPECT_THAT(program.effects(),
                ElementsAre(R"(log {"text":"stringID: 611203459 osx: 0"})",
                            R"(openURL {"url":"https://web.invalid/611203459"})",
                            R"(openURL {"url":"https://mobile.invalid/611203459"})"));
}

} // namespace
} // namespace palisor
