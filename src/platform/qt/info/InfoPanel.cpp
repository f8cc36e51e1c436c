#include "platform/qt/info/InfoPanel.h"

#include "platform/qt/info/LinkLabel.h"
#include "platform/qt/info/PictureButton.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace platform::qt {

namespace {

constexpr double standardSize = 12;
constexpr double smallestFont = 6; ///< points or pixels
constexpr int titleBar = 40;       ///< room that a window manager may want above the contents

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

/// Qt's origin is at the top left of the contents.
QRect placeIn(QSize contents, const Rect& frame) {
    const int left = static_cast<int>(std::lround(frame.x));
    const int top = contents.height() - static_cast<int>(std::lround(frame.y + frame.height));
    const int right = static_cast<int>(std::lround(frame.x + frame.width));
    const int bottom = contents.height() - static_cast<int>(std::lround(frame.y));
    return QRect(left, top, right - left, bottom - top);
}

QFont scaled(QFont font, double factor) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(smallestFont, font.pointSizeF() * factor));
    else
        font.setPixelSize(static_cast<int>(std::max(smallestFont, font.pixelSize() * factor)));
    return font;
}

/// A title that is wider than the place that was laid out for it gets a smaller font.
void fitInto(QAbstractButton& button, int width) {
    constexpr double step = 0.95;
    for (int tries = 0; button.sizeHint().width() > width && tries < 12; ++tries)
        button.setFont(scaled(button.font(), step));
}

} // namespace

InfoPanel::InfoPanel(const Pictures& shown, const QIcon& icon, Heard hearer)
    : pictures(shown), heard(std::move(hearer)) {
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setWindowIcon(icon);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
}

void InfoPanel::setViews(const std::vector<InfoView>& views, QSize size) {
    contents = size;
    closing = nullptr;
    auto* page = new QWidget;
    setWidget(page); // which destroys the page before
    page->setFixedSize(contents);
    for (const InfoView& each : views) {
        QWidget* const made = std::visit([this](const auto& view) { return make(view); }, each);
        const QRect place =
            std::visit([this](const auto& view) { return placeIn(contents, view.frame); }, each);
        made->setGeometry(place.intersected(QRect(QPoint(), contents)));
        if (auto* title = qobject_cast<QAbstractButton*>(made); title && !title->text().isEmpty())
            fitInto(*title, made->width());
    }
    if (closing != nullptr) closing->setFocus();
}

QWidget* InfoPanel::make(const InfoButton& view) {
    QAbstractButton* made = nullptr;
    if (view.image.empty()) {
        auto* button = new QPushButton(text(view.title), widget());
        button->setAutoDefault(true); // Enter presses the one that has the focus
        button->setDefault(view.closes);
        if (view.closes) closing = button;
        made = button;
    } else {
        made = new PictureButton(pictures, view.image, widget());
    }
    connect(made, &QAbstractButton::clicked, this, [this, view] { heard.pressed(view); });
    return made;
}

QWidget* InfoPanel::make(const InfoCheckBox& view) {
    auto* box = new QCheckBox(text(view.title), widget());
    box->setChecked(view.box.state != 0);
    connect(box, &QCheckBox::clicked, this, [this, box = view.box](bool checked) mutable {
        box.state = checked ? 1 : 0;
        heard.clicked(box);
    });
    return box;
}

QWidget* InfoPanel::make(const InfoText& view) {
    auto* label = new LinkLabel(view.text, widget());
    label->setFont(fontOfSize(view.fontSize));
    connect(label, &QLabel::linkActivated, this,
            [this, view](const QString& link) { heard.link(view, link.toStdString()); });
    return label;
}

void InfoPanel::showAt(QPointF fromMiddle) {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen != nullptr) {
        const QRect room = screen->availableGeometry().adjusted(0, titleBar, 0, 0);
        const int height = std::min(contents.height(), room.height());
        const int bar = height < contents.height() ? verticalScrollBar()->sizeHint().width() : 0;
        QRect place(QPoint(), QSize(contents.width() + bar, height));
        place.moveCenter((QPointF(screen->geometry().center()) + fromMiddle).toPoint());
        place.moveTop(std::clamp(place.top(), room.top(), room.bottom() + 1 - height));
        setFixedSize(place.size());
        setGeometry(place);
    }
    show();
    raise();
    activateWindow();
}

QFont InfoPanel::fontOfSize(double size) {
    return scaled(QApplication::font(), size / standardSize);
}

void InfoPanel::keyPressEvent(QKeyEvent* event) {
    const bool closes = event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return ||
                        event->key() == Qt::Key_Enter;
    if (closes && closing != nullptr)
        closing->click();
    else
        QScrollArea::keyPressEvent(event);
}

// The owner hides it; what the toolkit would do besides is to forget that it is there.
void InfoPanel::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (closing != nullptr) closing->click();
}

} // namespace platform::qt
