#include "pictures/Stage.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>

// The pictures of the guide show the program as it is. Where the variable GUIDE_PICTURES names a
// folder, they are taken into that one first.

namespace pictures {
namespace {

namespace fs = std::filesystem;

struct Shot {
    const Scene* scene;
    bool dark;

    std::string name() const { return scene->name + (dark ? "-dark" : ""); }
};

const char* takenInto() {
    return std::getenv("GUIDE_PICTURES");
}

fs::path folder() {
    return takenInto() ? takenInto() : PICTURES;
}

std::string textOf(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Pictures : testing::TestWithParam<Shot> {
    fs::path words() const { return folder() / "words" / (GetParam().scene->name + ".txt"); }
    fs::path file() const { return folder() / (GetParam().name() + ".png"); }

    void take(const Stage& stage) const {
        fs::create_directories(folder() / "words");
        stage.settledPicture().writePng(file());
        std::ofstream(words()) << stage.toolkit() << "\n\n" << stage.words();
    }
};

TEST_P(Pictures, AreOfTheProgramAsItIs) {
    const Stage stage(*GetParam().scene, GetParam().dark);
    if (takenInto()) take(stage);
    const std::string stored = textOf(words());
    const std::size_t behind = stored.find("\n\n");
    ASSERT_NE(behind, stored.npos) << words() << ": make pictures";
    EXPECT_EQ(stage.words(), stored.substr(behind + 2)) << "make pictures takes it anew";
    // Another toolkit or another font draws the same words another way.
    if (stored.substr(0, behind) != stage.toolkit()) return;
    EXPECT_TRUE(stage.comesToLookLike(support::Picture::readPng(file())))
        << file() << " looks otherwise: make pictures takes it anew";
}

std::vector<Shot> shots() {
    std::vector<Shot> all;
    for (const Scene& scene : scenes())
        for (const bool dark : {false, true})
            all.push_back({&scene, dark});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Of, Pictures, testing::ValuesIn(shots()), [](const auto& one) {
    std::string name = one.param.name();
    std::erase(name, '-');
    return name;
});

TEST(PicturesOfTheGuide, AreToldApart) {
    support::Picture one{{0, 0, 100, 100}, std::vector<support::Colour>(10000)};
    support::Picture other = one;
    EXPECT_TRUE(areAlike(one, other));
    for (int i = 0; i < 30; ++i) // a letter
        other.pixels[static_cast<std::size_t>(i)] = {255, 255, 255};
    EXPECT_FALSE(areAlike(one, other));
    other.area = {0, 0, 50, 200};
    other.pixels = one.pixels;
    EXPECT_FALSE(areAlike(one, other));
}

} // namespace
} // namespace pictures
