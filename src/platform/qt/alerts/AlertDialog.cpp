#include "platform/qt/alerts/AlertDialog.h"

#include "platform/qt/alerts/FocusRing.h"
#include "platform/qt/alerts/TitleBar.h"

#include <QCursor>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QShowEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>

namespace platform::qt {

namespace {

constexpr int gap = 12;
constexpr int margin = 20;
constexpr int textWidthInLetters = 52;
constexpr int buttonWidthInLetters = 30;
constexpr int mostLines = 20;
// A text may come from anybody, and the toolkit takes seconds to lay out a mebibyte: it is cut
// before anything looks at it.
constexpr qsizetype longestText = 2000;
constexpr qsizetype longestTitle = 60;
constexpr double messageScale = 1.1;

QString cut(std::string_view text, qsizetype longest) {
    // No character has more bytes than these, and none is longer than two.
    const auto most = static_cast<std::size_t>(4 * (longest + 1));
    QString result =
        QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(text.size(), most)));
    if (result.size() <= longest) return result;
    result.truncate(result.at(longest - 1).isHighSurrogate() ? longest - 1 : longest);
    return result + u'\u2026';
}

QLabel* textLabel(const std::string& text) {
    auto* label = new QLabel(cut(text, longestText));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(label->fontMetrics().averageCharWidth() * textWidthInLetters);
    return label;
}

bool fitsIntoLabel(const QLabel& label) {
    const QFontMetrics metrics = label.fontMetrics();
    const QRect room(0, 0, label.minimumWidth(), mostLines * metrics.lineSpacing());
    return room.contains(metrics.boundingRect(room, Qt::TextWordWrap, label.text()));
}

/// What would not fit on the screen is scrolled, and a word that does not fit into a line is
/// broken.
QWidget* textView(const std::string& text) {
    std::unique_ptr<QLabel> label(textLabel(text));
    if (fitsIntoLabel(*label)) return label.release();
    auto* view = new QPlainTextEdit(label->text());
    view->setReadOnly(true);
    view->setFrameShape(QFrame::NoFrame);
    view->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    view->viewport()->setAutoFillBackground(false);
    view->document()->setDocumentMargin(0);
    view->setMinimumWidth(label->minimumWidth());
    view->setFixedHeight(mostLines * label->fontMetrics().lineSpacing());
    return view;
}

/// The text may be that of the menu's entry, where three dots tell that a dialogue follows.
std::string asHeading(std::string text) {
    constexpr std::string_view dots = "…";
    if (text.ends_with(dots)) text.erase(text.size() - dots.size());
    return text;
}

/// On one line, not too long for a button, and no letter of it a short cut.
QString buttonTitle(const std::string& title, const QFontMetrics& metrics) {
    QString text = cut(title, longestTitle).simplified();
    text =
        metrics.elidedText(text, Qt::ElideRight, metrics.averageCharWidth() * buttonWidthInLetters);
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

AlertDialog::AlertDialog(const Alert& alert, const QString& title, const QPixmap& icon,
                         Accessory* accessory)
    : QDialog(nullptr, Qt::Dialog | Qt::WindowStaysOnTopHint | TitleBar::windowFlags),
      buttonCount(alert.buttons.size()),
      closing(alert.closing),
      control(accessory) {
    setModal(true);
    setWindowTitle(title);
    setWindowIcon(QIcon(icon));
    auto* window = new QVBoxLayout(this);
    window->setContentsMargins(TitleBar::border, TitleBar::border, TitleBar::border,
                               TitleBar::border);
    window->setSpacing(0);
    window->setSizeConstraint(QLayout::SetFixedSize);
    window->addWidget(new TitleBar(*this));
    auto* row = new QHBoxLayout;
    window->addLayout(row);
    row->setContentsMargins(margin, margin, margin, margin);
    row->setSpacing(margin);
    if (!icon.isNull()) {
        auto* picture = new QLabel;
        picture->setPixmap(icon);
        row->addWidget(picture, 0, Qt::AlignTop);
    }
    auto* column = new QVBoxLayout;
    column->setSpacing(margin);
    column->addWidget(makeTexts(alert));
    if (accessory != nullptr) column->addWidget(accessory);
    column->addWidget(makeButtons(alert));
    row->addLayout(column);
    // Only now does it belong to this window; an accessory would come first otherwise.
    if (defaultButton != nullptr) defaultButton->setFocus();
}

QWidget* AlertDialog::makeTexts(const Alert& alert) {
    auto* texts = new QWidget;
    auto* column = new QVBoxLayout(texts);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    auto* message = textLabel(asHeading(alert.message));
    QFont font = message->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * messageScale);
    message->setFont(font);
    column->addWidget(message);
    if (!alert.informative.empty()) column->addWidget(textView(alert.informative));
    column->addStretch();
    return texts;
}

QWidget* AlertDialog::makeButtons(const Alert& alert) {
    auto* buttons = new QWidget;
    auto* row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addStretch();
    for (std::size_t index = 0; index < alert.buttons.size(); ++index) {
        auto* button = new DialogButton(buttonTitle(alert.buttons[index], fontMetrics()));
        // Enter answers with the default button wherever the focus is.
        button->setAutoDefault(false);
        if (index == 0) {
            button->setDefault(true);
            defaultButton = button;
        }
        connect(button, &QPushButton::clicked, this, [this, index] { answerWith(index); });
        row->addWidget(button);
    }
    return buttons;
}

void AlertDialog::answerWith(std::size_t button) {
    if (control != nullptr && !control->mayBeLeft()) return;
    answered = button;
    done(Accepted);
}

void AlertDialog::reject() {
    const bool isOnlyOne = buttonCount == 1;
    if (isOnlyOne || closing == Alert::Closing::defaultButton)
        answerWith(0);
    else if (closing == Alert::Closing::lastButton)
        answerWith(buttonCount - 1);
}

void AlertDialog::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    TitleBar::paintBorder(*this);
}

void AlertDialog::showEvent(QShowEvent* event) {
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (screen == nullptr) screen = QGuiApplication::primaryScreen();
    if (screen != nullptr) {
        const QSize size = sizeHint();
        QRect place(QPoint(), size);
        place.moveCenter(screen->availableGeometry().center());
        move(place.topLeft());
    }
    QDialog::showEvent(event);
    raise();
    activateWindow();
}

} // namespace platform::qt
