#include "platform/linux/login/DesktopEntry.h"
#include "testing/Child.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace {

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Launcher, EveryProductHasAValidOne) {
    int count = 0;
    for (const auto& product : std::filesystem::directory_iterator(PRODUCTS_FOLDER)) {
        const std::string name = product.path().filename();
        const auto path = std::filesystem::path(LAUNCHERS) / ("com.tamberlo." + name + ".desktop");
        const platform::linux::DesktopEntry entry(textOf(path));
        EXPECT_EQ(entry.string("Exec"), name);
        EXPECT_EQ(entry.string("Icon"), "com.tamberlo." + name);
        EXPECT_NE(textOf(product.path() / "Info.plist").find(">" + entry.string("Name") + "<"),
                  std::string::npos)
            << name << " is called otherwise in its information dictionary";
        EXPECT_NE(entry.string("Comment"), "");
        EXPECT_NE(entry.string("Comment[it]"), "");
        EXPECT_NE(entry.string("Comment[it]"), entry.string("Comment"));
        EXPECT_NE(entry.string("Keywords"), "");
        EXPECT_NE(entry.string("Keywords[it]"), "");
        EXPECT_NE(textOf(path).find("Exec=" + name + " off\n"), std::string::npos);
        support::ChildProcess validator(
            {{"desktop-file-validate", path}, {{"PATH", std::getenv("PATH")}}});
        EXPECT_EQ(validator.wait(), 0);
        EXPECT_EQ(validator.output() + validator.errors(), "");
        ++count;
    }
    EXPECT_EQ(count, 7);
}

} // namespace
