#include "ui/TAMBERLO.h"
#include "unit/MenuEntries.h"

#include <gmock/gmock.h>

// The help entries, the promotion list, and the pages and mails that they open.

namespace palisor {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const site = "https://www.tamberlo.invalid";

struct Promoting : Program {
    explicit Promoting(int variant = variants::barrier) : Program(variant) {
        const auto text = [this](const char* key, const char* value) {
            platform.bundle.set(key, platform::Value{value});
        };
        text("CFBundleDisplayName", "Palisor");
        text("MakerSite", site);
        text("SocialPage", "https://social.tamberlo.invalid/page");
        text("SupportMail", "support@tamberlo.invalid");
        text("StoreWebPage", "https://store.tamberlo.invalid/%@");
        text("StorePage", "store:%@?mt=12");
        text("MobileStorePage", "mobile:%@");
        platform.setLanguages({"en"});
    }

    Menu list(bool shortVersion, std::string_view skippedId) {
        Menu menu;
        TAMBERLO::addOtherItemsToMenu_shortVersion_skippingAPP(platform.services(), menu,
                                                               shortVersion, skippedId);
        return menu;
    }

    /// The addresses opened since the last call.
    Lines opened() {
        Lines urls;
        const std::string start = R"(openURL {"url":")";
        for (const std::string& line : effects({"openURL"}))
            urls.push_back(line.substr(start.size(), line.size() - start.size() - 2));
        return urls;
    }

    /// What a click on that entry of the long list opens.
    Lines openedBy(std::string_view title) {
        for (const auto& item : list(false, "").items)
            if (item->title == title) app.openApp(*item);
        return opened();
    }
};

Lines titles(const Menu& menu) {
    Lines all;
    for (const auto& item : menu.items)
        all.push_back(item->separator ? "---" : item->text);
    return all;
}

TEST(HelpEntries, AreGreyedWhereTheyLeadToNoRealAddressAndKeepTheirActions) {
    Promoting program;
    program.platform.workspace.setDead(
        {"https://social.tamberlo.invalid/page", "https://store.tamberlo.invalid/%@"});
    Menu menu;
    program.app.addTAMBERLOItemsToHelpMenu(menu);
    const auto& [store, social, support] = std::tie(*menu.items[0], *menu.items[1], *menu.items[2]);
    EXPECT_TRUE(store.greyed());
    EXPECT_TRUE(social.greyed());
    EXPECT_FALSE(support.greyed()) << "the makers' site is another address";
    EXPECT_EQ(social.action, "openFB");
    EXPECT_TRUE(social.enabled);
    for (const auto& item : program.list(true, "").items)
        EXPECT_TRUE(item->greyed() || item->action.empty()) << item->title;
}

TEST(Promotion, InItsShortVersionLeavesOutTheProductItself) {
    Promoting program;
    EXPECT_THAT(titles(program.list(true, "611203457")),
                ElementsAre("Others", "Skelder - Browser", "Orbisant", "Brantemere", "Thrumbleton",
                            "KORVADIN (iOS)"));
}

TEST(Promotion, NamesOstrelleOnlyWhereItalianIsTheFirstLanguage) {
    Promoting program;
    struct {
        std::vector<std::string> languages;
        bool named;
    } const cases[] = {{{"it"}, true},
                       {{"it", "en"}, true},
                       {{"en", "it"}, false},
                       {{"it-CH"}, false},
                       {{}, false}};
    for (const auto& [languages, named] : cases)
        for (const bool shortVersion : {true, false}) {
            program.platform.setLanguages(languages);
            const Lines all = titles(program.list(shortVersion, "611203457"));
            EXPECT_EQ(all.back() == "Ostrelle", named) << testing::PrintToString(languages);
        }
}

TEST(Promotion, InItsLongVersionHasHeadingsASeparatorAndQuenlow) {
    Promoting program;
    program.platform.setLanguages({"it"});
    EXPECT_THAT(titles(program.list(false, "")),
                ElementsAre("OSX", "Skelder - Browser", "utilities", "Vellumor", "Orbisant",
                            "Quenlow", "Brantemere", "Thrumbleton", "---", "iOS", "KORVADIN",
                            "Ostrelle"));
}

