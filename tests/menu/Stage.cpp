#include "Stage.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QWidget>
#include <atomic>
#include <thread>

namespace menutests {

namespace {

const char* nameOf(platform::EventType type) {
    using platform::EventType;
    switch (type) {
    case EventType::leftMouseDown:
        return "leftDown";
    case EventType::leftMouseUp:
        return "leftUp";
    case EventType::leftMouseDragged:
        return "leftDragged";
    case EventType::rightMouseDown:
        return "rightDown";
    case EventType::otherMouseDown:
        return "otherDown";
    case EventType::mouseMoved:
        return "none";
    default:
        return "other";
    }
}

std::vector<QMenu*> shownMenus() {
    std::vector<QMenu*> menus;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* menu = dynamic_cast<QMenu*>(window); menu != nullptr && menu->isVisible())
            menus.push_back(menu);
    return menus;
}

} // namespace

MenuTest::MenuTest() : MenuTest(nullptr) {}

MenuTest::MenuTest(const platform::qt::Pictures* icons, platform::qt::TrayIcon* tray)
    : item(loop, application, icons, tray), eye(desktop().display()), hand(desktop().display()) {
    target.event = [this] {
        const auto current = application.currentEvent();
        return std::string(nameOf(current.type)) + "/" + std::to_string(current.buttonNumber);
    };
    qApp->installEventFilter(&moves);
    item.create(menu, target);
}

void MenuTest::whileOpen(const std::function<void()>& user, int buttonNumber) {
    hand.moveTo(start.x, start.y);
    std::atomic<bool> ended = false;
    std::thread thread([&] {
        if (waitUntil([this] { return windowsOnScreen() > 0 && openMenus() > 0; }))
            user();
        else
            ADD_FAILURE() << "no menu opened";
        ended = true;
        QMetaObject::invokeMethod(qApp, [] {
            for (QMenu* open : shownMenus())
                open->close();
        });
    });
    item.clicked(buttonNumber);
    while (!ended)
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    thread.join();
    QApplication::processEvents();
}

void MenuTest::inMainThread(const std::function<void()>& operation) {
    QMetaObject::invokeMethod(qApp, operation, Qt::BlockingQueuedConnection);
}

int MenuTest::openMenus() {
    return ask<int>([] { return static_cast<int>(shownMenus().size()); });
}

// The toolkit keeps a small window of its own.
int MenuTest::windowsOnScreen() const {
    int count = 0;
    for (const auto& window : eye.windows())
        if (window.mapped && window.overrideRedirect && !window.inputOnly && window.area.width > 60)
            ++count;
    return count;
}

QRect MenuTest::entry(const std::string& text) {
    return ask<QRect>([&] {
        for (QMenu* shown : shownMenus())
            for (QAction* action : shown->actions())
                if (action->text() == QString::fromStdString(text)) {
                    const QRect at = shown->actionGeometry(action);
                    return QRect(shown->mapToGlobal(at.topLeft()), at.size());
                }
        return QRect();
    });
}

QRect MenuTest::widget(const std::string& className, int number) {
    return ask<QRect>([&] {
        int left = number;
        for (QMenu* shown : shownMenus())
            for (QWidget* child : shown->findChildren<QWidget*>())
                if (child->isVisible() && child->inherits(className.c_str()) && left-- == 0)
                    return QRect(child->mapToGlobal(QPoint()), child->size());
        return QRect();
    });
}

bool MenuTest::MoveWatch::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::MouseMove) {
        const std::lock_guard lock(guard);
        last = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        changed.notify_all();
    }
    return false;
}

bool MenuTest::MoveWatch::waitFor(QPoint at) {
    std::unique_lock lock(guard);
    return changed.wait_for(lock, support::generous, [&] { return last == at; });
}

void MenuTest::reach(QPoint at) {
    hand.moveTo(at.x(), at.y());
    EXPECT_TRUE(moves.waitFor(at)) << at.x() << "," << at.y();
}

// A menu takes the first moves, from Qt 6.8 on six of them, for a slip of the hand that opened it.
void MenuTest::hover(const QRect& where) {
    constexpr int steps = 8;
    for (int left = steps; left >= 0; --left)
        reach(where.center() - QPoint(left, 0));
}

void MenuTest::click(const QRect& where) {
    hover(where);
    hand.click();
}

void MenuTest::openSubmenuOf(const std::string& text) {
    const int before = openMenus();
    hover(entry(text));
    EXPECT_TRUE(waitUntil([&] { return openMenus() > before && windowsOnScreen() > before; }))
        << "no submenu of " << text;
}

} // namespace menutests
