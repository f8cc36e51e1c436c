#include "testing/desktop/Product.h"

#include <fstream>
#include <gtest/gtest.h>

// The settings file in the hands of another program while the product runs.

namespace desktop {
namespace {

void overwrite(const Product& product, const std::string& text) {
    std::ofstream(product.settingsFile()) << text;
}

/// Writes the file as it is but for one value.
void edit(const Product& product, const std::string& key, const std::string& before,
          const std::string& after) {
    std::string text = product.storedSettings();
    const std::string old = entry(key, before);
    const auto at = text.find(old);
    if (at == text.npos) throw std::runtime_error("no " + old + " in " + text);
    overwrite(product, text.replace(at, old.size(), entry(key, after)));
}

TEST(Settings, AnEditOfTheSwitchUncoversAndCoversTheOtherMonitor) {
    Product product;
    product.start();
    edit(product, "ATTIVO", flag(true), flag(false));
    EXPECT_TRUE(product.nothingCoveredSoon());
    edit(product, "ATTIVO", flag(false), flag(true));
    EXPECT_TRUE(product.coveredSoon(1, 0));
}

TEST(Settings, AnEditOfTheDarknessIsSeenAtOnceAlsoWhileTheMenuIsOpen) {
    Product product;
    const auto bright = product.eye.gamma("DUMMY1");
    product.start();
    ASSERT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") != bright; }));
    product.openMenu();
    const auto menus = product.menus();
    edit(product, "OTHERS_DARK", number(15), number(0));
    EXPECT_TRUE(waitUntil([&] { return product.eye.gamma("DUMMY1") == bright; }));
    EXPECT_EQ(product.menus(), menus);
    product.hand.type(support::key::down);
    product.hand.type(support::key::enter);
    EXPECT_TRUE(product.nothingCoveredSoon()) << "the entry was chosen from the open menu";
}

TEST(Settings, AFileThatIsEmptiedWhileTheProgramRunsIsWrittenAgain) {
    Product product;
    product.start({.velocity = 73});
    for (const std::string rest : {"", "\n"}) {
        overwrite(product, rest);
        EXPECT_TRUE(product.stores(entry("VELOCITY", number(73))));
    }
    std::filesystem::remove(product.settingsFile());
    EXPECT_TRUE(product.stores(entry("VELOCITY", number(73))));
    EXPECT_TRUE(std::filesystem::exists(product.settingsFile().string() + ".damaged-2"));
    EXPECT_TRUE(product.isCovered(1));
}

TEST(Settings, AFolderThatIsReplacedIsWatchedAgain) {
    Product product;
    product.start();
    const auto folder = product.desktop.configFolder();
    const std::string text = product.storedSettings();
    std::filesystem::rename(folder, folder.string() + ".old");
    std::filesystem::create_directory(folder);
    overwrite(product, text);
    edit(product, "ATTIVO", flag(true), flag(false));
    EXPECT_TRUE(product.nothingCoveredSoon());
}

TEST(Settings, WithoutAHomeTheProgramSaysWhereTheyWouldBe) {
    Product product;
    product.spawn();
    product.program->end();
    product.desktop.setVariable("HOME", "");
    product.desktop.setVariable("XDG_CONFIG_HOME", "");
    product.program = product.run();
    ASSERT_TRUE(product.program->waitForText("$HOME/.config/" + product.identifier() + ".plist"))
        << product.program->errors();
    EXPECT_EQ(product.program->errors().find("edits of"), std::string::npos)
        << product.program->errors();
}

} // namespace
} // namespace desktop
