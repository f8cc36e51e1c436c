#include "platform/qt/pictures/QtImages.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <cstring>

namespace platform::qt {

namespace {

constexpr auto pixelFormat = QImage::Format_ARGB32_Premultiplied;

/// The same pixels, not a copy; they must live as long.
QImage viewOf(const Image& image) {
    return {reinterpret_cast<const uchar*>(image.pixels.data()), image.size.width,
            image.size.height, qsizetype{4} * image.size.width, pixelFormat};
}

// The painter takes the nearest few pixels only, so that a much smaller copy would sparkle: those
// are made first, as averages.
QImage noLargerThan(const QImage& image, const QRectF& frame) {
    const QSize target(std::max(1, static_cast<int>(std::ceil(frame.width()))),
                       std::max(1, static_cast<int>(std::ceil(frame.height()))));
    const QSize size = image.size().boundedTo(target);
    if (size == image.size()) return image;
    return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// A copy.
Image imageFrom(const QImage& image) {
    if (image.isNull()) return {};
    const QImage converted = image.convertToFormat(pixelFormat);
    Image copy = Image::ofSize({converted.width(), converted.height()});
    std::memcpy(copy.pixels.data(), converted.constBits(), copy.pixels.size() * 4);
    return copy;
}

} // namespace

Image QtImages::load(const std::string& path) {
    QImageReader reader(QString::fromStdString(path));
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    return imageFrom(reader.read());
}

Image QtImages::drawn(const Image& source, const Drawing& drawing) {
    Image result = Image::ofSize(drawing.canvas);
    if (!source.isValid() || !result.isValid()) return {};
    QImage canvas(reinterpret_cast<uchar*>(result.pixels.data()), result.size.width,
                  result.size.height, qsizetype{4} * result.size.width, pixelFormat);
    const QRectF frame(drawing.frame.x, drawing.frame.y, drawing.frame.width, drawing.frame.height);
    QPainter painter(&canvas);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.drawImage(frame, noLargerThan(viewOf(source), frame));
    if (drawing.radiusX <= 0 || drawing.radiusY <= 0) return result;

    // Taken away afterwards, since a clip would leave the edge jagged.
    QPainterPath corners;
    corners.setFillRule(Qt::OddEvenFill);
    corners.addRect(canvas.rect());
    corners.addRoundedRect(frame, drawing.radiusX, drawing.radiusY);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(corners, Qt::black);
    return result;
}

} // namespace platform::qt
