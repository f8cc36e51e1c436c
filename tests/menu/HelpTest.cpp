#include "testing/desktop/Product.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

// The help entries of the real program, chosen by a user whose desktop has an opener of addresses.

namespace desktop {
namespace {

struct HelpOfTheProgram : Product, testing::Test {
    HelpOfTheProgram() : Product("1280x800+0+0,1024x768+1280+16") {
        const auto bin = desktop.home() / "bin";
        std::filesystem::create_directories(bin);
        const auto opener = bin / "xdg-open";
        // What it writes comes out of the program that starts it.
        std::ofstream(opener) << "#!/bin/sh\necho \"opened $1.\"\n";
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
        desktop.setVariable("PATH", bin.string() + ":" + std::getenv("PATH"));
        desktop.startWindowManager("openbox");
        hand.moveTo(400, 300);
    }
};

TEST_F(HelpOfTheProgram, OpensItsPagesWithTheDesktopsOpener) {
    useDictionary("palisor", {{"IDApp", number(8)},
                              {"CFBundleDisplayName", text("Palisor")},
                              {"CFBundleIdentifier", text("com.tamberlo.palisor")},
                              {"CFBundleShortVersionString", text("1.0")},
                              {"StoreWebPage", text("https://store.tamberlo.example/app/%@")},
                              {"SocialPage", text("https://social.tamberlo.example/tamberlo")},
                              {"MakerSite", text("https://www.tamberlo.example")}});
    spawn();
    ASSERT_TRUE(saysThatItStarts()) << program->errors();
    choose(6);
    EXPECT_TRUE(program->waitForText("opened https://store.tamberlo.example/app/1200000417."));
    choose(7);
    EXPECT_TRUE(program->waitForText("opened https://social.tamberlo.example/tamberlo."));
    choose(8);
    EXPECT_TRUE(program->waitForText("opened https://www.tamberlo.example#contacts."));
    EXPECT_EQ(program->errors().find("is not opened"), std::string::npos) << program->errors();
}

TEST_F(HelpOfTheProgram, OffersNoReservedAddress) {
    spawn();
    ASSERT_TRUE(saysThatItStarts()) << program->errors();
    choose(6); // the next entry that can be chosen
    EXPECT_TRUE(stores(entry("CHECK_1", text("1")))) << storedSettings();
    EXPECT_EQ(program->output().find("opened "), std::string::npos) << program->output();
}

} // namespace
} // namespace desktop
