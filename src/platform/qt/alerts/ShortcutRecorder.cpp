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

ShortcutRecorder::ShortcutRecorder(Texts wording, Keys where, Settings& storage,
                                   RecordableHotKeys& keyboard, QWidget* parent)
    : QWidget(parent),
      texts(std::move(wording)),
      keys(std::move(where)),
      settings(storage),
      hotKeys(keyboard) {
    field = new ShortcutField(
        QString::fromStdString(texts.clear), [this] { start(); },
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
    const bool enabled = settings.boolForKey(keys.enabled);
    if (!enabled) stop();
    field->setEnabled(enabled);
    if (recording) return;
    const auto shortcut = Shortcut::fromValue(settings.object(keys.shortcut));
    const auto shown = QString::fromStdString(shortcut ? label(*shortcut) : texts.empty);
    field->show({.text = shown, .faint = !shortcut, .clearable = shortcut.has_value()});
    const bool inVain = shortcut && enabled && hotKeys.isTaken(*shortcut);
    say(inVain ? QString::fromStdString(texts.taken).replace("%@", shown) : QString(), true);
}

std::string ShortcutRecorder::label(const Shortcut& shortcut) const {
    return hotKeys.modifierFlagsString(shortcut) + hotKeys.keyCodeString(shortcut);
}

void ShortcutRecorder::start() {
    if (recording || !settings.boolForKey(keys.enabled)) return;
    recording = hotKeys.startRecording([this](const auto& stroke) { pressed(stroke); },
                                       [this] { cancel(); });
    if (!recording) return;
    field->show({.text = QString::fromStdString(texts.recording), .recording = true});
    say(QString::fromStdString(texts.hint), false);
    // The toolkit takes the window for left as soon as another connection has the keyboard, so only
    // clicks are of any use here.
    qApp->installEventFilter(this);
}

void ShortcutRecorder::stop() {
    if (!std::exchange(recording, false)) return;
    qApp->removeEventFilter(this);
    hotKeys.stopRecording();
}

void ShortcutRecorder::cancel() {
    stop();
    refresh();
}

void ShortcutRecorder::pressed(const RecordableHotKeys::Stroke& stroke) {
    const auto [keyCode, flags] = stroke;
    if (!keyCode) {
        const std::string held = hotKeys.modifierFlagsString({0, flags});
        field->show({.text = QString::fromStdString(held.empty() ? texts.recording : held),
                     .recording = true});
        return;
    }
    if (flags == 0 && *keyCode == escapeKey) {
        cancel();
    } else if (flags == 0 && (*keyCode == backspaceKey || *keyCode == deleteKey)) {
        stop();
        store(std::nullopt);
    } else if (flags == 0 && !isFunctionKey(*keyCode)) {
        say(QString::fromStdString(texts.modifiers), true);
    } else {
        stop();
        store(Shortcut{*keyCode, flags});
    }
}

void ShortcutRecorder::store(std::optional<Shortcut> shortcut) {
    if (shortcut)
        settings.set(keys.shortcut, shortcut->toValue());
    else
        settings.remove(keys.shortcut);
    settings.synchronize();
    refresh();
}

void ShortcutRecorder::say(const QString& text, bool isTrouble) {
    words->setText(text);
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
