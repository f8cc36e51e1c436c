#include "platform/qt/QtApplication.h"

#include <QEvent>
#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace platform::qt {

QtApplication::QtApplication() {
    QCoreApplication::instance()->installEventFilter(this);
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

bool QtApplication::hasActiveWindow() {
    return QGuiApplication::focusWindow() != nullptr;
}

void QtApplication::endSession() {
    if (const auto handler = std::exchange(quitRequested, nullptr)) handler();
    exit(0);
}

bool QtApplication::eventFilter(QObject* watched, QEvent* event) {
    // Left to itself the toolkit would close an open alert, which would then look answered.
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance()) endSession();
    return QObject::eventFilter(watched, event);
}

} // namespace platform::qt
