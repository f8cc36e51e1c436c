#include "platform/qt/alerts/ShortcutRecorder.h"

#include "platform/qt/alerts/ShortcutField.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>
#include <chrono>
#include <utility>

namespace platform::qt {

namespace {

constexpr int gap = 6;
constexpr double hintShare = 0.65;
constexpr int linesOfWords = 2;
constexpr std::chrono::milliseconds moment{100};
constexpr int mostAttempts = 20;

// Virtual key codes.
constexpr std::uint16_t escapeKey = 53, backspaceKey = 51, deleteKey = 117;

std::string about(const std::string& sentence, const std::string& combination) {
    return QString::fromStdString(sentence)
        .replace("%@", QString::fromStdString(combination))
        .toStdString();
}

} // namespace

ShortcutRecorder::ShortcutRecorder(Texts wording, Keys where, Settings& storage,
                                   RecordableHotKeys& keyboard, Needed isNeeded, QWidget* parent)
    : Accessory(parent),
      texts(std::move(wording)),
      keys(std::move(where)),
      settings(storage),
      hotKeys(keyboard),
      needed(std::move(isNeeded)) {
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
    words->setMinimumHeight(linesOfWords * words->fontMetrics().lineSpacing());
    words->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    column->addWidget(field);
    column->addWidget(words);
    setFocusProxy(field);
    waiting.setSingleShot(true);
    waiting.setInterval(moment);
    connect(&waiting, &QTimer::timeout, this, [this] { std::exchange(tryAgain, {})(); });
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
    const bool enabled = isEnabled();
    if (!enabled) stop();
    field->setEnabled(enabled);
    if (recording) return;
    const auto shortcut = Shortcut::fromValue(settings.object(keys.shortcut));
    const std::string shown = shortcut ? label(*shortcut) : texts.empty;
    field->show({.text = QString::fromStdString(shown),
                 .faint = !shortcut,
                 .clearable = shortcut.has_value()});
    if (isMissing())
        say(enabled ? texts.needed : texts.disabled, true);
    else
        say(shortcut && enabled && hotKeys.isTaken(*shortcut) ? about(texts.taken, shown) : "",
            true);
}

/// As the program tells it: one without a modifier is none.
bool ShortcutRecorder::isMissing() const {
    if (!needed()) return false;
    const auto shortcut = Shortcut::fromValue(settings.object(keys.shortcut));
    return !isEnabled() || !shortcut || (shortcut->modifierFlags & Shortcut::modifiers) == 0;
}

bool ShortcutRecorder::isEnabled() const {
    return settings.boolForKey(keys.enabled);
}

bool ShortcutRecorder::mayBeLeft() {
    if (!isMissing()) return true;
    cancel();
    startWhenFree(mostAttempts, texts.needed);
    return false;
}

/// Where a key closed the window, the window manager has the keyboard until that is up.
void ShortcutRecorder::startWhenFree(int attempts, const std::string& sentence) {
    start();
    if (recording) {
        say(sentence, true);
    } else if (isEnabled() && attempts > 1) {
        say(sentence, true);
        tryAgain = [this, attempts, &sentence] { startWhenFree(attempts - 1, sentence); };
        waiting.start();
    }
}

std::string ShortcutRecorder::label(const Shortcut& shortcut) const {
    return hotKeys.modifierFlagsString(shortcut) + hotKeys.keyCodeString(shortcut);
}

void ShortcutRecorder::start() {
    waiting.stop();
    if (recording || !isEnabled()) return;
    field->setFocus();
    recording =
        hotKeys.startRecording([this](const auto& stroke) { pressed(stroke); }, [this] { left(); });
    if (!recording) {
        say(texts.keyboard, true);
        return;
    }
    field->show({.text = QString::fromStdString(texts.recording), .recording = true});
    say(texts.hint, false);
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
    waiting.stop();
    stop();
    refresh();
}

/// A window manager that shows a window may move the focus away and back again while it does so.
void ShortcutRecorder::left() {
    cancel();
    tryAgain = [this] {
        if (window()->isActiveWindow()) start();
    };
    waiting.start();
}

void ShortcutRecorder::pressed(const RecordableHotKeys::Stroke& stroke) {
    const std::uint32_t flags = stroke.modifierFlags;
    if (stroke.unknownKey) {
        say(texts.unknownKey, true);
        return;
    }
    if (!stroke.keyCode) {
        const std::string held = hotKeys.modifierFlagsString({0, flags});
        field->show({.text = QString::fromStdString(held.empty() ? texts.recording : held),
                     .recording = true});
        return;
    }
    const Shortcut shortcut{*stroke.keyCode, flags};
    if (flags == 0 && shortcut.keyCode == escapeKey) {
        cancel();
    } else if (flags == 0 && (shortcut.keyCode == backspaceKey || shortcut.keyCode == deleteKey)) {
        stop();
        store(std::nullopt);
    } else if (const std::string* objection = objectionTo(shortcut)) {
        say(about(*objection, label(shortcut)), true);
    } else {
        stop();
        store(shortcut);
    }
}

/// Null for a combination that can be used.
const std::string* ShortcutRecorder::objectionTo(const Shortcut& shortcut) {
    using Obstacle = RecordableHotKeys::Obstacle;
    if (shortcut.modifierFlags == 0) return &texts.modifiers;
    if (shortcut.isTyping()) return &texts.shift;
    switch (hotKeys.obstacleTo(shortcut)) {
    case Obstacle::fixed:
        return &texts.fixed;
    case Obstacle::taken:
        return &texts.taken;
    case Obstacle::none:
        break;
    }
    return nullptr;
}

void ShortcutRecorder::store(std::optional<Shortcut> shortcut) {
    if (shortcut)
        settings.set(keys.shortcut, shortcut->toValue());
    else
        settings.remove(keys.shortcut);
    settings.synchronize();
    refresh();
}

void ShortcutRecorder::say(const std::string& text, bool isTrouble) {
    words->setText(QString::fromStdString(text));
    field->setAccessibleDescription(words->text());
    QPalette colours = palette();
    if (!isTrouble) {
        QColor faint = colours.color(QPalette::WindowText);
        faint.setAlphaF(faint.alphaF() * hintShare);
        colours.setColor(QPalette::WindowText, faint);
    }
    words->setPalette(colours);
}

bool ShortcutRecorder::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window() && event->type() == QEvent::WindowActivate && isMissing() &&
        !std::exchange(began, true))
        startWhenFree(mostAttempts, texts.hint);
    const auto* widget = qobject_cast<QWidget*>(watched);
    const bool clickElsewhere = event->type() == QEvent::MouseButtonPress && widget != nullptr &&
                                widget != field && !field->isAncestorOf(widget);
    if (recording && clickElsewhere) cancel();
    return QWidget::eventFilter(watched, event);
}

// Not before the window has the keyboard: the recording ends when that goes from one to another.
void ShortcutRecorder::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    window()->installEventFilter(this);
    refresh();
}

void ShortcutRecorder::hideEvent(QHideEvent* event) {
    waiting.stop();
    stop();
    QWidget::hideEvent(event);
}

} // namespace platform::qt
