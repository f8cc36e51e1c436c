#include "images/Drawn.h"

#include <QImage>
#include <QPainter>
#include <QSize>
#include <QSvgRenderer>
#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <set>

// The pictures that are shown in their own colours, on light windows and on dark ones.

using namespace imagetests;
using testing::HasSubstr;

namespace {

constexpr const char* productPictures[] = {"Palisor", "Vellumor", "Quenlow", "Orbisant",
                                           "icon_0",  "icon_3",   "icon_7",  "icon_9"};
constexpr const char* storeIds[] = {"1200000417", "1200000418", "1200000419", "123456789",
                                    "611203457",  "611203458",  "611203459",  "611203460"};

QSize naturalSize(const std::string& name) {
    KeptLog log;
    return platform::qt::Pictures({IMAGES}, log).naturalSize(name);
}

double luminance(std::uint32_t pixel) {
    const auto channel = [pixel](int shift) { return static_cast<double>(pixel >> shift & 0xff); };
    return (0.2126 * channel(16) + 0.7152 * channel(8) + 0.0722 * channel(0)) / 255;
}

/// The share of the covered pixels that differ from a background as bright as that.
double seenOn(const Pixels& pixels, double background) {
    double covered = 0, seen = 0;
    for (const std::uint32_t pixel : pixels) {
        if (alpha(pixel) < 255) continue;
        ++covered;
        if (std::abs(luminance(pixel) - background) > 0.12) ++seen;
    }
    return covered == 0 ? 0 : seen / covered;
}

} // namespace

TEST(ColourImages, OfTheProductsFitTheInfoWindowAndDiffer) {
    std::set<Pixels> seen;
    for (const std::string name : productPictures) {
        SCOPED_TRACE(name);
        EXPECT_EQ(naturalSize(name), QSize(160, 112));
        EXPECT_TRUE(seen.insert(drawn(name, 160, 112)).second);
    }
}

// It stands to the right of a button that ends at 120 in a window whose middle is at 200, and ends
// nine before the middle.
TEST(ColourImages, OfTheMakerLeaveRoomForTheButtonBesideThem) {
    const QSize size = naturalSize("logo");
    EXPECT_GT(200 - 9 - size.width(), 120);
    EXPECT_GE(size.width(), 48);
    EXPECT_EQ(size.width(), size.height());
}

TEST(ColourImages, OfTheMenuAreMadeForItsSizeAndDiffer) {
    std::set<Pixels> seen;
    for (const std::string id : storeIds) {
        SCOPED_TRACE(id);
        EXPECT_EQ(naturalSize("miniicon_" + id), QSize(16, 16));
        const Pixels pixels = drawn("miniicon_" + id, 16, 16);
        EXPECT_TRUE(seen.insert(pixels).second);
        EXPECT_GT(cover(pixels), 0.8) << "a tile";
        EXPECT_LT(alpha(pixels.front()), 128u) << "with round corners";
    }
}

TEST(ColourImages, AreSeenOnLightAndOnDark) {
    std::vector<std::string> names(std::begin(productPictures), std::end(productPictures));
    for (const std::string id : storeIds)
        names.push_back("miniicon_" + id);
    names.emplace_back("logo");
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const QSize size = naturalSize(name);
        for (const int scale : {1, 2}) {
            const Pixels pixels = drawn(name, size.width() * scale, size.height() * scale);
            ASSERT_FALSE(pixels.empty());
            EXPECT_GT(seenOn(pixels, 0.96), 0.6) << "on light at scale " << scale;
            EXPECT_GT(seenOn(pixels, 0.13), 0.6) << "on dark at scale " << scale;
        }
    }
}

// The toolkit does not look at the namespace; the tools of panels and packagers do.
TEST(Images, AreSvgForEveryReader) {
    int count = 0;
    KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    for (const auto& [name, path] : pictures.files()) {
        std::ifstream file(path);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        EXPECT_THAT(text, HasSubstr("xmlns=\"http://www.w3.org/2000/svg\"")) << path;
        ++count;
    }
    EXPECT_GT(count, 30);
}

// Plasma exchanges this style for one of its own.
TEST(Images, OfTheStatusItemTakeTheColourThatThePanelPutsIn) {
    const std::regex style("(<style id=\"current-color-scheme\"[^>]*>)[^<]*");
    int count = 0;
    KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    for (const auto& [name, path] : pictures.files()) {
        if (path.find("/status") == std::string::npos) continue;
        SCOPED_TRACE(path);
        std::ifstream file(path);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        const std::string red =
            std::regex_replace(text, style, "$1.ColorScheme-Text { color: #ff0000 }");
        QSvgRenderer svg(QByteArray::fromStdString(red));
        QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
        image.fill(0);
        QPainter painter(&image);
        svg.render(&painter);
        int drawn = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                if (qAlpha(pixel) < 255) continue;
                ++drawn;
                ASSERT_EQ(pixel, qRgb(255, 0, 0));
            }
        EXPECT_GT(drawn, 0);
        ++count;
    }
    EXPECT_GT(count, 20);
}
