// Draws a product's icon in the sizes that desktops ask an icon theme for, at build time:
//   palisor-icons SVG NAME THEME
// THEME gets "48x48/apps/NAME.png" and so on. Panels that scale the drawing themselves find it
// beside.

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace {

constexpr int sizes[] = {16, 22, 24, 32, 48, 64, 96, 128, 256, 512};

bool draw(QSvgRenderer& drawing, int size, const QString& path) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    return image.save(path, "PNG");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        (void)std::fputs("Usage: palisor-icons SVG NAME THEME\n", stderr);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    if (!drawing.isValid()) {
        (void)std::fprintf(stderr, "palisor-icons: %s cannot be drawn\n", argv[1]);
        return 1;
    }
    for (const int size : sizes) {
        const QString folder =
            QString("%1/%2x%2/apps").arg(QString::fromLocal8Bit(argv[3])).arg(size);
        const QString path = folder + "/" + QString::fromLocal8Bit(argv[2]) + ".png";
        if (QDir().mkpath(folder) && draw(drawing, size, path)) continue;
        (void)std::fprintf(stderr, "palisor-icons: %s cannot be written\n", qPrintable(path));
        return 1;
    }
    return 0;
}
