#include "platform/qt/loop/QtRunLoop.h"

#include <QEventLoop>
#include <QThread>
#include <algorithm>
#include <thread>
#include <utility>

namespace platform::qt {

namespace {

using std::chrono::duration;
using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr double shortestPeriod = 0.0001; // what a repeating timer without an interval gets
constexpr double longest = 1e8;           // three years; the clock cannot overflow

// What happens more often than a monitor shows it is seen by nobody, and each wake-up takes a core
// for some 25 microseconds: two hundred a second are half a percent of it.
constexpr milliseconds frame{20};

steady_clock::duration toDuration(double seconds) {
    // Comparisons with not-a-number are false, which makes it zero.
    const double held = seconds > 0 ? std::min(seconds, longest) : 0;
    return duration_cast<steady_clock::duration>(duration<double>(held));
}

} // namespace

QtRunLoop::QtRunLoop() {
    alarm.setTimerType(Qt::PreciseTimer);
    alarm.setSingleShot(true);
    QObject::connect(&alarm, &QTimer::timeout, [this] { fireDue(); });
}

TimerId QtRunLoop::schedule(double seconds, bool repeats, std::string_view selector,
                            std::function<void()> fire) {
    const TimerId id{++made};
    Timer timer;
    timer.selector = selector;
    if (repeats) timer.period = toDuration(seconds > 0 ? seconds : shortestPeriod);
    timer.due = Clock::now() + (repeats ? timer.period : toDuration(seconds));
    timer.fire = std::move(fire);
    timers.emplace(id, std::move(timer));
    arm();
    return id;
}

void QtRunLoop::invalidate(TimerId timer) {
    timers.erase(timer);
    arm();
}

bool QtRunLoop::isRunning(TimerId timer) const {
    return timers.contains(timer);
}

double QtRunLoop::now() const {
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

/// The timer that is due first; of two that are due together the one that was made first.
QtRunLoop::Timers::iterator QtRunLoop::next() {
    auto first = timers.end();
    for (auto timer = timers.begin(); timer != timers.end(); ++timer)
        if (!timer->second.firing &&
            (first == timers.end() || timer->second.due < first->second.due))
            first = timer;
    return first;
}

void QtRunLoop::arm() {
    const auto timer = next();
    if (modals > 0 || timer == timers.end()) {
        alarm.stop();
        return;
    }
    const auto left = timer->second.due - Clock::now();
    alarm.start(std::max(std::chrono::ceil<milliseconds>(left), milliseconds{0}));
}

void QtRunLoop::fireDue() {
    const auto limit = Clock::now();
    const TimerId newest{made}; // what is made meanwhile waits for the next turn
    while (modals == 0) {
        const auto timer = next();
        if (timer == timers.end() || timer->second.due > limit || timer->first > newest) break;
        fire(timer);
    }
    arm();
}

void QtRunLoop::fire(Timers::iterator timer) {
    const TimerId id = timer->first;
    // The operation may invalidate its own timer.
    const auto operation = std::move(timer->second.fire);
    if (timer->second.period == Clock::duration::zero()) {
        timers.erase(timer);
        operation();
        return;
    }
    timer->second.firing = true;
    operation();
    const auto still = timers.find(id);
    if (still == timers.end()) return;
    Timer& repeating = still->second;
    repeating.firing = false;
    repeating.fire = operation;
    const auto missed = (Clock::now() - repeating.due) / repeating.period;
    const auto skipped =
        repeating.period < frame ? (frame - repeating.period) / repeating.period : 0;
    repeating.due += (missed + skipped + 1) * repeating.period;
}

void QtRunLoop::run() {
    QEventLoop loop;
    QEventLoop* const outer = std::exchange(innermost, &loop);
    arm(); // what is due must not wait for the call that is under way
    loop.exec();
    innermost = outer;
}

void QtRunLoop::performOnMainThread(std::function<void()> work, bool waitUntilDone) {
    const bool isMainThread = QThread::currentThread() == alarm.thread();
    if (isMainThread && waitUntilDone)
        work();
    else
        QMetaObject::invokeMethod(&alarm, std::move(work),
                                  waitUntilDone ? Qt::BlockingQueuedConnection
                                                : Qt::QueuedConnection);
}

void QtRunLoop::detachNewThread(std::function<void()> work) {
    std::thread(std::move(work)).detach();
}

void QtRunLoop::stop() {
    if (innermost != nullptr) innermost->quit();
}

QtRunLoop::ModalScope::ModalScope(QtRunLoop& owner) : loop(owner) {
    ++loop.modals;
    loop.arm();
}

QtRunLoop::ModalScope::~ModalScope() {
    --loop.modals;
    loop.arm();
}

} // namespace platform::qt
