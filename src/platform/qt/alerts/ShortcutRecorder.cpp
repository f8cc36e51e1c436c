#include "platform/qt/alerts/ShortcutRecorder.h"

#include "platform/qt/alerts/ShortcutField.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>

namespace platform::qt {

namespace {

constexpr int gap = 6;
constexpr double hintShare = 0.65;

// Virtual key codes.
constexpr std::uint16_t escapeKey = 53, backspaceKey = 51, deleteKey = 117;
constexpr std::array<std::uint16_t, 20> functionKeys = {
    122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90};

bool isFunctionKey(std::uint16_t keyCode) {
    return std::ranges::find(functionKeys, keyCode) != functionKeys.end();
}

} // namespace

ShortcutRecorder::ShortcutRecorder(Model what, QWidget* parent)
    : QWidget(parent), model(std::move(what)) {
    field = new ShortcutField(
        QString::fromStdString(model.texts.clear), [this] { start(); },
        [this] {
            stop();
            store(std::nullopt);
        },
        this);
    words = new QLabel(this);
    words->setTextFormat(Qt::PlainText);
    words->setWordWrap(true);
    // Its place is kept, or the window would jump with each word.
    words->setMinimumHeight(words->fontMetrics().height());
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addWidget(field);
    column->addWidget(words);
    setFocusProxy(field);
    refresh();
}

ShortcutRecorder::~ShortcutRecorder() {
    stop();
}

void ShortcutRecorder::refreshAll() {
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* recorder = dynamic_cast<ShortcutRecorder*>(widget)) recorder->refresh();
}

/// Shows what is stored, and whether it is of any use.
void ShortcutRecorder::refresh() {
    const bool enabled = model.enabled();
    if (!enabled) stop();
    field->setEnabled(enabled);
    if (recording) return;
    const auto shortcut = model.stored();
    field->show(
        {.text = QString::fromStdString(shortcut ? model.label(*shortcut) : model.texts.empty),
         .faint = !shortcut,
         .clearable = shortcut.has_value()});
    say(shortcut && enabled ? model.refusal(*shortcut) : std::string(), true);
}

void ShortcutRecorder::start() {
    if (recording || !model.enabled()) return;
    recording = model.startRecording([this](std::optional<std::uint16_t> keyCode,
                                            std::uint32_t flags) { pressed(keyCode, flags); },
                                     [this] { cancel(); });
    if (!recording) return;
    field->show({.text = QString::fromStdString(model.texts.recording), .recording = true});
    say(model.texts.hint, false);
    // The toolkit takes the window for left as soon as another connection has the keyboard, so only
    // clicks are of any use here.
    qApp->installEventFilter(this);
}

void ShortcutRecorder::stop() {
    if (!std::exchange(recording, false)) return;
    qApp->removeEventFilter(this);
    model.stopRecording();
}

void ShortcutRecorder::cancel() {
    stop();
    refresh();
}

void ShortcutRecorder::pressed(std::optional<std::uint16_t> keyCode, std::uint32_t flags) {
    if (!keyCode) {
        const std::string held = model.modifiersLabel(flags);
        field->show({.text = QString::fromStdString(held.empty() ? model.texts.recording : held),
                     .recording = true});
        return;
    }
    if (flags == 0 && *keyCode == escapeKey) {
        cancel();
    } else if (flags == 0 && (*keyCode == backspaceKey || *keyCode == deleteKey)) {
        stop();
        store(std::nullopt);
    } else if (flags == 0 && !isFunctionKey(*keyCode)) {
        say(model.texts.modifiers, true);
    } else {
        stop();
        store(Shortcut{*keyCode, flags});
    }
}

void ShortcutRecorder::store(std::optional<Shortcut> shortcut) {
    model.store(shortcut);
    refresh();
}

void ShortcutRecorder::say(const std::string& text, bool isTrouble) {
    words->setText(QString::fromStdString(text));
    QPalette colours = palette();
    if (!isTrouble) {
        QColor faint = colours.color(QPalette::WindowText);
        faint.setAlphaF(faint.alphaF() * hintShare);
        colours.setColor(QPalette::WindowText, faint);
    }
    words->setPalette(colours);
}

bool ShortcutRecorder::eventFilter(QObject* watched, QEvent* event) {
    const auto* widget = qobject_cast<QWidget*>(watched);
    const bool clickElsewhere = event->type() == QEvent::MouseButtonPress && widget != nullptr &&
                                widget != field && !field->isAncestorOf(widget);
    if (recording && clickElsewhere) cancel();
    return QWidget::eventFilter(watched, event);
}

void ShortcutRecorder::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refresh();
}

void ShortcutRecorder::hideEvent(QHideEvent* event) {
    stop();
    QWidget::hideEvent(event);
}

} // namespace platform::qt
