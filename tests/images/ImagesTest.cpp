#include "images/Drawn.h"
#include "unit/Program.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>

// The pictures are those that the application itself asks for, as the memory platform hears it.

using namespace palisor;
using testing::Contains;
using Names = std::set<std::string>;
using namespace imagetests;

namespace {

constexpr std::initializer_list<int> products = {1, 2, 3, 5, 7, 8, 9};

Names namesIn(const Lines& effects, const char* member) {
    Names names;
    const std::regex pattern("\"" + std::string(member) + "\":\"([^\"]+)\"");
    for (const std::string& line : effects)
        if (std::smatch found; std::regex_search(line, found, pattern)) names.insert(found[1]);
    return names;
}

std::string statusImage(int product, bool active) {
    Program program(product);
    program.launched();
    program.setting(keys::ATTIVO, platform::Value{active});
    program.app.updateMenuItems();
    const Names names = namesIn(program.effects({"statusImage"}), "name");
    return names.size() == 1 ? *names.begin() : "not one";
}

Names menuImages(int product) {
    Program program(product);
    program.launched();
    Names names;
    for (const auto& item : program.platform.statusItem.menu()->items)
        if (!item->image.empty()) names.insert(item->image);
    return names;
}

Names overlayImages() {
    Program program(variants::cursorHider);
    program.launched();
    program.app.otherMonitorsDark();
    program.app.initWindowBorders();
    program.app.windowHotBorders->makeKeyAndOrderFront();
    return namesIn(program.effects({"window"}), "image");
}

void expectTemplate(const std::string& name) {
    SCOPED_TRACE(name);
    for (const int size : {16, 22, 24, 32, 48}) {
        const Pixels pixels = drawn(name, size, size);
        ASSERT_FALSE(pixels.empty());
        EXPECT_GT(cover(pixels), 0.05) << size;
        EXPECT_LT(cover(pixels), 0.75) << size;
        for (const std::uint32_t pixel : pixels)
            ASSERT_EQ(pixel & 0xffffff, 0u) << "a template has black and alpha only";
    }
}

} // namespace

TEST(Images, OfTheStatusItemAreTemplates) {
    for (const int product : products)
        for (const bool active : {true, false})
            expectTemplate(statusImage(product, active));
}

TEST(Images, OfTheStatusItemShowWhetherTheProductIsOn) {
    for (const int product : products) {
        const Pixels on = drawn(statusImage(product, true), 16, 16);
        const Pixels off = drawn(statusImage(product, false), 16, 16);
        ASSERT_EQ(on.size(), off.size());
        std::size_t changed = 0;
        for (std::size_t i = 0; i < on.size(); ++i)
            if ((alpha(on[i]) > 127) != (alpha(off[i]) > 127)) ++changed;
        EXPECT_GE(changed, on.size() / 10) << statusImage(product, true);
        EXPECT_GT(cover(on), cover(off)) << statusImage(product, true);
    }
}

TEST(Images, OfTheStatusItemDifferFromProductToProduct) {
    std::set<Pixels> seen;
    for (const int product : products)
        for (const bool active : {true, false})
            EXPECT_TRUE(seen.insert(drawn(statusImage(product, active), 16, 16)).second) << product;
}

TEST(Images, OfTheMenuAreTemplates) {
    for (const int product : products) {
        const Names names = menuImages(product);
        EXPECT_THAT(names, Contains("OnOff"));
        for (const std::string& name : names)
            expectTemplate(name);
    }
}

TEST(Images, OfTheOverlaysAreFramesAtAnySize) {
    const Names names = overlayImages();
    EXPECT_EQ(names.size(), 2u) << "the hot borders and the border that fades";
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        for (const auto& [width, height] : {std::pair{1920, 1080}, {3440, 1440}, {768, 1366}}) {
            const Pixels pixels = drawn(name, width, height);
            ASSERT_FALSE(pixels.empty());
            auto at = [&](int x, int y) {
                return alpha(pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x)]);
            };
            for (int x = 0; x < width; ++x) {
                ASSERT_EQ(at(x, 0), 255u) << x;
                ASSERT_EQ(at(x, height - 1), 255u) << x;
            }
            for (int y = 0; y < height; ++y) {
                ASSERT_EQ(at(0, y), 255u) << y;
                ASSERT_EQ(at(width - 1, y), 255u) << y;
            }
            for (int y = height / 4; y < height * 3 / 4; ++y)
                for (int x = width / 4; x < width * 3 / 4; ++x)
                    ASSERT_EQ(at(x, y), 0u) << x << ' ' << y;
        }
    }
}

// The rounding of a gradient depends on where the strip begins.
TEST(Images, DrawnInStripsShowNoSeams) {
    KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    for (const auto& [width, height, rows] :
         {std::array{1920, 1080, 34}, {3840, 2160, 17}, {1921, 1083, 10}}) {
        const auto picture = pictures.picture("hotBordersModeOn", width, height);
        ASSERT_NE(picture, nullptr);
        Pixels strips;
        for (int row = 0; row < height; row += rows) {
            Pixels strip(static_cast<std::size_t>(width * std::min(rows, height - row)),
                         0x12345678);
            picture->draw(row, strip);
            strips.insert(strips.end(), strip.begin(), strip.end());
        }
        const Pixels whole = drawn("hotBordersModeOn", width, height);
        ASSERT_EQ(strips.size(), whole.size());
        int worst = 0;
        for (std::size_t i = 0; i < whole.size(); ++i)
            worst = std::max(worst, difference(strips[i], whole[i]));
        EXPECT_LE(worst, 2) << "of 255, at " << width << 'x' << height;
    }
}

TEST(Images, OfTheProductsAreIconsInColour) {
    for (const char* product : {"palisor", "vellumor", "quenlow", "stay-awake", "orbisant",
                                "crosshair", "calendar-alerts"}) {
        SCOPED_TRACE(product);
        KeptLog log;
        const platform::qt::Pictures pictures({PRODUCTS "/" + std::string(product)}, log);
        const auto icon = pictures.picture("icon", 128, 128);
        ASSERT_NE(icon, nullptr);
        Pixels pixels(128 * 128);
        icon->draw(0, pixels);
        EXPECT_EQ(alpha(pixels[0]), 0u) << "the corners are free";
        EXPECT_EQ(alpha(pixels[64 * 128 + 64]), 255u);
        EXPECT_GT(std::set(pixels.begin(), pixels.end()).size(), 50u);
    }
}

TEST(Images, ThatAreMissingAreLoggedOnce) {
    KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    EXPECT_EQ(pictures.picture("noSuchImage", 16, 16), nullptr);
    EXPECT_EQ(pictures.picture("noSuchImage", 16, 16), nullptr);
    EXPECT_EQ(log.lines, Lines{"cannot read the image noSuchImage"});
}
