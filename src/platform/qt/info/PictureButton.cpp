#include "platform/qt/info/PictureButton.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace platform::qt {

namespace {

constexpr double pressedOpacity = 0.7;

} // namespace

PictureButton::PictureButton(const QString& file, const QString& name, QWidget* parent)
    : QAbstractButton(parent) {
    // The renderer would write about a missing file itself.
    if (QFileInfo::exists(file)) renderer.load(file);
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

void PictureButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(isDown() ? pressedOpacity : 1);
    if (renderer.isValid()) renderer.render(&painter, QRectF(rect()));
    if (!hasFocus()) return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void PictureButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace platform::qt
