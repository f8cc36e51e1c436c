#include "platform/qt/loop/QtApplication.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace platform::qt {

namespace {

constexpr std::chrono::milliseconds moment{250};

} // namespace

QtApplication::QtApplication() {
    QCoreApplication::instance()->installEventFilter(this);
}

QtApplication::EventScope::EventScope(QtApplication& owner, CurrentEvent event)
    : application(owner), before(std::exchange(owner.current, event)) {}

QtApplication::EventScope::~EventScope() {
    application.current = before;
}

void QtApplication::activateIgnoringOtherApps() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowType() == Qt::Popup) continue;
        window->raise();
        window->activateWindow();
    }
}

bool QtApplication::restoreMinimised() {
    bool isAny = false;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || !window->isMinimized()) continue;
        isAny = true;
        window->showNormal();
        window->raise();
        window->activateWindow();
    }
    return isAny;
}

void QtApplication::terminate() {
    QCoreApplication::postEvent(QCoreApplication::instance(), new QEvent(QEvent::Quit));
}

void QtApplication::exit(int status) {
    // Each one is taken out before it runs: an undo that itself ends the process goes on here.
    while (!undoOperations.empty()) {
        const auto undo = std::move(undoOperations.back());
        undoOperations.pop_back();
        undo();
    }
    (void)std::fflush(nullptr);
    std::_Exit(status);
}

void QtApplication::afterEvent(std::function<void()> operation) {
    QMetaObject::invokeMethod(this, std::move(operation), Qt::QueuedConnection);
}

void QtApplication::afterMoment(std::function<void()> operation) {
    QTimer::singleShot(moment, this, std::move(operation));
}

const QWidget* QtApplication::closingPopup = nullptr;

namespace {

// Not the toolkit's own event of hiding, which it sends when the window has gone.
QEvent::Type closes() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

} // namespace

QtApplication::Closing::Closing(QWidget& popup) {
    closingPopup = &popup;
    QEvent event(closes());
    QCoreApplication::sendEvent(&popup, &event);
}

QtApplication::Closing::~Closing() {
    closingPopup = nullptr;
}

bool QtApplication::hasActiveWindow() {
    const QWidget* popup = QApplication::activePopupWidget();
    return QGuiApplication::focusWindow() != nullptr || (popup && popup != closingPopup);
}

void QtApplication::onActiveWindowChange(std::function<void()> changed) {
    activeWindowChanged = std::move(changed);
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
                     [this] { activeWindowChanged(); });
}

void QtApplication::endSession() {
    if (const auto handler = std::exchange(quitRequested, nullptr)) handler();
    exit(0);
}

bool QtApplication::eventFilter(QObject* watched, QEvent* event) {
    // Left to itself the toolkit would close an open alert, which would then look answered.
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) endSession();
    if (event->type() == closes() && activeWindowChanged) activeWindowChanged();
    // Of a menu, which takes the keyboard without being the window that has it. It is told before
    // the menu is the active one.
    const bool comesOrGoes = event->type() == QEvent::Show || event->type() == QEvent::Hide;
    const auto* widget = comesOrGoes ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget && widget->windowType() == Qt::Popup && activeWindowChanged)
        afterEvent(activeWindowChanged);
    return QObject::eventFilter(watched, event);
}

} // namespace platform::qt
