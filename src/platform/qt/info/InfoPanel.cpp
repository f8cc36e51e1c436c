#include "platform/qt/info/InfoPanel.h"

#include "platform/qt/alerts/FocusRing.h"
#include "platform/qt/alerts/TitleBar.h"
#include "platform/qt/info/LinkLabel.h"
#include "platform/qt/info/PictureButton.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace platform::qt {

namespace {

constexpr double standardSize = 12;
constexpr double smallestFont = 6; ///< points or pixels
constexpr int margin = 20;         ///< of every edge
constexpr int gap = 16;            ///< between rows
constexpr int columnGap = 12;      ///< between buttons
constexpr int linkGap = 24;        ///< between links
constexpr int buttonWidth = 100;   ///< at least
constexpr int lowestTopPicture = 48;

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QFont scaled(QFont font, double factor) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(std::max(smallestFont, font.pointSizeF() * factor));
    else
        font.setPixelSize(static_cast<int>(std::max(smallestFont, font.pixelSize() * factor)));
    return font;
}

/// A title that is wider than its place gets a smaller font.
void fitInto(QAbstractButton& button, int width) {
    constexpr double step = 0.95;
    for (int tries = 0; button.sizeHint().width() > width && tries < 12; ++tries)
        button.setFont(scaled(button.font(), step));
}

const Rect& frameOf(const InfoView& view) {
    return std::visit([](const auto& each) -> const Rect& { return each.frame; }, view);
}

/// As they are read; the origin of their frames is at the bottom left.
std::vector<InfoView> fromTheTop(std::vector<InfoView> views) {
    std::ranges::stable_sort(views, [](const InfoView& a, const InfoView& b) {
        const Rect &first = frameOf(a), &second = frameOf(b);
        const double top = first.y + first.height, otherTop = second.y + second.height;
        return top != otherTop ? top > otherTop : first.x < second.x;
    });
    return views;
}

int widthOf(const std::vector<QWidget*>& widgets, int between) {
    int width = -between;
    for (const QWidget* widget : widgets)
        width += between + widget->sizeHint().width();
    return width;
}

/// A screen reader is told that it is a dialogue, as the window manager is.
QAccessibleInterface* describe(const QString&, QObject* object) {
    auto* panel = dynamic_cast<InfoPanel*>(object);
    return panel != nullptr ? new QAccessibleWidget(panel, QAccessible::Dialog) : nullptr;
}

} // namespace

InfoPanel::InfoPanel(const Pictures& shown, const QIcon& icon, Heard hearer)
    : pictures(shown), heard(std::move(hearer)), area(new QScrollArea) {
    QAccessible::installFactory(describe);
    setWindowFlags(Qt::Dialog | TitleBar::windowFlags);
    setWindowIcon(icon);
    setFocusPolicy(Qt::NoFocus);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(TitleBar::border, TitleBar::border, TitleBar::border,
                               TitleBar::border);
    column->setSpacing(0);
    column->addWidget(new TitleBar(*this));
    column->addWidget(area);
}

void InfoPanel::setViews(const std::vector<InfoView>& views, int width) {
    closing = nullptr;
    topPicture = nullptr;
    page = new QWidget;
    area->setWidget(page); // which destroys the page before
    page->setFixedWidth(width);
    Rows rows;
    for (const InfoView& view : fromTheTop(views))
        std::visit([&](const auto& each) { make(each, rows); }, view);
    if (!rows.pictures.empty()) topPicture = rows.pictures.front();

    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(gap);
    if (topPicture != nullptr) column->addWidget(topPicture, 0, Qt::AlignHCenter);
    for (QWidget* each : rows.texts)
        column->addWidget(each);
    if (!rows.links.empty()) column->addLayout(linkRow(rows));
    for (QWidget* each : rows.boxes)
        column->addWidget(each);
    column->addLayout(buttonRow(rows));

    setTabOrderOf(rows);
    if (closing != nullptr) closing->setFocus();
}

void InfoPanel::setTabOrderOf(const Rows& rows) {
    QWidget* before = topPicture;
    const auto add = [&before](QWidget* next) {
        if (before != nullptr && next != before) setTabOrder(before, next);
        before = next;
    };
    std::ranges::for_each(rows.links, add);
    std::ranges::for_each(rows.boxes, add);
    for (PictureButton* picture : rows.pictures)
        if (picture != topPicture) add(picture);
    std::ranges::for_each(rows.buttons, add);
}

