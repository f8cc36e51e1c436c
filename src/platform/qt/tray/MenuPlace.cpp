#include "platform/qt/tray/MenuPlace.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace platform::qt {

namespace {

/// The start of a length that lies within another as far as it fits.
int within(int start, int length, int first, int last) {
    return std::max(first, std::min(start, last + 1 - length));
}

// Not every tray tells how it runs (neither trayer 1.1.8 nor tint2 17 does). Its shape shows it,
// and one as wide as high that touches a single edge of the screen runs along that.
bool runsUpright(const MenuAnchor& anchor, const QRect& screen) {
    const QRect& panel = anchor.panel;
    if (panel.height() >= 2 * panel.width()) return true;
    if (panel.width() >= 2 * panel.height()) return false;
    const bool atSide = panel.left() <= screen.left() || panel.right() >= screen.right();
    const bool atEnd = panel.top() <= screen.top() || panel.bottom() >= screen.bottom();
    return atSide == atEnd ? anchor.isVertical : atSide;
}

// The toolkit leaves the corners of the monitors where they are and scales what is on them.
const QScreen* screenWithPixel(const QPoint& point) {
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect scaled = screen->geometry();
        if (QRect(scaled.topLeft(), scaled.size() * screen->devicePixelRatio()).contains(point))
            return screen;
    }
    return nullptr;
}

} // namespace

MenuAnchor endOf(const QRect& panel, Qt::LayoutDirection direction) {
    MenuAnchor end{{}, panel, panel.height() > panel.width()};
    const bool isLeft = !end.isVertical && direction == Qt::RightToLeft;
    end.item = QRect(isLeft ? panel.left() : panel.right(), panel.bottom(), 1, 1);
    return end;
}

QPoint menuCorner(const QSize& menu, const MenuAnchor& anchor, const QRect& screen,
                  Qt::LayoutDirection direction) {
    const QRect& item = anchor.item;
    const QRect& panel = anchor.panel;
    QPoint corner;
    if (runsUpright(anchor, screen)) {
        const bool isAtTheLeft = panel.center().x() <= screen.center().x();
        corner = {isAtTheLeft ? panel.right() + 1 : panel.left() - menu.width(), item.top()};
    } else {
        const bool isAtTheTop = panel.center().y() <= screen.center().y();
        corner = {direction == Qt::RightToLeft ? item.right() + 1 - menu.width() : item.left(),
                  isAtTheTop ? panel.bottom() + 1 : panel.top() - menu.height()};
    }
    return {within(corner.x(), menu.width(), screen.left(), screen.right()),
            within(corner.y(), menu.height(), screen.top(), screen.bottom())};
}

QPoint fromDevicePixels(const QPoint& point) {
    const QScreen* const screen = screenWithPixel(point);
    if (screen == nullptr) return point;
    const QPoint corner = screen->geometry().topLeft();
    return corner + (point - corner) / screen->devicePixelRatio();
}

QRect fromDevicePixels(const QRect& area) {
    const QScreen* const screen = screenWithPixel(area.center());
    if (screen == nullptr) return area;
    const QPoint corner = screen->geometry().topLeft();
    const qreal scale = screen->devicePixelRatio();
    return {corner + (area.topLeft() - corner) / scale, area.size() / scale};
}

} // namespace platform::qt
