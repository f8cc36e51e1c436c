#include "platform/qt/alerts/TitleBar.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

namespace platform::qt {

namespace {

constexpr int iconSize = 16;
constexpr int padding = 6;
constexpr double shade = 0.06; ///< of the text's colour

QColor mixed(const QPalette& palette, double share) {
    QColor colour = palette.color(QPalette::WindowText);
    colour.setAlphaF(static_cast<float>(share));
    return colour;
}

} // namespace

TitleBar::TitleBar(QWidget& window) : QWidget(&window), icon(new QLabel), title(new QLabel) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(padding, padding, padding, padding);
    row->addWidget(icon);
    row->addWidget(title, 1);
    row->addSpacing(iconSize); // the title stands in the middle of the window
    icon->setFixedSize(iconSize, iconSize);
    icon->setPixmap(window.windowIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
    title->setAlignment(Qt::AlignCenter);
    title->setTextFormat(Qt::PlainText);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    title->setText(window.windowTitle());
    // A long one must not make the window wider.
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    connect(&window, &QWidget::windowTitleChanged, title, &QLabel::setText);
}

void TitleBar::paintBorder(QWidget& window) {
    constexpr double strength = 0.3;
    QPainter painter(&window);
    const QRect all = window.rect();
    painter.setClipRegion(QRegion(all) - all.adjusted(border, border, -border, -border));
    painter.fillRect(all, mixed(window.palette(), strength));
}

void TitleBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), mixed(palette(), shade));
    painter.fillRect(0, height() - 1, width(), 1, mixed(palette(), 2 * shade));
}

void TitleBar::mousePressEvent(QMouseEvent* event) {
    QWidget::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && window()->windowHandle() != nullptr)
        window()->windowHandle()->startSystemMove();
}

} // namespace platform::qt
