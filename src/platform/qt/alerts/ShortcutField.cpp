#include "platform/qt/alerts/ShortcutField.h"

#include "platform/qt/alerts/FocusRing.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFrame>
#include <utility>

namespace platform::qt {

namespace {

constexpr int widthInLetters = 28;
constexpr int verticalPadding = 7;
constexpr int crossSize = 16;
constexpr double faintShare = 0.6;

bool isClick(const QKeyEvent& key) {
    return key.key() == Qt::Key_Space || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

/// Enter is for it while it has the focus, and would be for the window's default button otherwise.
class ClearButton final : public QToolButton {
  public:
    using QToolButton::QToolButton;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            QToolButton::keyPressEvent(event);
    }
    void paintEvent(QPaintEvent* event) override {
        QToolButton::paintEvent(event);
        paintFocusRing(*this, 0);
    }
};

} // namespace

ShortcutField::ShortcutField(QString clearName, std::function<void()> click,
                             std::function<void()> cleared, QWidget* parent)
    : QAbstractButton(parent), clear(new ClearButton(this)) {
    connect(this, &QAbstractButton::clicked, this, [click = std::move(click)] { click(); });
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    clear->setAutoRaise(true);
    clear->setFocusPolicy(Qt::TabFocus);
    clear->setToolTip(clearName);
    clear->setAccessibleName(clearName);
    clear->setIconSize(QSize(crossSize, crossSize));
    clear->setCursor(Qt::ArrowCursor);
    clear->hide();
    connect(clear, &QToolButton::clicked, this, [cleared = std::move(cleared)] { cleared(); });
    drawClearIcon();
}

void ShortcutField::show(const Look& newLook) {
    look = newLook;
    clear->setVisible(look.clearable);
    setAccessibleName(look.text);
    update();
}

QSize ShortcutField::sizeHint() const {
    const QFontMetrics letters = fontMetrics();
    return {letters.averageCharWidth() * widthInLetters, letters.height() + 2 * verticalPadding};
}

void ShortcutField::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOptionFrame frame;
    frame.initFrom(this);
    frame.rect = rect();
    frame.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &frame, this);
    frame.state |= QStyle::State_Sunken;
    frame.state.setFlag(QStyle::State_HasFocus, look.recording || hasFocus());
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, this);

    QColor colour = palette().color(QPalette::Text);
    if (look.recording) colour = palette().color(QPalette::Link);
    if (look.faint && !look.recording) colour.setAlphaF(colour.alphaF() * faintShare);
    painter.setPen(colour);
    const int side = look.clearable ? height() : verticalPadding;
    painter.drawText(rect().adjusted(side, 0, -side, 0), Qt::AlignCenter,
                     fontMetrics().elidedText(look.text, Qt::ElideRight, width() - 2 * side));
}

void ShortcutField::resizeEvent(QResizeEvent*) {
    const int inset = 2;
    const int side = height() - 2 * inset;
    clear->setGeometry(layoutDirection() == Qt::LeftToRight ? width() - side - inset : inset, inset,
                       side, side);
}

void ShortcutField::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) click();
}

// At the release, or the key that is still down would be the first one recorded.
void ShortcutField::keyPressEvent(QKeyEvent* event) {
    if (!isClick(*event)) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat()) keyDown = true;
}

void ShortcutField::keyReleaseEvent(QKeyEvent* event) {
    if (!isClick(*event)) {
        QWidget::keyReleaseEvent(event);
        return;
    }
    if (event->isAutoRepeat() || !keyDown) return;
    keyDown = false;
    click();
}

void ShortcutField::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange)
        drawClearIcon();
    QWidget::changeEvent(event);
}

/// Drawn, since a session without an icon theme has none.
void ShortcutField::drawClearIcon() {
    const qreal ratio = devicePixelRatioF();
    QPixmap picture(QSize(crossSize, crossSize) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor colour = palette().color(QPalette::Text);
    colour.setAlphaF(faintShare);
    constexpr double strokeWidth = 1.6, inset = 4.5;
    painter.setPen(QPen(colour, strokeWidth, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(inset, inset), QPointF(crossSize - inset, crossSize - inset));
    painter.drawLine(QPointF(crossSize - inset, inset), QPointF(inset, crossSize - inset));
    clear->setIcon(QIcon(picture));
}

} // namespace platform::qt
