#pragma once

#include "Models.h"
#include "platform/qt/loop/QtApplication.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "platform/qt/tray/QtStatusItem.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/eye/Eye.h"

#include <QObject>
#include <QPoint>
#include <QRect>
#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>

namespace menutests {

/// Made by main before the toolkit starts on it: two monitors and a window manager.
support::PrivateDesktop& desktop();

inline constexpr support::Area leftMonitor{0, 0, 1280, 800};
inline constexpr support::Area rightMonitor{1280, 16, 1024, 768};

/// A status item with a menu of the test's, and a user. The user's part runs in a thread of its
/// own, since an open menu does not return; it sees the toolkit's widgets through `ask`.
class MenuTest : public testing::Test {
  protected:
    MenuTest();
    explicit MenuTest(const platform::qt::Pictures* icons, platform::qt::TrayIcon* tray = nullptr);

    /// Clicks the item, has the user act while the menu is open, and closes what is still open.
    void whileOpen(const std::function<void()>& user, int buttonNumber = 0);

    /// Calls `question` in the main thread and returns its result. For the user's part.
    template <class Result>
    static Result ask(const std::function<Result()>& question) {
        Result result{};
        inMainThread([&] { result = question(); });
        return result;
    }

    static int openMenus();
    /// Menus that the server shows: only over these is the pointer followed.
    int windowsOnScreen() const;
    /// Where an entry, or a widget of that class, is on the screen. Empty when it is not shown.
    static QRect entry(const std::string& text);
    static QRect widget(const std::string& className, int number = 0);
    static bool isOpen(const QRect& where) { return !where.isEmpty(); }

    static void inMainThread(const std::function<void()>& operation);

    bool waitUntil(const std::function<bool()>& seen) { return eye.waitUntilSeen(seen); }
    /// Moves the cursor and waits until the toolkit has had the event: it takes moves together.
    void reach(QPoint at);
    void hover(const QRect& where);
    void click(const QRect& where);
    void openSubmenuOf(const std::string& text);

    class MoveWatch final : public QObject {
      public:
        bool waitFor(QPoint at);

      private:
        bool eventFilter(QObject* watched, QEvent* event) override;

        std::mutex guard;
        std::condition_variable changed;
        QPoint last;
    };

    MoveWatch moves;
    platform::qt::QtApplication application;
    platform::qt::QtRunLoop loop;
    platform::qt::QtStatusItem item;
    Menu menu;
    Recorder target;
    support::Eye eye;
    support::Hand hand;
    support::Spot start{400, 300}; ///< where the cursor is when the menu opens
};

} // namespace menutests
