#include "platform/qt/menu/BoundsPanel.h"

#include <QCheckBox>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace platform::qt {

namespace {

constexpr int panelWidth = 280;
constexpr int margin = 14;
constexpr int textMargin = 16;
constexpr QRect monitor(50, margin, 180, 112);
constexpr int bezel = 9;
constexpr int boxInset = 6; // from the bezel to a box
constexpr double outerRadius = 9;
constexpr double innerRadius = 4;
constexpr int neckWidth = 28;
constexpr int neckHeight = 12;
constexpr int footWidth = 72;
constexpr int footHeight = 5;
constexpr int gap = 14; // between the stand and the text
constexpr int focusMargin = 3;
constexpr int focusRadius = 4;

QRect screenOf(const QRect& frame) {
    return frame.adjusted(bezel, bezel, -bezel, -bezel);
}

int standBottom() {
    return monitor.bottom() + 1 + neckHeight + footHeight;
}

QColor mixed(const QColor& first, const QColor& second, double share) {
    const auto mix = [share](int a, int b) {
        return static_cast<int>(a * (1 - share) + b * share);
    };
    return {mix(first.red(), second.red()), mix(first.green(), second.green()),
            mix(first.blue(), second.blue())};
}

} // namespace

BoundsPanel::BoundsPanel(const BoundsView& view, Clicked handler)
    : clicked(std::move(handler)), explanation(new QLabel(this)) {
    const auto& [topLeft, topRight, bottomRight, bottomLeft] = view.corners;
    const auto& [left, top, right, bottom] = view.sides;
    add(topLeft, {0, 0});
    add(top, {0.5, 0});
    add(topRight, {1, 0});
    add(right, {1, 0.5});
    add(bottomRight, {1, 1});
    add(bottom, {0.5, 1});
    add(bottomLeft, {0, 1});
    add(left, {0, 0.5});

    explanation->setText(QString::fromStdString(view.explanation));
    explanation->setTextFormat(Qt::PlainText);
    explanation->setWordWrap(true);
    explanation->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    const int textWidth = panelWidth - 2 * textMargin;
    const int textHeight = explanation->heightForWidth(textWidth);
    const int textTop = standBottom() + gap;
    explanation->setGeometry(textMargin, textTop, textWidth, textHeight);
    setFixedSize(panelWidth, textTop + textHeight + margin);
}

void BoundsPanel::add(const BoundsView::Named& named, Place place) {
    auto* shown = new QCheckBox(this);
    shown->setObjectName(QString::fromUtf8(named.name.data(), qsizetype(named.name.size())));
    shown->setFocusPolicy(Qt::NoFocus);
    const QRect room = screenOf(monitor).adjusted(boxInset, boxInset, -boxInset, -boxInset);
    const QSize size(style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, shown),
                     style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, shown));
    shown->setGeometry(QRect(QPoint(room.x() + qRound(place.x * (room.width() - size.width())),
                                    room.y() + qRound(place.y * (room.height() - size.height()))),
                             size));
    CheckBox& box = *named.box;
    shown->setChecked(box.state != 0);
    shown->setEnabled(box.enabled);
    if (box.alpha < 1) {
        auto* faded = new QGraphicsOpacityEffect(shown);
        faded->setOpacity(box.alpha);
        shown->setGraphicsEffect(faded);
    }
    connect(shown, &QCheckBox::clicked, this, [this, &box](bool checked) {
        box.state = checked ? 1 : 0;
        clicked(box);
    });
    boxes.push_back(shown);
}

/// To the next box, or the one before, that can be changed.
void BoundsPanel::moveMark(int by) {
    const std::size_t count = boxes.size();
    for (std::size_t tried = 0; tried < count; ++tried) {
        marked = (marked + count + static_cast<std::size_t>(by)) % count;
        if (boxes[marked]->isEnabled()) break;
    }
    update();
}

bool BoundsPanel::handleKey(const QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
    case Qt::Key_Tab:
        moveMark(1);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Up:
    case Qt::Key_Backtab:
        moveMark(-1);
        return true;
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        boxes[marked]->click();
        return true;
    default:
        return false;
    }
}

void BoundsPanel::setActive(bool shown) {
    active = shown;
    update();
}

void BoundsPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor text = palette().color(QPalette::WindowText);
    const QColor window = palette().color(QPalette::Window);
    const QColor body = mixed(window, text, 0.32);
    const QColor edge = mixed(window, text, 0.48);

    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(window, text, 0.4));
    painter.drawRect(QRect(monitor.center().x() + 1 - neckWidth / 2, monitor.bottom() + 1,
                           neckWidth, neckHeight));
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(monitor.center().x() + 1 - footWidth / 2,
                                   monitor.bottom() + 1 + neckHeight, footWidth, footHeight),
                            footHeight / 2.0, footHeight / 2.0);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(monitor).adjusted(0.5, 0.5, -0.5, -0.5), outerRadius,
                            outerRadius);
    // Not the colour of the boxes, which have no outline to speak of in dark styles.
    painter.setBrush(mixed(palette().color(QPalette::Base), text, 0.1));
    painter.drawRoundedRect(QRectF(screenOf(monitor)).adjusted(0.5, 0.5, -0.5, -0.5), innerRadius,
                            innerRadius);
    if (!active) return;
    const QRect around =
        boxes[marked]->geometry().adjusted(-focusMargin, -focusMargin, focusMargin, focusMargin);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRoundedRect(around, focusRadius, focusRadius);
}

} // namespace platform::qt
