#include "platform/x11/input/InputEvents.h"

#include <utility>

// The way of an event, from the socket to its handlers.
//
// At rest the first arrival wakes the program and is read at once. From then on the socket is left
// alone and a clock has `readFrame` called at the pace of a display, so that a mouse costs one
// wake-up a frame whatever it sends; a few frames without an event end that. A device that tells
// places moves the cursor through barriers: as long as one does, the socket is read at once
// besides, so that a cursor that has to be put back is seen elsewhere for a fraction of a
// millisecond. In a frame
//
//   1. `readFrame` settles whether the server may hold the cursor, and drains the connection;
//   2. `RawInput::handle` gets what the devices sent, in the server's order. It tells the hold what
//      moved and what a barrier stopped, and drops what repeats and what later motion replaces;
//   3. `RawInput::batchEnded` has the place of it all from the barrier that ended the last motion,
//      or asks the server, once. With the place each event goes on to
//   4. `receive`, which gives it a type, and a motion to
//   5. `receiveMotion`, which may put another one before it: where the cursor was held, or put;
//   6. `deliver` calls the handlers, and taps alone while a window of the program is active; keys
//      go to `deliverKey` at once.
//      `Pointer::Handling` answers the event's place meanwhile, and carries the answer out.

namespace platform::x11 {

namespace {

// A hand that stops for less is still moving, and each rest costs a wake-up more at its end.
constexpr int framesUntilRest = 4;

// The server answers in a tenth of this. One that is busy makes the events a frame late, and not
// the program's windows slow.
constexpr std::chrono::milliseconds patience{2};

} // namespace

InputEvents::InputEvents(Connection& x, Descriptors& descriptors, const Displays& displays,
                         Pointer& cursor, Hold& screenHold, std::function<bool()> ownActive)
    : connection(x),
      pointer(cursor),
      hold(screenHold),
      ownWindowActive(std::move(ownActive)),
      source(x, displays, cursor, screenHold, *this),
      pace(descriptors, [this] { tick(); }) {
    connection.readBy([this] { readFrame(); });
}

InputEvents::~InputEvents() {
    connection.readBy({});
    rest();
}

void InputEvents::readFrame() {
    ownWindowChanged();
    pointer.releaseWhenDue();
    source.beginFrame();
    connection.drain();
    const auto deadline = Pace::Clock::now() + patience;
    while (source.waitsForAnswer() && connection.waitForArrival(deadline))
        connection.drain();
    if (pace.isRunning()) {
        source.endFrame();
        connection.watch(source.readsAtOnce());
    }
}

// An alert or a menu of the program may be on another monitor.
void InputEvents::ownWindowChanged() {
    hold.suspend(ownWindowActive());
}

void InputEvents::receive(const RawEvent& raw, Point place, std::uint16_t buttonMask) {
    const std::optional<EventType> type = raw.type(buttonMask);
    if (!type) return;
    const bool isKey = (maskOf(*type) & keyTypes) != 0;
    if (!isKey && hold.isOutOfReach(place)) return;
    const InputEvent event{*type, place, isKey ? raw.key.code : std::uint16_t{0}, raw.time};
    if (isKey)
        deliverKey(event, raw);
    else if (raw.isMotion())
        receiveMotion(event);
    else
        deliver(event, false);
}

void InputEvents::receiveMotion(InputEvent event) {
    const auto back = std::exchange(putBack, std::nullopt);
    const auto deliverAt = [&](Point place, bool isHeldBack) {
        event.location = place;
        deliver(event, isHeldBack);
    };
    if (const auto push = hold.takePush(event.location)) {
        deliverAt(push->held, false);
        // The cursor is still inside, and the answer to the point outside is carried out.
        deliverAt(push->beyond, true);
        return;
    }
    const Point place = event.location;
    // Nothing held it: it was warped back, and has been pushed out again from there.
    if (back && hold.isBeyond(place)) deliverAt(*back, false);
    const unsigned before = pointer.warps();
    deliverAt(place, false);
    if (pointer.warps() != before && !hold.isBeyond(pointer.lastPut())) putBack = pointer.lastPut();
}

void InputEvents::deliver(const InputEvent& event, bool isHeldBack) {
    const EventMask bit = maskOf(event.type);
    const Pointer::Handling handling(pointer, event.location, isHeldBack);
    for (std::size_t i = 0; i < consumers.size(); ++i) {
        const Consumer& consumer = consumers[i];
        if (!(consumer.mask & bit)) continue;
        if (consumer.isTap || !ownWindowActive()) consumer.handler(event);
    }
}

// Who is told one half of a pair and not the other takes the key for held from then on.
void InputEvents::deliverKey(const InputEvent& event, const RawEvent& raw) {
    const EventMask bit = maskOf(event.type);
    const Pointer::Handling handling(pointer, event.location, false, false);
    for (std::size_t i = 0; i < consumers.size(); ++i) {
        Consumer& consumer = consumers[i];
        if (!(consumer.mask & bit)) continue;
        const bool wasTold = consumer.toldKeys[raw.keycode];
        const bool isTold = consumer.isTap || (raw.isPress() ? !ownWindowActive() : wasTold);
        consumer.toldKeys[raw.keycode] = raw.isPress() && isTold;
        if (isTold) consumer.handler(event);
    }
}

// Before the event is handled: its handler may run a loop of its own, in which the pace goes on.
void InputEvents::arrived() {
    anyArrived = true;
    if (pace.isRunning()) return;
    pace.start();
    if (pace.isRunning()) connection.watch(source.readsAtOnce());
}

void InputEvents::tick() {
    if (emptyFrames == framesUntilRest - 1) source.lookOnce();
    readFrame();
    emptyFrames = std::exchange(anyArrived, false) || source.waitsForAnswer() ? 0 : emptyFrames + 1;
    if (emptyFrames >= framesUntilRest) rest();
}

void InputEvents::rest() {
    emptyFrames = 0;
    source.rested();
    pace.stop();
    connection.watch(true);
}

void InputEvents::addGlobalMonitor(EventMask mask, Handler handler) {
    add({mask, false, std::move(handler)});
}

void InputEvents::addTap(const TapParameters& parameters, Handler handler) {
    add({parameters.mask, true, std::move(handler)});
}

void InputEvents::add(Consumer consumer) {
    source.select(consumer.mask);
    consumers.push_back(std::move(consumer));
    arrived(); // the pointer may have stirred just before, and not be at rest yet
}

} // namespace platform::x11
