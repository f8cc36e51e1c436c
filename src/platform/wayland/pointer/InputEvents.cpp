#include "platform/wayland/pointer/InputEvents.h"

#include <algorithm>
#include <cmath>
#include <linux/input-event-codes.h>
#include <utility>

// Over a strip of the hold every report of the mouse comes, where a push can make a difference:
// against an edge that none opens the compositor tells nothing of a hand that pushes. They wait in
// the socket, so that a mouse costs a wake-up a frame whatever it sends, and are summed up and
// delivered once a frame; where a hard push lets it cross, what was pushed so far is delivered in
// the middle of it too, so that it crosses sooner. What happens over another layer of the program,
// such as a dark one, is outside the screen that is held: it is delivered at the end of its batch,
// so that the answer brings the cursor back before it is seen.

namespace platform::wayland {

namespace {

constexpr int framesUntilRest = 4;
constexpr std::size_t fewClicks = 16;

} // namespace

InputEvents::InputEvents(Connection& x, Descriptors& descriptors, Outputs& screens,
                         PointerSeat& pointerSeat, Pointer& cursor, Hold& confinement,
                         EdgeStrips& edgeStrips, std::function<bool()> ownActive)
    : connection(x),
      outputs(screens),
      seat(pointerSeat),
      pointer(cursor),
      hold(confinement),
      edges(edgeStrips),
      ownWindowActive(std::move(ownActive)),
      pace(descriptors, [this] { tick(); }) {
    noted.reserve(fewClicks);
    seat.setListener(this);
    connection.onBatchEnd(this, [this] { batchEnded(); });
}

InputEvents::~InputEvents() {
    connection.onBatchEnd(this, {});
    seat.setListener(nullptr);
}

void InputEvents::watch(const PointerWatch& wanted) {
    asked = wanted;
    if (!isDelivering) startWatching();
}

void InputEvents::startWatching() {
    if (asked == watched) return;
    watched = asked;
    isFrameHalfOver = false;
    pace.setPeriod(session::Pace::period / (watched.pushes ? 2 : 1));
    seat.tellSteps(watched.pushes || !watched.strips.empty());
    edges.watch(watched);
    if (teller) teller(watched);
}

void InputEvents::moved(Point layout) {
    place = outputs.toTopLeft(outputs.nearest(layout));
    // Nobody's hand did that.
    if (!pointer.takeArrival(place)) hasMoved = true;
    const bool hadArrived = edges.hasArrived();
    edges.moved(outputs.toLayout(place), outputs.toLayout(pointer.lastPlace()));
    if (!hadArrived && edges.hasArrived()) pace.stop(); // its first frame begins with it
}

// Places that are told come at a pace already.
void InputEvents::tellPlace(Point layout) {
    moved(layout);
    if (pace.isRunning() || hold.isBeyond(place))
        batchEnded();
    else
        readMotion();
}

void InputEvents::tellCrossing(Point from, Point step) {
    hasMoved = false;
    deliver(EventType::mouseMoved, outputs.toTopLeft(outputs.nearest(from)), false);
    place = outputs.toTopLeft(outputs.nearest({from.x + step.x, from.y + step.y}));
    deliver(EventType::mouseMoved, place, false);
}

void InputEvents::meant(Point step, double when) {
    time = when;
    hold.meant(outputs.toLayout(place), step, when);
    edges.meant(step);
    anyArrived = true;
}

void InputEvents::button(std::uint32_t code, bool down) {
    const auto pick = [down](EventType pressed, EventType released) {
        return down ? pressed : released;
    };
    const std::uint32_t bit = code >= BTN_LEFT && code < BTN_LEFT + 8 ? 1U << (code - BTN_LEFT) : 0;
    buttonsDown = down ? buttonsDown | bit : buttonsDown & ~bit;
    if (code == BTN_LEFT)
        note(pick(EventType::leftMouseDown, EventType::leftMouseUp));
    else if (code == BTN_RIGHT)
        note(pick(EventType::rightMouseDown, EventType::rightMouseUp));
    else
        note(pick(EventType::otherMouseDown, EventType::otherMouseUp));
}

void InputEvents::note(EventType type) {
    noted.push_back(type);
}

void InputEvents::batchEnded() {
    if (!anyArrived && !hasMoved && noted.empty() && !edges.hasLeft()) return;
    if (hasMoved && hold.isBeyond(place) && !putBack()) readMotion();
    tellEdges(false);
    if (!noted.empty()) {
        readMotion();
        for (std::size_t i = 0; i < noted.size(); ++i)
            deliver(noted[i], place, false);
        noted.clear();
    }
    anyArrived = true;
    if (pace.isRunning()) return;
    isFrameHalfOver = false;
    pace.start();
    chooseReading();
}

// Before anybody is asked: what was pushed is told at the next tick, as from a cursor that stayed.
bool InputEvents::putBack() {
    const auto home = hold.home(place);
    if (!home) return false;
    pointer.putBack(*home);
    place = *home;
    return true;
}

// What happens at an edge answers to how the pointer has come there, and at once.
void InputEvents::tellEdges(bool isFrameEnd) {
    if (const auto from = edges.takeArrival(isFrameEnd)) {
        deliver(EventType::mouseMoved, outputs.toTopLeft(*from), false);
        hasMoved = true;
        readMotion();
    }
    if (const auto to = edges.takeDeparture()) {
        place = outputs.toTopLeft(*to);
        hasMoved = false;
        deliver(EventType::mouseMoved, place, false);
    }
}

void InputEvents::tick() {
    connection.read();
    isFrameHalfOver = watched.pushes && !isFrameHalfOver;
    if (isFrameHalfOver) {
        if (const auto push = hold.pushSoFar(place); push && isEnough(*push)) tell(*push);
    } else {
        ownWindowChanged();
        emptyFrames = std::exchange(anyArrived, false) ? 0 : emptyFrames + 1;
        tellEdges(true);
        readMotion();
        if (emptyFrames >= framesUntilRest) {
            emptyFrames = 0;
            pace.stop();
        }
    }
    chooseReading();
}

// Elsewhere than over a strip the answer may have to bring the cursor back, and there too where
// nothing keeps it from leaving.
void InputEvents::chooseReading() {
    connection.readAtOnce(!pace.isRunning() || !hold.clamps() || !hold.isStrip(seat.focus()));
}

void InputEvents::readMotion() {
    if (edges.hasArrived()) return;
    const bool anyMotion = hasMoved;
    if (const auto push = hold.takePush(place)) {
        tell(*push);
    } else if (anyMotion) {
        hasMoved = false;
        constexpr std::uint32_t left = 1, right = 2;
        deliver(buttonsDown & left    ? EventType::leftMouseDragged
                : buttonsDown & right ? EventType::rightMouseDragged
                : buttonsDown         ? EventType::otherMouseDragged
                                      : EventType::mouseMoved,
                place, false);
    }
}

// What is not enough by the middle of a frame is told at its end.
bool InputEvents::isEnough(const Hold::Push& push) const {
    constexpr double roundedDown = 0.9; // the answer is found in single precision
    const double way =
        std::max(std::abs(push.beyond.x - push.held.x), std::abs(push.beyond.y - push.held.y));
    return way >= roundedDown * watched.crossing;
}

void InputEvents::tell(const Hold::Push& push) {
    hasMoved = false;
    deliver(EventType::mouseMoved, push.held, false);
    // The cursor is still inside, and the answer to the point outside is carried out.
    deliver(EventType::mouseMoved, push.beyond, true);
}

void InputEvents::deliver(EventType type, Point at, bool isHeldBack) {
    const InputEvent event{type, at, 0, time};
    const Connection::Later drawing(connection);
    const Pointer::Handling handling(pointer, at, isHeldBack);
    isDelivering = true; // a crossing switches the product off and on
    for (std::size_t i = 0; i < consumers.size(); ++i) {
        const Consumer& consumer = consumers[i];
        if (!(consumer.mask & maskOf(type))) continue;
        if (consumer.isTap || !ownWindowActive()) consumer.handler(event);
    }
    isDelivering = false;
    startWatching();
}

// Without a Handling: what follows may ask where the cursor is now.
void InputEvents::tellModifier(std::uint16_t keyCode) {
    const InputEvent event{EventType::flagsChanged, place, keyCode, time};
    for (std::size_t i = 0; i < consumers.size(); ++i)
        if (consumers[i].mask & maskOf(EventType::flagsChanged)) consumers[i].handler(event);
}

void InputEvents::addGlobalMonitor(EventMask mask, Handler handler) {
    consumers.push_back({mask, false, std::move(handler)});
}

void InputEvents::addTap(const TapParameters& parameters, Handler handler) {
    consumers.push_back({parameters.mask, true, std::move(handler)});
}

} // namespace platform::wayland
