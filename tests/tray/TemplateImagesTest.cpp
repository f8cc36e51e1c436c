#include "platform/qt/pictures/TemplateImages.h"
#include "testing/desktop/PrivateDesktop.h"

#include <fstream>
#include <gtest/gtest.h>

using platform::qt::TemplateImages;

namespace {

// Its left half is painted, in a colour of its own.
constexpr const char* half = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 2 2">
<path d="M0 0h1v2H0z" fill="#00ff00"/></svg>)";
constexpr const char* wide = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 2 1">
<path d="M0 0h2v1H0z" fill="#00ff00"/></svg>)";

struct TemplateImage : testing::Test {
    TemplateImage() {
        std::filesystem::create_directory(product);
        write("shared", "half", half);
        write("shared", "wide", wide);
        write("shared", "broken", "<svg");
    }
    void write(const char* where, const std::string& name, const char* text) const {
        std::filesystem::create_directory(folder.path(where));
        folder.write(std::string(where) + "/" + name + ".svg", text);
    }

    testing_support::TempFolder folder;
    std::filesystem::path product = folder.path("product");
    TemplateImages images{{product, folder.path("shared")}};
};

} // namespace

TEST_F(TemplateImage, IsSharpAtEveryScale) {
    const QColor tint(10, 20, 30);
    for (const int size : {16, 22, 24, 32, 48, 64}) {
        const QImage image = images.tinted("half", size, tint);
        ASSERT_EQ(image.size(), QSize(size, size));
        for (int x = 0; x < size; ++x)
            EXPECT_EQ(image.pixelColor(x, size / 2), x < size / 2 ? tint : QColor(0, 0, 0, 0))
                << size << " " << x;
    }
}

TEST_F(TemplateImage, KeepsItsOwnColoursWhereItIsNoTemplate) {
    EXPECT_EQ(images.drawn("half", 16).pixelColor(2, 2), QColor(0, 255, 0));
}

TEST_F(TemplateImage, KeepsItsProportions) {
    const QImage image = images.drawn("wide", 16);
    EXPECT_EQ(image.pixelColor(8, 8), QColor(0, 255, 0));
    EXPECT_EQ(image.pixelColor(8, 3).alpha(), 0);
    EXPECT_EQ(image.pixelColor(8, 12).alpha(), 0);
}

TEST_F(TemplateImage, IsNoPictureWhereTheFileIsMissingOrBroken) {
    EXPECT_TRUE(images.drawn("missing", 16).isNull());
    EXPECT_TRUE(images.tinted("missing", 16, Qt::black).isNull());
    EXPECT_TRUE(images.tinted("broken", 16, Qt::black).isNull());
    EXPECT_TRUE(images.drawn("half", 0).isNull());
}

TEST_F(TemplateImage, IsTakenFromTheFirstFolderThatHasIt) {
    write("product", "half", wide);
    EXPECT_EQ(images.drawn("half", 16).pixelColor(12, 8), QColor(0, 255, 0));
    EXPECT_EQ(images.files().at("half"), (product / "half.svg").string());
    EXPECT_EQ(images.files().size(), 3u);
}
