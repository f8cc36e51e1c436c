#pragma once

#include "platform/Application.h"

#include <QObject>
#include <functional>
#include <string>
#include <vector>

namespace platform::qt {

/// The process, once there is a QApplication.
class QtApplication final : public QObject, public Application {
  public:
    QtApplication();

    /// Outside a scope no event is being handled, which reads as a move of the mouse.
    CurrentEvent currentEvent() const override { return current; }

    /// As long as it lives, `event` is the current one.
    class EventScope {
      public:
        EventScope(QtApplication& owner, CurrentEvent event);
        ~EventScope();
        EventScope(const EventScope&) = delete;
        EventScope& operator=(const EventScope&) = delete;

      private:
        QtApplication& application;
        CurrentEvent before;
    };

    /// Raises the windows that are shown; an alert that opens later comes to the front itself.
    void activateIgnoringOtherApps() override;

    /// Shows and activates the windows that the user has minimised; false where there are none.
    static bool restoreMinimised();

    /// The request goes to the loop like one from the session.
    void terminate() override;

    /// Runs the undo operations and leaves without unwinding: an alert's or a menu's own loop may
    /// be on the stack, and no destructor of the caller's can be waited for.
    [[noreturn]] void exit(int status) override;

    /// What an end has to do first, such as saving and showing the cursor again. The operations
    /// run in the reverse order, each once.
    void atExit(std::function<void()> undo) { undoOperations.push_back(std::move(undo)); }

    /// What a request to quit from the session leads to; without it, or should it return, the
    /// process exits with 0.
    void onQuitRequest(std::function<void()> handler) { quitRequested = std::move(handler); }

    /// Calls `operation` when the current event has been handled, also while a modal alert runs.
    void afterEvent(std::function<void()> operation);

    /// The same a quarter of a second later, which is as long as another program is given for what
    /// it is doing with a file.
    void afterMoment(std::function<void()> operation);

    /// Whether one of the program's own toolkit windows has the keyboard, an open menu included,
    /// which takes it without being an active window. No round trip.
    static bool hasActiveWindow();

    /// Calls `changed` whenever the answer of `hasActiveWindow` may have changed. One handler.
    void onActiveWindowChange(std::function<void()> changed);

    /// As long as one lives the popup counts as closed: it is about to be. What the closing leads
    /// to is done before anybody can see the popup gone.
    class Closing {
      public:
        explicit Closing(QWidget& popup);
        ~Closing();
        Closing(const Closing&) = delete;
        Closing& operator=(const Closing&) = delete;
    };

    /// The session, or the run loop, wants the process to end.
    [[noreturn]] void endSession();

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    CurrentEvent current;
    std::vector<std::function<void()>> undoOperations;
    std::function<void()> quitRequested;
    std::function<void()> activeWindowChanged;
    static const QWidget* closingPopup;
};

} // namespace platform::qt
