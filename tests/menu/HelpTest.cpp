#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

// The help entries of the real program, chosen by a user whose desktop has an opener of addresses.

using namespace support;

namespace {

class HelpOfTheProgram : public testing::Test {
  protected:
    HelpOfTheProgram() {
        const auto folder = desktop.home() / "bin";
        std::filesystem::create_directories(folder);
        const auto opener = folder / "xdg-open";
        // What it writes comes out of the program that starts it.
        std::ofstream(opener) << "#!/bin/sh\necho \"opened $1.\"\n";
        std::filesystem::permissions(opener, std::filesystem::perms::owner_all);
        desktop.setVariable("PATH", folder.string() + ":" + std::getenv("PATH"));
        desktop.startWindowManager("openbox");
        hand.moveTo(400, 300);
    }

    void start(const std::string& product) {
        name = product;
        std::ofstream(desktop.configFolder() / ("com.tamberlo." + name + ".plist"))
            << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
               "<key>PRIMOACCESSO</key><string>1</string>"
               "<key>PRIMOACCESSOCONSLIDER</key><string>1</string>"
               "<key>CHECK_0</key><string>1</string>"
               "<key>RECOMMENDAUTOLOGIN</key><string>1</string>"
               "<key>customShortcut</key><dict><key>keyCode</key><integer>40</integer>"
               "<key>modifierFlags</key><integer>1310720</integer></dict></dict></plist>\n";
        program = desktop.spawn(std::string(PROGRAMS) + "/" + product);
        ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    }

    bool menuIsOpen() {
        for (const auto& window : eye.windows())
            if (window.mapped && window.overrideRedirect && !window.inputOnly &&
                window.area.width > 60 && window.area.width < 600)
                return true;
        return false;
    }

    /// The entry that so many downward steps reach.
    void choose(int steps) {
        auto second = desktop.spawn(std::string(PROGRAMS) + "/" + name);
        EXPECT_EQ(second->wait(), 0);
        ASSERT_TRUE(eye.waitUntilSeen([&] { return menuIsOpen(); }));
        for (int step = 0; step < steps; ++step)
            hand.type(key::down);
        hand.type(key::enter);
        ASSERT_TRUE(eye.waitUntilSeen([&] { return !menuIsOpen(); }));
    }

    PrivateDesktop desktop{"1280x800+0+0,1024x768+1280+16"};
    Eye eye{desktop.display()};
    Hand hand{desktop.display()};
    std::string name;
    std::unique_ptr<ChildProcess> program;
};

} // namespace

TEST_F(HelpOfTheProgram, OpensItsPagesWithTheDesktopsOpener) {
    start("palisor");
    choose(6);
    EXPECT_TRUE(program->waitForText("opened https://store.tamberlo.invalid/app/1200000417."));
    choose(7);
    EXPECT_TRUE(program->waitForText("opened https://social.tamberlo.invalid/tamberlo."));
    choose(8);
    EXPECT_TRUE(program->waitForText("opened https://www.tamberlo.invalid#contacts."));
    EXPECT_EQ(program->errors().find("is not opened"), std::string::npos) << program->errors();
}
