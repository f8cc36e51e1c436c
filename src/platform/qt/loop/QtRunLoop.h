#pragma once

#include "platform/RunLoop.h"

#include <QTimer>
#include <chrono>
#include <map>
#include <string>

class QEventLoop;

namespace platform::qt {

/// The toolkit's loop. One precise timer stands for all of them, so that what is due together
/// fires in order, and is stopped as long as an alert or a menu is open. A repeating timer keeps
/// to its grid and makes up for several missed firings with one; so does one that repeats faster
/// than a monitor shows anything.
class QtRunLoop final : public RunLoop {
  public:
    QtRunLoop();

    TimerId schedule(double seconds, bool repeats, std::string_view selector,
                     std::function<void()> fire) override;
    void invalidate(TimerId timer) override;
    bool isRunning(TimerId timer) const override;
    double now() const override;
    void run() override;
    void performOnMainThread(std::function<void()> work, bool waitUntilDone) override;
    void detachNewThread(std::function<void()> work) override;

    /// Ends the innermost `run`. Without one nothing happens.
    void stop();

    /// Opened by whatever runs a modal loop of its own: no timer fires as long as one lives.
    class ModalScope {
      public:
        explicit ModalScope(QtRunLoop& owner);
        ~ModalScope();
        ModalScope(const ModalScope&) = delete;
        ModalScope& operator=(const ModalScope&) = delete;

      private:
        QtRunLoop& loop;
    };

  private:
    using Clock = std::chrono::steady_clock;

    struct Timer {
        std::string selector;
        Clock::time_point due;
        Clock::duration period{}; ///< zero for a single firing
        std::function<void()> fire;
        bool firing = false; ///< it never fires from inside itself
    };
    using Timers = std::map<TimerId, Timer>;

    Timers::iterator next();
    void arm();
    void fireDue();
    void fire(Timers::iterator timer);

    Timers timers;
    std::uint64_t made = 0;
    int modals = 0;
    QTimer alarm;
    QEventLoop* innermost = nullptr;
};

} // namespace platform::qt
