#include "platform/qt/pictures/Pictures.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

// Its left half is painted, in a colour of its own.
constexpr const char* half = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 2 2">
<path d="M0 0h1v2H0z" fill="#00ff00"/></svg>)";
constexpr const char* wide = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 2 1">
<path d="M0 0h2v1H0z" fill="#00ff00"/></svg>)";

struct Pictures : testing::Test {
    std::vector<std::string> foldersWithPictures() const {
        write("product/room", "twice", wide);
        write("shared", "twice", half);
        write("shared/room", "half", half);
        write("shared", "wide", wide);
        write("shared", "broken", "<svg");
        return {folder.path("product"), folder.path("shared")};
    }
    void write(const char* where, const std::string& name, const char* text) const {
        std::filesystem::create_directories(folder.path(where));
        folder.write(std::string(where) + "/" + name + ".svg", text);
    }

    testing_support::TempFolder folder;
    testing_support::KeptLog log;
    platform::qt::Pictures images{foldersWithPictures(), log};
};

} // namespace

TEST_F(Pictures, AreSharpAtEveryScale) {
    const QColor tint(10, 20, 30);
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        const QImage image = images.tinted("half", size, tint);
        ASSERT_EQ(image.size(), QSize(size, size));
        for (int x = 0; x < size; ++x)
            EXPECT_EQ(image.pixelColor(x, size / 2), x < size / 2 ? tint : QColor(0, 0, 0, 0))
                << size << " " << x;
    }
}

TEST_F(Pictures, KeepTheirOwnColoursWhereTheyAreNoTemplates) {
    EXPECT_EQ(images.drawn("half", 16).pixelColor(2, 2), QColor(0, 255, 0));
}

TEST_F(Pictures, AreSeenOnLightAndOnDarkWhereTheirGroundIsNotKnown) {
    for (const int size : {16, 22, 64}) {
        const QImage image = images.outlined("half", size);
        EXPECT_EQ(image.pixelColor(size / 4, size / 2), QColor(Qt::white)) << size;
        const QColor edge = image.pixelColor(size / 2, size / 2);
        EXPECT_LT(edge.lightness(), 40) << size;
        EXPECT_GT(edge.alpha(), 100) << size;
        EXPECT_EQ(image.pixelColor(size - 1, size / 2).alpha(), 0) << size;
    }
    EXPECT_TRUE(images.outlined("missing", 16).isNull());
}

TEST_F(Pictures, KeepTheirProportionsUnlessTheyAreStretched) {
    const QImage image = images.drawn("wide", 16);
    EXPECT_EQ(image.pixelColor(8, 8), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(8, 3).alpha(), 0);
    EXPECT_EQ(image.pixelColor(8, 12).alpha(), 0);
    std::vector<std::uint32_t> pixels(16 * 16);
    images.picture("wide", 16, 16)->draw(0, pixels);
    EXPECT_EQ(pixels, std::vector<std::uint32_t>(16 * 16, 0xff00ff00));
}

TEST_F(Pictures, AreNoneWhereTheFileIsMissingOrBrokenWhichIsLoggedOnce) {
    EXPECT_TRUE(images.drawn("missing", 16).isNull());
    EXPECT_TRUE(images.tinted("missing", 16, Qt::black).isNull());
    EXPECT_TRUE(images.tinted("broken", 16, Qt::black).isNull());
    EXPECT_EQ(images.picture("broken", 16, 16), nullptr);
    EXPECT_TRUE(images.naturalSize("broken").isEmpty());
    EXPECT_EQ(log.lines, (std::vector<std::string>{"cannot read the image missing",
                                                   "cannot read the image broken"}));
}

TEST_F(Pictures, AreNoneWithoutASizeOrANameWhichIsNotLogged) {
    EXPECT_TRUE(images.drawn("half", 0).isNull());
    EXPECT_TRUE(images.drawn("", 16).isNull());
    EXPECT_EQ(images.picture("half", 0, 16), nullptr);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(Pictures, AreTakenFromTheFirstFolderThatHasThemWhateverTheRoom) {
    EXPECT_EQ(images.drawn("twice", 16).pixelColor(12, 8), QColor(0, 255, 0));
    EXPECT_EQ(images.files().at("twice"), folder.path("product/room/twice.svg"));
    EXPECT_EQ(images.files().at("half"), folder.path("shared/room/half.svg"));
    EXPECT_EQ(images.files().size(), 4u);
}