TEST(Promotion, MarksHeadingsAndSeparatorWithTheIdOfNoProduct) {
    Promoting program;
    for (const bool shortVersion : {true, false}) {
        Menu menu = program.list(shortVersion, "");
        for (const auto& item : menu.items) {
            const bool product = item->toolTip != "-1";
            EXPECT_EQ(item->action, product ? "openApp:" : "") << item->title;
            EXPECT_EQ(item->image, product ? "miniicon_" + item->toolTip : "") << item->title;
            EXPECT_FALSE(item->imageIsTemplate) << "the pictures have their own colours";
        }
    }
}

TEST(Promotion, OpensThePagesOfTheStore) {
    Promoting program;
    program.effects();
    EXPECT_THAT(program.openedBy("Vellumor"),
                ElementsAre("https://store.tamberlo.invalid/611203457", "store:611203457?mt=12"));
    EXPECT_THAT(program.openedBy("KORVADIN"),
                ElementsAre("https://store.tamberlo.invalid/611203459", "mobile:611203459"));
}

// Its id is compared with its name, so that it counts as a program for computers.
TEST(Promotion, OpensOstrelleAsAProgramForComputers) {
    Promoting program;
    program.platform.setLanguages({"it"});
    EXPECT_THAT(program.openedBy("Ostrelle"),
                ElementsAre("https://store.tamberlo.invalid/611203460", "store:611203460?mt=12"));
}

TEST(Promotion, OpensAWebPageForQuenlowNeverTheStore) {
    Promoting program;
    program.platform.setLanguages({"de", "it"});
    EXPECT_THAT(program.openedBy("Quenlow"),
                ElementsAre(site + std::string("/app/quenlow/index.php?lingua=de")));
}

TEST(Promotion, IsClickedInTheStatusMenu) {
    Promoting program;
    program.launched();
    program.app.otherApps = true;
    program.app.updateMenuItems();
    program.effects();
    choose(program, "Thrumbleton");
    EXPECT_THAT(program.opened(), Contains("https://store.tamberlo.invalid/1200000419"));
}

TEST(HelpMenu, OpensTheProductsOwnPageInTheStore) {
    for (const auto& [variant, id] :
         {std::pair{1, "611203457"}, {5, "611203458"}, {8, "1200000417"}}) {
        Promoting program(variant);
        program.launched();
        choose(program, "MAC_APP_STORE_PAGE");
        EXPECT_THAT(program.opened(),
                    ElementsAre("https://store.tamberlo.invalid/" + std::string(id),
                                "store:" + std::string(id) + "?mt=12"));
    }
}

TEST(HelpMenu, OpensNoPageOfAProductThatTheStoreDoesNotHave) {
    for (const int variant : {0, 2, 3, 4, 6, 7, 9}) {
        Promoting program(variant);
        program.launched();
        choose(program, "MAC_APP_STORE_PAGE");
        EXPECT_THAT(program.effects(), IsEmpty()) << variant;
    }
}

TEST(HelpMenu, OpensTheMakersPages) {
    Promoting program;
    program.launched();
    choose(program, "FACEBOOK_PAGE");
    choose(program, "SUPPORT");
    program.app.opentamberloosx();
    EXPECT_THAT(program.opened(), ElementsAre("https://social.tamberlo.invalid/page",
                                              site + std::string("#contacts"), site));
}

TEST(HelpMenu, WritesTheGenericMailWithTheProductsName) {
    Promoting program;
    program.platform.bundle.setStrings([](auto, std::string_view key) -> std::string_view {
        return key == "MAIL_BOTTOM" ? "About %@ & more" : key;
    });
    program.app.openGenericMailToTamberlo();
    EXPECT_THAT(program.opened(), ElementsAre("mailto:support@tamberlo.invalid?Subject=Palisor"
                                              "&body=About%20Palisor%20%26%20more"));
}

TEST(HelpMenu, SendsSubjectAndBodyIntactThroughTheirEncoding) {
    Promoting program;
    program.app.sendEmailTo_Subject_Body("a@b.invalid", "Perché & quando?", "più\n100%");
    EXPECT_THAT(program.opened(), ElementsAre("mailto:a@b.invalid?Subject=Perch%C3%A9%20%26%20"
                                              "quando%3F&body=pi%C3%B9%0A100%25"));
}

TEST(HelpMenu, EncodesAsTheUtilityDoes) {
    Promoting program;
    EXPECT_EQ(program.app.URLEncodedString("a b#c"), "a%20b%23c");
}

} // namespace
} // namespace palisor
