#include "platform/x11/input/PacedReader.h"

#include <utility>

namespace platform::x11 {

namespace {

// A hand that stops for less is still moving, and each rest costs a wake-up more at its end.
constexpr int framesUntilRest = 4;

// The server answers in a tenth of this. One that is busy makes the events a frame late, and not
// the program's windows slow.
constexpr std::chrono::milliseconds patience{2};

} // namespace

PacedReader::PacedReader(Connection& x, Descriptors& descriptors, std::function<bool()> waiting,
                         Frame beginAndEnd)
    : connection(x),
      isWaiting(std::move(waiting)),
      frame(std::move(beginAndEnd)),
      pace(descriptors, [this] { tick(); }) {
    connection.readBy([this] { read(); });
}

PacedReader::~PacedReader() {
    connection.readBy({});
    rest();
}

// Before the event is handled: its handler may run a loop of its own, in which the pace goes on.
void PacedReader::arrived() {
    anyArrived = true;
    if (pace.isRunning()) return;
    pace.start();
    if (pace.isRunning()) connection.watch(false);
}

void PacedReader::tick() {
    read();
    emptyFrames = std::exchange(anyArrived, false) || isWaiting() ? 0 : emptyFrames + 1;
    if (emptyFrames >= framesUntilRest) rest();
}

void PacedReader::read() {
    frame.begin();
    connection.drain();
    const auto deadline = Pace::Clock::now() + patience;
    while (isWaiting() && connection.waitForArrival(deadline))
        connection.drain();
    if (pace.isRunning()) frame.end();
}

void PacedReader::rest() {
    emptyFrames = 0;
    pace.stop();
    connection.watch(true);
}

} // namespace platform::x11
