#include "menu/Models.h"
#include "platform/qt/loop/QtApplication.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/pictures/Pictures.h"
#include "platform/qt/tray/QtStatusItem.h"
#include "testing/KeptLog.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <QApplication>
#include <QMenu>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

// The time from a click on the tray's item to the first picture of the menu: the target is asked,
// the menu is made, shown and painted. The server has the picture when the clock stops.

namespace {

using Clock = std::chrono::steady_clock;
using menutests::addEntry;
using menutests::addSeparator;

constexpr int openings = 100;
constexpr double limit = 50; // ms

/// As large as the largest of the products' menus.
void build(platform::Menu& menu, std::array<platform::CheckBox, 8>& boxes) {
    menu.items.clear();
    auto& first = addEntry(menu, "Switch Off", "toggle");
    first.image = "OnOff";
    first.imageIsTemplate = true;
    addEntry(menu, "Shortcut", "shortcut");
    addSeparator(menu);
    for (int row = 0; row < 6; ++row)
        addEntry(menu, "An entry with a text of usual length", "toggle").state = row % 2;
    addEntry(menu, "Slider").submenu = menutests::sliderMenu();
    addEntry(menu, "Another slider", "both").submenu = menutests::sliderMenu();
    addEntry(menu, "Borders").submenu = menutests::boundsMenu(boxes);
    addSeparator(menu);
    for (int row = 0; row < 12; ++row)
        addEntry(menu, "A further product with its name", "open").toolTip = "What it does";
    addEntry(menu, "Quit", "quit");
}

/// Sees when the menu has been painted and the server has taken the picture.
class FirstPicture final : public QObject {
  public:
    explicit FirstPicture(const support::XConnection& connection) : server(connection) {}

    Clock::time_point seen;
    bool waiting = false;

  private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* menu = dynamic_cast<QMenu*>(watched);
        if (menu == nullptr || event->type() != QEvent::Paint || !waiting) return false;
        waiting = false;
        // The painting is flushed when this event has been handled.
        QMetaObject::invokeMethod(
            menu,
            [this, menu] {
                QGuiApplication::sync();
                server.sync();
                seen = Clock::now();
                menu->close();
            },
            Qt::QueuedConnection);
        return false;
    }

    const support::XConnection& server;
};

} // namespace

int main(int argc, char** argv) {
    support::PrivateDesktop desktop("1920x1080+0+0,1280x1024+1920+56");
    desktop.startWindowManager("openbox");
    for (const auto& [name, value] : desktop.environment())
        ::setenv(name.c_str(), value.c_str(), 1);
    ::setenv("QT_XCB_GL_INTEGRATION", "none", 1);
    const QApplication toolkit(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    platform::qt::QtApplication application;
    platform::qt::QtRunLoop loop;
    testing_support::KeptLog log;
    const platform::qt::Pictures pictures({IMAGES}, log);
    platform::qt::QtStatusItem item(loop, application, &pictures);
    platform::Menu menu;
    std::array<platform::CheckBox, 8> boxes;
    menutests::Recorder target;
    target.onOpen = [&](platform::Menu& opening) { build(opening, boxes); };
    item.create(menu, target);

    const support::XConnection server(desktop.display());
    FirstPicture picture(server);
    QApplication::instance()->installEventFilter(&picture);
    std::vector<double> milliseconds;
    for (int opening = 0; opening < openings; ++opening) {
        picture.waiting = true;
        const auto click = Clock::now();
        item.clicked(0);
        milliseconds.push_back(
            std::chrono::duration<double, std::milli>(picture.seen - click).count());
        QApplication::processEvents();
    }
    const double first = milliseconds.front();
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("menu, click to first picture, %d openings: first %.1f ms, median %.1f ms, "
                "longest %.1f ms (limit %.0f ms)\n",
                openings, first, milliseconds[openings / 2], milliseconds.back(), limit);
    return milliseconds.back() <= limit ? 0 : 1;
}
