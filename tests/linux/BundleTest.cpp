#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/system/SessionLanguage.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using platform::linux::ProductBundle;
using platform::linux::sessionLanguage;
using testing_support::KeptLog;
using testing_support::TempFolder;

std::string_view lookUp(std::string_view language, std::string_view key) {
    return key == "YES" ? language : key;
}

struct Product {
    const char* name;
    const char* shown;
    int number;
};

TEST(ProductBundle, EveryProductHasItsDictionary) {
    const Product products[] = {{"palisor", "Palisor", 8},
                                {"vellumor", "Vellumor", 1},
                                {"quenlow", "Quenlow", 2},
                                {"orbisant", "Orbisant", 5},
                                {"stay-awake", "Stay Awake", 3},
                                {"crosshair", "Crosshair", 7},
                                {"calendar-alerts", "Calendar Alerts", 9}};
    for (const auto& product : products) {
        KeptLog log;
        const ProductBundle bundle(std::string(PRODUCTS_FOLDER "/") + product.name, "en", lookUp,
                                   log);
        EXPECT_EQ(bundle.integer("IDApp"), product.number);
        EXPECT_EQ(bundle.string("CFBundleIdentifier"), std::string("com.tamberlo.") + product.name);
        EXPECT_EQ(bundle.string("CFBundleDisplayName"), product.shown);
        EXPECT_EQ(bundle.string("CFBundleShortVersionString"), "1.0");
        EXPECT_EQ(bundle.string("MakerHost"), "service.tamberlo.invalid");
        EXPECT_TRUE(log.lines.empty());
    }
}

TEST(ProductBundle, IsReachedByItsCommandBesideTheExecutable) {
    KeptLog log;
    const ProductBundle bundle(PRODUCTS_FOLDER "/stay-awake", "en", lookUp, log);
    EXPECT_EQ(bundle.name(), "stay-awake");
    const auto own = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(bundle.path(), own.parent_path() / "stay-awake");
}

TEST(ProductBundle, AnAbsentKeyOrOneOfAnotherTypeIsZeroAndEmpty) {
    KeptLog log;
    const ProductBundle bundle(PRODUCTS_FOLDER "/palisor", "en", lookUp, log);
    EXPECT_EQ(bundle.integer("none"), 0);
    EXPECT_EQ(bundle.string("none"), "");
    EXPECT_EQ(bundle.string("IDApp"), "");
    EXPECT_EQ(bundle.integer("CFBundleDisplayName"), 0);
}

TEST(ProductBundle, AnUnreadableDictionaryIsLoggedAndEmpty) {
    const TempFolder folder;
    folder.write("Info.plist", "junk");
    KeptLog log;
    const ProductBundle bundle(folder.path(), "en", lookUp, log);
    EXPECT_EQ(bundle.integer("IDApp"), 0);
    EXPECT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(folder.read("Info.plist"), "junk");
}

TEST(ProductBundle, TextsComeInTheGivenLanguageAndMissingOnesShowTheirKey) {
    KeptLog log;
    const ProductBundle bundle(PRODUCTS_FOLDER "/palisor", "it", lookUp, log);
    EXPECT_EQ(bundle.localizedString("YES"), "it");
    EXPECT_EQ(bundle.localizedString("OTHER"), "OTHER");
}

struct Locale {
    const char* language;
    const char* all;
    const char* messages;
    const char* lang;
    const char* expected;  ///< of the texts
    const char* preferred; ///< by the user
};

TEST(SessionLanguage, FollowsTheVariablesInTheirUsualOrder) {
    const Locale locales[] = {
        {"", "", "", "", "en", "en"},
        {"", "", "", "C", "en", "en"},
        {"", "", "", "C.UTF-8", "en", "en"},
        {"", "POSIX", "", "it_IT.UTF-8", "en", "en"},
        {"", "", "", "it_IT.UTF-8", "it", "it"},
        {"", "", "", "it", "it", "it"},
        {"", "", "", "it_IT@euro", "it", "it"},
        {"", "", "it_CH", "en_GB.UTF-8", "it", "it"},
        {"", "en_GB", "it_IT", "it_IT", "en", "en"},
        {"it", "", "", "en_GB.UTF-8", "it", "it"},
        {"de:it:en", "", "", "en_GB.UTF-8", "it", "de"},
        {"it", "C", "", "en_GB.UTF-8", "en", "en"},
        {"", "", "", "de_DE.UTF-8", "en", "de"},
        {"de:fr", "", "", "it_IT.UTF-8", "it", "de"},
    };
    for (const auto& locale : locales) {
        ::setenv("LANGUAGE", locale.language, 1);
        ::setenv("LC_ALL", locale.all, 1);
        ::setenv("LC_MESSAGES", locale.messages, 1);
        ::setenv("LANG", locale.lang, 1);
        EXPECT_EQ(
            sessionLanguage([](std::string_view code) { return code == "en" || code == "it"; }),
            locale.expected)
            << locale.language << '|' << locale.all << '|' << locale.messages << '|' << locale.lang;
        EXPECT_EQ(platform::linux::sessionLanguages().front(), locale.preferred)
            << locale.language << '|' << locale.all << '|' << locale.messages << '|' << locale.lang;
    }
}

} // namespace
