#include "platform/qt/info/QtViews.h"

#include "platform/qt/pictures/QtImages.h"

#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QScreen>
#include <cmath>

namespace platform::qt {

namespace {

/// The toolkit scales what lies on a screen, and leaves the screen's origin where it is.
QPointF toolkitPoint(Point point) {
    const QPointF pixel =
        QPointF(point.x, point.y) + QPointF(QGuiApplication::primaryScreen()->geometry().topLeft());
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QPointF origin = screen->geometry().topLeft();
        const qreal ratio = screen->devicePixelRatio();
        if (QRectF(origin, QSizeF(screen->geometry().size()) * ratio).contains(pixel))
            return origin + (pixel - origin) / ratio;
    }
    return pixel;
}

} // namespace

Rect QtView::bounds() const {
    const qreal ratio = widget.devicePixelRatioF();
    return {0, 0, std::round(widget.width() * ratio), std::round(widget.height() * ratio)};
}

std::optional<Point> QtView::fromDesktop(Point point) const {
    if (!widget.window()->isVisible()) return std::nullopt;
    const QPointF own = widget.mapFromGlobal(toolkitPoint(point)) * widget.devicePixelRatioF();
    return Point{own.x(), own.y()};
}

bool QtView::isHidden() const {
    return widget.isHidden();
}

void QtView::setHidden(bool hidden) {
    widget.setHidden(hidden);
}

Image QtView::display() {
    const Rect size = bounds();
    QImage image(static_cast<int>(size.width), static_cast<int>(size.height),
                 QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return {};
    image.setDevicePixelRatio(widget.devicePixelRatioF());
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return imageFrom(image);
}

Image QtView::layerContents() {
    if (!isHidden() && layer) return display();
    const Rect size = bounds();
    return Image::ofSize({static_cast<int>(size.width), static_cast<int>(size.height)});
}

AttributedText QtTextField::attributedText() const {
    return {.text = label.text().toStdString(), .underlined = label.font().underline()};
}

void QtTextField::setAttributedText(const AttributedText& text) {
    QFont font = label.font();
    font.setUnderline(text.underlined);
    label.setFont(font);
    label.setText(QString::fromStdString(text.text));
}

} // namespace platform::qt
