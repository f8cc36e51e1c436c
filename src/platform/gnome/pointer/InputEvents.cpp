#include "platform/gnome/pointer/InputEvents.h"

#include <ctime>
#include <utility>

namespace platform::gnome {

namespace {

constexpr int framesUntilRest = 4;

double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct Button {
    Hand::State mask;
    EventType pressed, released, dragged;
};
constexpr Button buttons[] = {{Hand::leftButton, EventType::leftMouseDown, EventType::leftMouseUp,
                               EventType::leftMouseDragged},
                              {Hand::rightButton, EventType::rightMouseDown,
                               EventType::rightMouseUp, EventType::rightMouseDragged},
                              {Hand::middleButton, EventType::otherMouseDown,
                               EventType::otherMouseUp, EventType::otherMouseDragged}};

// The shell does not tell the two sides of the keyboard apart: either counts as the left one.
constexpr std::pair<Hand::State, std::uint16_t> modifiers[] = {{Hand::control, keyCodes::control},
                                                               {Hand::alt, keyCodes::option},
                                                               {Hand::super, keyCodes::command},
                                                               {Hand::shift, keyCodes::shift}};

} // namespace

InputEvents::InputEvents(Hand& extension, Descriptors& descriptors, wayland::Outputs& screens,
                         Pointer& cursor, Hold& confinement, std::function<bool()> ownActive)
    : hand(extension),
      outputs(screens),
      pointer(cursor),
      hold(confinement),
      ownWindowActive(std::move(ownActive)),
      pace(descriptors, [this] { tick(); }) {
    hand.setHandlers({.pushed =
                          [this](std::span<const Hand::Push> all) {
                              for (const Hand::Push& push : all)
                                  hold.pushed(push);
                              anyPush = true;
                              if (!pace.isRunning()) pace.start();
                              if (const auto push = hold.pushSoFar()) tell(*push);
                          },
                      .seen = [this](const Hand::Seen& sight) { seen(sight); },
                      .kept = [this] { takeBack(); }});
    const auto begin = [this] {
        hand.watch(!hold.wasWanted(), true);
        hand.setCrossing(crossing);
    };
    begin();
    hand.onFresh(this, [begin](bool) { begin(); });
}

InputEvents::~InputEvents() {
    hand.onFresh(this, {});
    hand.setHandlers({});
    hand.watch(false, false);
}

void InputEvents::watch(const PointerWatch& wanted) {
    if (wanted.crossing == crossing) return;
    crossing = wanted.crossing;
    hand.setCrossing(crossing);
}

void InputEvents::seen(const Hand::Seen& sight) {
    const Hand::Seen before = std::exchange(last, sight);
    const Point place = outputs.toTopLeft(outputs.nearest(sight.place));
    if (before.place != sight.place) {
        EventType type = EventType::mouseMoved;
        for (const Button& button : buttons)
            if (type == EventType::mouseMoved && before.state & sight.state & button.mask)
                type = button.dragged;
        deliver(type, place, false);
    }
    for (const Button& button : buttons)
        if ((before.state ^ sight.state) & button.mask)
            deliver(sight.state & button.mask ? button.pressed : button.released, place, false);
    tellModifiers(sight.state);
}

// Each event of a modifier is a press or a release in turn, and stays a pair: what was pressed in a
// window of the program is told to nobody.
void InputEvents::tellModifiers(Hand::State state) {
    for (const auto& [mask, code] : modifiers) {
        const bool isDown = (state & mask) != 0, wasTold = (toldModifiers & mask) != 0;
        if (isDown == wasTold) continue;
        if (isDown && (withheld || ownWindowActive())) continue;
        toldModifiers = isDown ? toldModifiers | mask : toldModifiers & ~mask;
        // Without a Handling: what follows may ask where the cursor is now.
        const InputEvent event{EventType::flagsChanged, outputs.toTopLeft(last.place), code, now()};
        for (std::size_t i = 0; i < consumers.size(); ++i)
            if (consumers[i].mask & maskOf(EventType::flagsChanged)) consumers[i].handler(event);
    }
}

void InputEvents::tick() {
    emptyFrames = std::exchange(anyPush, false) ? 0 : emptyFrames + 1;
    if (const auto push = hold.takePush()) tell(*push);
    if (emptyFrames < framesUntilRest) return;
    emptyFrames = 0;
    pace.stop();
}

void InputEvents::tell(const Hold::Push& push) {
    lastPush = push;
    deliver(EventType::mouseMoved, push.held, false);
    // The cursor is still inside, and the answer to the point outside is carried out.
    deliver(EventType::mouseMoved, push.beyond, true);
}

// The push that had the cursor cross, the other way round: what was far enough there is so back.
void InputEvents::takeBack() {
    const auto push = std::exchange(lastPush, std::nullopt);
    if (!push || !hold.isBeyond(push->held)) return;
    deliver(EventType::mouseMoved, push->beyond, false);
    deliver(EventType::mouseMoved, push->held, true);
}

void InputEvents::deliver(EventType type, Point at, bool isHeldBack) {
    const InputEvent event{type, at, 0, now()};
    const Pointer::Handling handling(pointer, at, isHeldBack);
    for (std::size_t i = 0; i < consumers.size(); ++i) {
        const Consumer& consumer = consumers[i];
        if (!(consumer.mask & maskOf(type))) continue;
        if (consumer.isTap || !ownWindowActive()) consumer.handler(event);
    }
}

void InputEvents::addGlobalMonitor(EventMask mask, Handler handler) {
    consumers.push_back({mask, false, std::move(handler)});
}

void InputEvents::addTap(const TapParameters& parameters, Handler handler) {
    consumers.push_back({parameters.mask, true, std::move(handler)});
}

} // namespace platform::gnome
