#include "platform/qt/info/PictureButton.h"

#include "platform/qt/alerts/FocusRing.h"

#include <QKeyEvent>
#include <QPainter>

namespace platform::qt {

namespace {

constexpr double pressedOpacity = 0.7;

} // namespace

PictureButton::PictureButton(const Pictures& shown, std::string called, QWidget* parent)
    : QAbstractButton(parent), pictures(shown), name(std::move(called)) {
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

// A picture that leads nowhere looks as it does, and is none to click.
void PictureButton::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        if (isEnabled())
            setCursor(Qt::PointingHandCursor);
        else
            unsetCursor();
    }
    QAbstractButton::changeEvent(event);
}

void PictureButton::paintEvent(QPaintEvent*) {
    {
        QPainter painter(this);
        painter.setOpacity(isDown() ? pressedOpacity : 1);
        pictures.paint(painter, name, rect());
    }
    paintFocusRing(*this, 0);
}

void PictureButton::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace platform::qt