void InfoPanel::make(const InfoButton& view, Rows& rows) {
    QAbstractButton* made = nullptr;
    if (view.image.empty()) {
        auto* button = new DialogButton(text(view.title), page);
        button->setAutoDefault(true); // Enter presses the one that has the focus
        button->setDefault(view.closes);
        if (view.closes) closing = button;
        // The one that closes stands in the corner.
        rows.buttons.insert(closing != nullptr && !view.closes ? rows.buttons.end() - 1
                                                               : rows.buttons.end(),
                            button);
        made = button;
    } else {
        auto* picture = new PictureButton(pictures, view.image, page);
        picture->setAccessibleName(text(view.says));
        picture->setFixedSize(picture->sizeHint());
        rows.pictures.push_back(picture);
        made = picture;
    }
    if (!view.link.empty() && !heard.leadsSomewhere(view.link)) made->setEnabled(false);
    connect(made, &QAbstractButton::clicked, this, [this, view] { heard.pressed(view); });
}

void InfoPanel::make(const InfoCheckBox& view, Rows& rows) {
    auto* box = new DialogCheckBox(text(view.title), page);
    box->setChecked(view.box.state != 0);
    fitInto(*box, page->width() - 2 * margin);
    rows.boxes.push_back(box);
    connect(box, &QCheckBox::clicked, this, [this, box = view.box](bool checked) mutable {
        box.state = checked ? 1 : 0;
        heard.clicked(box);
    });
}

void InfoPanel::make(const InfoText& view, Rows& rows) {
    AttributedText shown = view.text;
    const bool isLink = !shown.link.empty();
    if (isLink && !heard.leadsSomewhere(shown.link)) shown.link.clear();
    auto* label = new LinkLabel(shown, page);
    const QFont font = fontOfSize(view.fontSize);
    label->setFont(font);
    label->setWordWrap(!isLink);
    if (!isLink) {
        const double height =
            LinkLabel::heightOf(text(shown.text), font, page->width() - 2 * margin);
        label->setFixedHeight(qCeil(height));
    }
    (isLink ? rows.links : rows.texts).push_back(label);
    connect(label, &QLabel::linkActivated, this,
            [this, view](const QString& link) { heard.link(view, link.toStdString()); });
}

/// Long ones stand below each other.
QBoxLayout* InfoPanel::linkRow(const Rows& rows) const {
    const bool fits = widthOf(rows.links, linkGap) <= page->width() - 2 * margin;
    auto* row = new QBoxLayout(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    row->setSpacing(fits ? linkGap : 0);
    for (QWidget* link : rows.links)
        row->addWidget(link);
    row->addStretch();
    return row;
}

QBoxLayout* InfoPanel::buttonRow(const Rows& rows) const {
    auto* row = new QHBoxLayout;
    row->setSpacing(columnGap);
    int room = page->width() - 2 * margin + columnGap;
    for (PictureButton* picture : rows.pictures) {
        if (picture == topPicture) continue;
        row->addWidget(picture);
        room -= picture->width() + columnGap;
    }
    row->addStretch();
    const int count = std::max(1, static_cast<int>(rows.buttons.size()));
    QSize size(buttonWidth, 0);
    for (QAbstractButton* button : rows.buttons) {
        fitInto(*button, room / count - columnGap);
        size = size.expandedTo(button->sizeHint());
    }
    for (QAbstractButton* button : rows.buttons) {
        button->setFixedSize(size);
        row->addWidget(button);
    }
    return row;
}

/// The height that the page then has.
int InfoPanel::fitIntoHeight(int room) {
    page->layout()->activate();
    int height = page->sizeHint().height();
    if (topPicture != nullptr && height > room) {
        const QSize natural = topPicture->sizeHint();
        const int less = std::max(lowestTopPicture, natural.height() - (height - room));
        if (less < natural.height()) {
            topPicture->setFixedSize(natural.scaled(natural.width(), less, Qt::KeepAspectRatio));
            page->layout()->activate();
            height = page->sizeHint().height();
        }
    }
    page->setFixedHeight(height);
    return height;
}

void InfoPanel::showAt(QPointF fromMiddle) {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen != nullptr && page != nullptr) {
        const QRect room = screen->availableGeometry();
        const int around = layout()->itemAt(0)->sizeHint().height() + 2 * TitleBar::border;
        if (topPicture != nullptr) topPicture->setFixedSize(topPicture->sizeHint());
        const int whole = fitIntoHeight(room.height() - around);
        const int height = std::min(whole, room.height() - around);
        const int bar = height < whole ? area->verticalScrollBar()->sizeHint().width() : 0;
        QRect place(0, 0, page->width() + 2 * TitleBar::border + bar, height + around);
        place.moveCenter((QPointF(screen->geometry().center()) + fromMiddle).toPoint());
        place.moveTop(std::clamp(place.top(), room.top(), room.bottom() + 1 - place.height()));
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
        QWidget::keyPressEvent(event);
}

// The owner hides it; what the toolkit would do besides is to forget that it is there.
void InfoPanel::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (closing != nullptr) closing->click();
}

void InfoPanel::paintEvent(QPaintEvent*) {
    TitleBar::paintBorder(*this);
}

} // namespace platform::qt
