#include "strings/Strings.h"

#include <gmock/gmock.h>

namespace strings {
namespace {

std::vector<std::string_view> keysOf(std::string_view language) {
    std::vector<std::string_view> keys;
    for (const Text& text : table(language))
        keys.push_back(text.key);
    return keys;
}

TEST(Strings, HaveTheSameKeysInEnglishAndItalian) {
    EXPECT_FALSE(keysOf("en").empty());
    EXPECT_EQ(keysOf("en"), keysOf("it"));
}

TEST(Strings, AreSortedAndNoneIsEmpty) {
    EXPECT_TRUE(std::ranges::is_sorted(keysOf("en")));
    for (const auto* language : {"en", "it"})
        for (const Text& text : table(language))
            EXPECT_FALSE(text.text.empty()) << text.key;
}

TEST(Strings, ShowTheKeyWhereThereIsNoText) {
    EXPECT_EQ(lookUp("en", "NO_SUCH_KEY"), "NO_SUCH_KEY");
    EXPECT_EQ(lookUp("zz", "OK"), "OK");
    EXPECT_TRUE(table("zz").empty());
}

TEST(Wordings, AreInBothLanguagesForTextsThatTheProgramHas) {
    const auto english = wordings("en"), italian = wordings("it");
    ASSERT_EQ(english.size(), italian.size());
    for (std::size_t index = 0; index < english.size(); ++index) {
        EXPECT_EQ(english[index].product, italian[index].product);
        EXPECT_EQ(english[index].text.key, italian[index].text.key);
        const std::string_view key = english[index].text.key;
        if (!english[index].product.empty()) {
            EXPECT_NE(lookUp("en", key), key);
        }
    }
}

TEST(Wordings, HaveTheLabelsOfAllSlidersSayTheirValueAndNoMore) {
    for (const auto* language : {"en", "it"}) {
        EXPECT_EQ(wordingOf("vellumor", language, "N_SECONDI"), "%d s");
        EXPECT_EQ(wordingOf("palisor", language, "N_SENSIBILITY"), "%d%");
        EXPECT_LE(wordingOf("vellumor", language, "0_SECONDI").size(), 12U);
        EXPECT_LE(wordingOf("palisor", language, "0_DARK_LEVEL").size(), 12U);
    }
}

TEST(Wordings, TellInEveryProductWhatItDoesAndWhatTheThreeKeysDoInIt) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"palisor", "TESTO_PALISOR"},         {"vellumor", "TESTO_VELLUMOR"},
        {"quenlow", "TESTO_QUENLOW"},         {"orbisant", "TESTO_ORBISANT"},
        {"stay-awake", "TESTO_AGGIUNTO"},     {"crosshair", "TESTO_AGGIUNTO"},
        {"calendar-alerts", "TESTO_AGGIUNTO"}};
    for (const auto& [product, key] : rows)
        for (const auto* language : {"en", "it"}) {
            // "stay-awake" is "Stay Awake" for people.
            std::string name(product.substr(0, product.find('-')));
            name.front() = static_cast<char>(std::toupper(name.front()));
            EXPECT_TRUE(wordingOf(product, language, key).starts_with(name)) << product;
            if (product == "vellumor") continue; // which has a text of its own
            EXPECT_NE(wordingOf(product, language, "CTRLALTCMDText"),
                      lookUp(language, "CTRLALTCMDText"))
                << product;
        }
}

TEST(Wordings, TellOfASwitchInThePlaceOfTheIconWhereTheShellShowsOne) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"palisor", "TESTO_PALISOR"},         {"vellumor", "TESTO_AGGIUNTO"},
        {"quenlow", "TESTO_AGGIUNTO"},        {"orbisant", "TESTO_AGGIUNTO"},
        {"stay-awake", "TESTO_AGGIUNTO"},     {"crosshair", "TESTO_AGGIUNTO"},
        {"calendar-alerts", "TESTO_AGGIUNTO"}};
    struct Words {
        const char *language, *icon, *rightClick, *place;
    };
    for (const auto& [language, icon, rightClick, place] :
         {Words{"en", "icon", "right-click", "in the quick settings"},
          Words{"it", "icona", "clic destro", "nelle impostazioni rapide"}})
        for (const auto& [product, key] : rows) {
            const std::string with(wordingOf(product, language, key));
            ASSERT_NE(with.find(rightClick), std::string::npos) << product;
            const std::string text = wordingWithSwitch(product, language, key).value_or("");
            EXPECT_NE(text.find(place), std::string::npos) << product << ' ' << text;
            EXPECT_EQ(text.find(icon), std::string::npos) << text;
            EXPECT_EQ(text.find(rightClick), std::string::npos) << text;
            const std::string before = with.substr(0, with.rfind("\n\n") + 2);
            EXPECT_TRUE(text.starts_with(before)) << text;
        }
    EXPECT_FALSE(wordingWithSwitch("palisor", "en", "OK"));
    EXPECT_FALSE(wordingWithSwitch("vellumor", "en", "TESTO_VELLUMOR"));
}

TEST(Wordings, LeaveAllOtherTextsAndProductsAlone) {
    EXPECT_EQ(wordingOf("palisor", "en", "OK"), "OK");
    EXPECT_EQ(wordingOf("orbisant", "en", "TESTO_AGGIUNTO"), lookUp("en", "TESTO_AGGIUNTO"));
    EXPECT_EQ(wordingOf("palisor", "zz", "NO_SUCH_KEY"), "NO_SUCH_KEY");
}

TEST(Wordings, NameNoStoreOfAnotherSystem) {
    for (const auto* language : {"en", "it"})
        for (const Wording& wording : wordings(language))
            EXPECT_EQ(wording.text.text.find("Mac"), std::string_view::npos);
    EXPECT_TRUE(std::ranges::any_of(wordings("en"), [](const Wording& wording) {
        return wording.text.key.starts_with("As described on the Mac App Store");
    }));
}

} // namespace
} // namespace strings
