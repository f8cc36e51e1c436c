#include "platform/qt/menu/MenuStyle.h"

#include <QApplication>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>

namespace platform::qt {

namespace {

constexpr const char* plainStyle = "fusion";

// Points, which are pixels where nothing is scaled.
constexpr int marginAboveAndBelow = 4;
constexpr int addedToAnEntry = 4;
constexpr int separatorHeight = 9, separatorInset = 8;
constexpr double separatorStrength = 0.2; // of the text's colour

const QStyleOptionMenuItem* separatorOf(const QStyleOption* option) {
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    return item && item->menuItemType == QStyleOptionMenuItem::Separator ? item : nullptr;
}

} // namespace

void MenuStyle::giveTo(QMenu& menu) {
    if (QApplication::style()->name() != plainStyle) return;
    static QPointer<MenuStyle> shared;
    if (!shared) {
        shared = new MenuStyle(QString(plainStyle));
        shared->setParent(qApp);
    }
    menu.setStyle(shared);
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
    if (metric == PM_MenuVMargin) return marginAboveAndBelow;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type != CT_MenuItem) return size;
    size.setHeight(separatorOf(option) ? separatorHeight : size.height() + addedToAnEntry);
    return size;
}

// The shadow under a greyed text makes it look double on a dark menu.
int MenuStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* more) const {
    if (hint == SH_EtchDisabledText) return 0;
    return QProxyStyle::styleHint(hint, option, widget, more);
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
    const auto* separator = element == CE_MenuItem ? separatorOf(option) : nullptr;
    if (!separator) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QColor colour = separator->palette.color(QPalette::Text);
    colour.setAlphaF(separatorStrength);
    const QRect area = separator->rect.adjusted(separatorInset, 0, -separatorInset, 0);
    painter->fillRect(QRect(area.left(), area.center().y(), area.width(), 1), colour);
}

} // namespace platform::qt
