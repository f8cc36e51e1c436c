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
    spawn();
    ASSERT_TRUE(saysThatItStarts()) << program->errors();
    choose(6);
    EXPECT_TRUE(program->waitForText("opened https://store.tamberlo.invalid/app/1200000417."));
    choose(7);
    EXPECT_TRUE(program->waitForText("opened https://social.tamberlo.invalid/tamberlo."));
    choose(8);
    EXPECT_TRUE(program->waitForText("opened https://www.tamberlo.invalid#contacts."));
    EXPECT_EQ(program->errors().find("is not opened"), std::string::npos) << program->errors();
}

} // namespace
} // namespace desktop
