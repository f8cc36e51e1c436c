#include "platform/qt/info/LinkLabel.h"

#include "platform/qt/alerts/FocusRing.h"

#include <QEvent>
#include <QFocusEvent>
#include <QTextDocument>
#include <QTextOption>

namespace platform::qt {

LinkLabel::LinkLabel(AttributedText text, QWidget* parent)
    : QLabel(parent), content(std::move(text)) {
    setWordWrap(true);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
    setTextInteractionFlags(content.link.empty()
                                ? Qt::TextSelectableByMouse
                                : Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    refresh();
}

// With these flags the label lays its text out in a document too.
double LinkLabel::heightOf(const QString& text, const QFont& font, double width) {
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(font);
    QTextOption option = document.defaultTextOption();
    option.setWrapMode(QTextOption::WordWrap);
    document.setDefaultTextOption(option);
    document.setPlainText(text);
    document.setTextWidth(width);
    return document.size().height();
}

void LinkLabel::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) refresh();
    QLabel::changeEvent(event);
}

// The toolkit wants a second key for the link in it.
void LinkLabel::focusInEvent(QFocusEvent* event) {
    QLabel::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
        focusNextPrevChild(event->reason() == Qt::TabFocusReason);
}

// The toolkit's own mark is dotted and lies halfway outside.
void LinkLabel::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!content.link.empty()) paintFocusRing(*this, 0);
}

/// The colour of a link is part of its text. Blue is that of links here, which can be read on a
/// dark window too.
void LinkLabel::refresh() {
    const QString text = QString::fromStdString(content.text);
    if (content.link.empty()) {
        setTextFormat(Qt::PlainText);
        setText(text);
        return;
    }
    const auto role = content.colour == TextColour::blue ? QPalette::Link : QPalette::WindowText;
    setTextFormat(Qt::RichText);
    setText(QStringLiteral("<a href=\"%1\" style=\"color:%2;text-decoration:%3\">%4</a>")
                .arg(QString::fromStdString(content.link).toHtmlEscaped(),
                     palette().color(role).name(),
                     content.underlined ? QStringLiteral("underline") : QStringLiteral("none"),
                     text.toHtmlEscaped()));
}

} // namespace platform::qt
