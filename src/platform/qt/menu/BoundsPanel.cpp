#include "platform/qt/menu/BoundsPanel.h"

#include "platform/qt/menu/MenuAccess.h"

#include <QCheckBox>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace platform::qt {

namespace {

constexpr int leastWidth = 280;
constexpr int lettersInLine = 36;
constexpr int margin = 14;
constexpr int textMargin = 16;
constexpr QSize monitorSize(180, 112);
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
    layOut();
    setAccessibleDescription(explanation->text());
}

void BoundsPanel::add(const BoundsView::Named& named, Place place) {
    auto* shown = new QCheckBox(this);
    shown->setObjectName(QString::fromUtf8(named.name.data(), qsizetype(named.name.size())));
    shown->setAccessibleName(QString::fromStdString(named.text));
    shown->setFocusPolicy(Qt::NoFocus);
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
    places.push_back(place);
}

/// As wide as the font makes a line of text.
void BoundsPanel::layOut() {
    const QFontMetrics letters = explanation->fontMetrics();
    const int width =
        std::max(leastWidth, letters.averageCharWidth() * lettersInLine + 2 * textMargin);
    const int textWidth = width - 2 * textMargin;
    const int textHeight = explanation->heightForWidth(textWidth);
    const int textTop = margin + monitorSize.height() + neckHeight + footHeight + gap;
    explanation->setGeometry(textMargin, textTop, textWidth, textHeight);
    setFixedSize(width, textTop + textHeight + margin);
    const QRect room = screenOf(monitor()).adjusted(boxInset, boxInset, -boxInset, -boxInset);
    for (std::size_t index = 0; index < boxes.size(); ++index) {
        QCheckBox* box = boxes[index];
        const QSize size(box->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, box),
                         box->style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, box));
        const QPoint corner(qRound(places[index].x * (room.width() - size.width())),
                            qRound(places[index].y * (room.height() - size.height())));
        box->setGeometry(QRect(room.topLeft() + corner, size));
    }
}

QRect BoundsPanel::monitor() const {
    return {QPoint((width() - monitorSize.width()) / 2, margin), monitorSize};
}

// A menu's font may be another one than that of the widget before it was put into one.
void BoundsPanel::changeEvent(QEvent* event) {
    MenuPanel::changeEvent(event);
    const bool changes =
        event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange;
    if (changes && !boxes.empty()) layOut();
}

/// To the next box, or the one before, that can be changed.
void BoundsPanel::moveMark(int by) {
    const std::size_t count = boxes.size();
    for (std::size_t tried = 0; tried < count; ++tried) {
        marked = (marked + count + static_cast<std::size_t>(by)) % count;
        if (boxes[marked]->isEnabled()) break;
    }
    update();
    tellFocus(*boxes[marked]);
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
    // Behind what the menu tells of the whole entry.
    const auto tellBox = [this] {
        if (active) tellFocus(*boxes[marked]);
    };
    if (active) QMetaObject::invokeMethod(this, tellBox, Qt::QueuedConnection);
}

void BoundsPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor text = palette().color(QPalette::WindowText);
    const QColor window = palette().color(QPalette::Window);
    const QColor body = mixed(window, text, 0.32);
    const QColor edge = mixed(window, text, 0.48);
    const QRect frame = monitor();

    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(window, text, 0.4));
    painter.drawRect(
        QRect(frame.center().x() + 1 - neckWidth / 2, frame.bottom() + 1, neckWidth, neckHeight));
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(frame.center().x() + 1 - footWidth / 2,
                                   frame.bottom() + 1 + neckHeight, footWidth, footHeight),
                            footHeight / 2.0, footHeight / 2.0);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), outerRadius, outerRadius);
    // Not the colour of the boxes, which have no outline to speak of in dark styles.
    painter.setBrush(mixed(palette().color(QPalette::Base), text, 0.1));
    painter.drawRoundedRect(QRectF(screenOf(frame)).adjusted(0.5, 0.5, -0.5, -0.5), innerRadius,
                            innerRadius);
    if (!active) return;
    const QRect around =
        boxes[marked]->geometry().adjusted(-focusMargin, -focusMargin, focusMargin, focusMargin);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRoundedRect(around, focusRadius, focusRadius);
}

} // namespace platform::qt
