#include "images/Drawn.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

// Icons of the tray and of the menu at the sizes in which panels show them.

using namespace imagetests;

namespace {

constexpr int sizes[] = {16, 22, 24, 32, 48};
constexpr const char* icons[] = {"OnOff",
                                 "icon_statusbar_on2",
                                 "icon_statusbar_off2",
                                 "icon_statusbar_on3",
                                 "icon_statusbar_off3",
                                 "icon_statusbar_on5",
                                 "icon_statusbar_off5",
                                 "icon_statusbar_on7",
                                 "icon_statusbar_off7",
                                 "icon_statusbar_on8",
                                 "icon_statusbar_off8",
                                 "icon_statusbar_on9",
                                 "icon_statusbar_off9",
                                 "statusIconVellumor",
                                 "statusIconVellumorOff"};

constexpr int shortestEdge = 3;
constexpr int nearlyNothing = 16, nearlyAll = 239;
constexpr int alike = 2; ///< what a straight edge covers of two pixels

/// How much of the straight edges lies between pixels: the pixels that are half covered in a row
/// along an empty one, against all that lie along an empty one.
struct Edges {
    int sharp = 0, blurred = 0;

    double shareBlurred() const {
        return sharp + blurred == 0 ? 0 : static_cast<double>(blurred) / (sharp + blurred);
    }
};

int opacity(const QImage& image, int x, int y) {
    return image.valid(x, y) ? qAlpha(image.pixel(x, y)) : 0;
}

/// Of the edges that run along the y axis and have nothing on that side, -1 or 1.
void count(const QImage& image, int side, Edges& edges) {
    for (int x = 0; x < image.width(); ++x) {
        int length = 0, before = 0;
        const auto end = [&] {
            if (length >= shortestEdge)
                (before < nearlyAll ? edges.blurred : edges.sharp) += length;
            length = 0;
        };
        for (int y = 0; y < image.height(); ++y) {
            const int here = opacity(image, x, y);
            if (here <= nearlyNothing || opacity(image, x + side, y) > nearlyNothing) {
                end();
                continue;
            }
            // A slanting or round edge covers each pixel differently.
            if (length > 0 && std::abs(here - before) > alike) end();
            before = length == 0 ? here : std::min(here, before);
            ++length;
        }
        end();
    }
}

Edges edgesOf(const QImage& image) {
    Edges edges;
    for (const QImage& turned : {image, image.transformed(QTransform().rotate(90))})
        for (const int side : {-1, 1})
            count(turned, side, edges);
    return edges;
}

/// For a person to look at: a row of all sizes for each icon, and the same enlarged.
void keepSheet(const platform::qt::Pictures& pictures, const char* folder) {
    constexpr int cell = 56, enlarged = 4, columns = 5;
    const int rows = static_cast<int>(std::size(icons));
    QImage sheet(columns * cell * (1 + enlarged), rows * cell * enlarged, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column) {
            const QImage icon = pictures.drawn(icons[row], sizes[column]);
            painter.drawImage(column * cell, row * cell * enlarged, icon);
            painter.drawImage((columns + column * enlarged) * cell, row * cell * enlarged,
                              icon.scaled(icon.size() * enlarged));
        }
    sheet.save(QString(folder) + "/icons.png");
}

} // namespace

TEST(Images, HaveTheirStraightEdgesOnWholePixelsAtTheSizesOfPanels) {
    KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    for (const std::string name : icons)
        for (const int size : sizes) {
            const QImage image = pictures.drawn(name, size);
            ASSERT_EQ(image.size(), QSize(size, size)) << name;
            const Edges edges = edgesOf(image);
            EXPECT_LE(edges.shareBlurred(), 0.1)
                << name << " at " << size << ": " << edges.blurred << " and " << edges.sharp;
        }
    if (const char* folder = std::getenv("PALISOR_PICTURES")) keepSheet(pictures, folder);
}
