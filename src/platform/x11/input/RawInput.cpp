#include "platform/x11/input/RawInput.h"

#include <algorithm>
#include <chrono>
#include <utility>

// How an event gets its place.
//
// Devices tell steps and buttons, and not where the cursor was. That is asked for once for all that
// has come (`ask`), or known from the barrier that ended the last motion (`knownPlace`); `covered`
// of the waiting events are those that it is about. What stands behind the question in the stream
// waits for the next frame: a fast mouse sends something new before each answer. So does everything
// where the program itself has moved the cursor since the question.
//
// Fingers on a touch screen tell their places themselves, and have them whatever becomes of the
// cursor meanwhile.
//
// Another program may move the cursor, of which no device tells. `Stirring` tells when something
// has moved it after a rest; from then on, and once before the rest, it is looked at.
//
// The receiver may warp the cursor, after which the place is no longer true for the events behind,
// and may run a modal loop, in which further ones are passed on; so `passOn` looks at everything
// anew for each event.

namespace platform::x11 {

namespace {

double secondsHere() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

bool isBefore(std::uint32_t sequence, std::uint32_t other) {
    return static_cast<std::int32_t>(sequence - other) < 0;
}

} // namespace

RawInput::RawInput(Connection& x, const Displays& screens, const Pointer& cursor,
                   CursorTrack& cursorTrack, Receiver& eventReceiver)
    : connection(x),
      displays(screens),
      pointer(cursor),
      track(cursorTrack),
      receiver(eventReceiver),
      keyboard(connection, [](bool) {}),
      devices(connection),
      stirring(connection),
      seen(screens, cursor) {
    constexpr std::size_t burst = 256;
    pending.reserve(burst);
    connection.listen(*this, {XCB_GE_GENERIC, XCB_MAPPING_NOTIFY, XCB_CONFIGURE_NOTIFY});
    connection.selectOnRoot(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

RawInput::~RawInput() {
    connection.forget(*this);
}

void RawInput::select(EventMask types) {
    otherKeys |= (types & otherKeyTypes) != 0;
    keysSelected |= (types & keyTypes) != 0;
    pointerSelected |= (types & ~keyTypes) != 0;
    if (devicesStale) readDevices();
    sendSelection();
    if (std::exchange(buttonsStale, false)) buttonMap.read(connection);
    if (pointerSelected) watchOthers();
    connection.flush();
}

void RawInput::watchOthers() {
    const std::uint8_t before = stirring.eventType();
    stirring.watch();
    if (stirring.eventType() == before) return;
    connection.listen(*this, {stirring.eventType()});
    if (const auto at = connection.wait(xcb_query_pointer(connection.xcb(), connection.root()),
                                        xcb_query_pointer_reply))
        seen.isAt(displays.toTopLeft(at->root_x, at->root_y));
}

void RawInput::readDevices() {
    devicesStale = false;
    connection.findMasterPointer();
    devices.read();
    // Of a touch screen that has gone nobody tells that the fingers have been lifted.
    if (!devices.isTouchScreen(fingers.device())) fingers.forget();
}

// Devices come and go at all of them; the rest is of the user's own two masters.
void RawInput::sendSelection() {
    selectOn(XCB_INPUT_DEVICE_ALL, XCB_INPUT_XI_EVENT_MASK_HIERARCHY);
    const std::uint16_t keys = devices.keyboardOf(connection.masterPointer());
    if (keysSelected && keys != 0)
        selectOn(keys,
                 XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
    selectPointer();
}

void RawInput::selectPointer() {
    if (!pointerSelected) return;
    std::uint32_t mask =
        XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE |
        XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_BEGIN | XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_UPDATE |
        XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_END;
    if (motion.readsEvents()) mask |= XCB_INPUT_XI_EVENT_MASK_RAW_MOTION;
    if (connection.tellsBarrierHits()) mask |= XCB_INPUT_XI_EVENT_MASK_BARRIER_HIT;
    selectOn(connection.masterPointer(), mask);
}

void RawInput::selectOn(std::uint16_t device, std::uint32_t mask) {
    const struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{device, 1}, mask};
    xcb_input_xi_select_events(connection.xcb(), connection.root(), 1, &selection.head);
}

// A look is asked for before the events are read, so that the server answers meanwhile.
void RawInput::beginFrame() {
    mayAsk = true;
    if (!pointerSelected || asked != 0 || !(motion.looks() || wantsLook || followsOthers)) return;
    ask();
    connection.flush();
}

void RawInput::endFrame() {
    if (!pointerSelected || !motion.frameEnded()) return;
    selectPointer();
    connection.flush();
}

void RawInput::handle(const xcb_generic_event_t& generic) {
    if ((generic.response_type & 0x7f) == XCB_MAPPING_NOTIFY) {
        buttonsStale |= reinterpret_cast<const xcb_mapping_notify_event_t&>(generic).request ==
                        XCB_MAPPING_POINTER;
        return;
    }
    if ((generic.response_type & 0x7f) == XCB_CONFIGURE_NOTIFY) {
        const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(generic);
        if (configured.window == connection.root())
            devices.setRoot(configured.width, configured.height);
        return;
    }
    if ((generic.response_type & 0x7f) == stirring.eventType()) {
        if (!Stirring::isUnexplained(generic, lastTime)) return;
        wantsLook = true;
        receiver.arrived();
        return;
    }
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(generic);
    if (raw.extension != connection.xinputOpcode()) return;

    RawEvent event{.sequence = raw.full_sequence, .time = seconds(raw.time)};
    switch (raw.event_type) {
    case XCB_INPUT_RAW_MOTION:
        addMotion(raw, event);
        break;
    case XCB_INPUT_BARRIER_HIT:
        addHit(reinterpret_cast<const xcb_input_barrier_hit_event_t&>(generic));
        break;
    case XCB_INPUT_RAW_BUTTON_PRESS:
    case XCB_INPUT_RAW_BUTTON_RELEASE:
        event.kind = raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS ? RawEvent::Kind::buttonDown
                                                                  : RawEvent::Kind::buttonUp;
        event.button = buttonMap.logical(raw.detail);
        add(event);
        break;
    case XCB_INPUT_RAW_TOUCH_BEGIN:
    case XCB_INPUT_RAW_TOUCH_UPDATE:
    case XCB_INPUT_RAW_TOUCH_END:
        addTouch(raw, event);
        break;
    case XCB_INPUT_HIERARCHY:
        devicesStale = true;
        break;
    case XCB_INPUT_RAW_KEY_PRESS:
    case XCB_INPUT_RAW_KEY_RELEASE:
        addKey(raw.detail, raw.event_type == XCB_INPUT_RAW_KEY_PRESS, event);
        break;
    default:
        break;
    }
}

double RawInput::seconds(std::uint32_t serverTime) {
    // The server's clock has 32 bits of milliseconds.
    if (serverTime < lastTime && lastTime - serverTime > 0x80000000u) timeBase += 4294967.296;
    lastTime = serverTime;
    anyTime = true;
    return lastSeconds();
}

bool RawInput::isAfterQuestion(std::uint32_t sequence) const {
    return asked != 0 && !isBefore(sequence, asked);
}

void RawInput::addMotion(const xcb_input_raw_motion_event_t& raw, const RawEvent& event) {
    const auto values = valuesOf(raw);
    if (!values) return;
    const bool isPlace = devices.tellsPlaces(raw.sourceid);
    const bool afterQuestion = isAfterQuestion(event.sequence);
    movedByPlaces = isPlace || devices.seemsToTellPlaces(raw.sourceid);
    if (movedByPlaces) motion.place();
    if (isPlace) {
        track.jumped(afterQuestion);
    } else {
        motion.event(*values, raw.sourceid);
        track.moved(*values, event.time, afterQuestion);
        devices.moved({raw.sourceid, *values, event.sequence}, afterQuestion);
    }
    add(event);
}

void RawInput::addTouch(const xcb_input_raw_motion_event_t& raw, RawEvent event) {
    if (!devices.isTouchScreen(raw.sourceid)) return;
    const bool begins = raw.event_type == XCB_INPUT_RAW_TOUCH_BEGIN;
    const bool ends = raw.event_type == XCB_INPUT_RAW_TOUCH_END;
    if (begins) fingers.down(raw.detail, raw.sourceid);
    const bool isPointing = fingers.isPointing(raw.detail);
    if (ends) fingers.up(raw.detail);
    const auto values = valuesOf(raw);
    if (!isPointing || !values) return;
    event.place = devices.toRoot(raw.sourceid, *values);
    track.jumped(isAfterQuestion(event.sequence));
    movedByPlaces = true;
    if (begins) add(event); // the cursor's way there
    event.kind = begins ? RawEvent::Kind::fingerDown
                 : ends ? RawEvent::Kind::fingerUp
                        : RawEvent::Kind::fingerMoved;
    add(event);
}

// What a barrier stops is a motion too, though its own raw event may have gone on already.
void RawInput::addHit(const xcb_input_barrier_hit_event_t& hit) {
    const RawEvent event{.sequence = hit.full_sequence, .time = seconds(hit.time), .stopped = true};
    motion.stopped(hit.sourceid);
    devices.stopped();
    movedByPlaces = false;
    track.hit(hit, event.time, isAfterQuestion(event.sequence));
    add(event);
}

// A press of a key that is down is its repetition; a release of one that was never seen to go down
// began before the program did, and would be taken for a press.
void RawInput::addKey(std::uint32_t keycode, bool pressed, RawEvent event) {
    if (keycode >= down.size() || down[keycode] == pressed) return;
    down[keycode] = pressed;
    event.keycode = static_cast<xcb_keycode_t>(keycode);
    event.key = keyboard.key(event.keycode);
    if (!event.key.modifier && !otherKeys) return;
    event.kind = pressed ? RawEvent::Kind::keyDown : RawEvent::Kind::keyUp;
    add(event);
}

// The cursor has moved and no event of that was read. It comes before the clicks of the frame.
void RawInput::addSeenMotion(std::uint32_t sequence) {
    if (head < covered && pending[head].kind == RawEvent::Kind::motion) return;
    receiver.arrived();
    pending.insert(pending.begin() + static_cast<std::ptrdiff_t>(head),
                   {.sequence = sequence - 1, .time = secondsHere() + clockAhead});
    ++covered;
}

// Motion that follows motion replaces it, unless the older one is waiting for an answer: then a
// fast mouse would put off its own delivery for ever.
void RawInput::add(const RawEvent& event) {
    receiver.arrived();
    const bool follows =
        event.isMotion() && pending.size() > covered && pending.size() > head &&
        pending.back().kind == event.kind &&
        pending.back().place.has_value() == event.place.has_value() &&
        isAfterQuestion(pending.back().sequence) == isAfterQuestion(event.sequence);
    if (follows)
        pending.back() = event;
    else
        pending.push_back(event);
}

void RawInput::batchEnded() {
    if ((pointerSelected || keysSelected) && std::exchange(buttonsStale, false))
        buttonMap.read(connection);
    if (std::exchange(anyTime, false)) clockAhead = lastSeconds() - secondsHere();
    if (std::exchange(devicesStale, false)) {
        readDevices();
        sendSelection();
        if (pointerSelected) stirring.watch();
    }
    if (!(mayAsk || movedByPlaces) || asked != 0) return;
    if (wantsLook)
        ask();
    else if (head == pending.size())
        return;
    else if (const auto place = knownPlace())
        passOnFrom(*place);
    else
        ask();
}

// Where a barrier ended the last motion, and every one is read, the cursor stands at it and the
// server need not be asked.
std::optional<xcb_point_t> RawInput::knownPlace() const {
    if (motion.looks() || !buttons) return std::nullopt;
    if (pending.back().place) return pending.back().place;
    if (!pending.back().stopped) return std::nullopt;
    if (isBefore(pending.back().sequence, pointer.lastPutSequence())) return std::nullopt;
    return track.stoppedAt();
}

void RawInput::passOnFrom(xcb_point_t root) {
    beginAnswer();
    for (std::size_t i = head; i < covered; ++i)
        buttons = pending[i].buttonsAfter(*buttons);
    const Point place = displays.toTopLeft(root.x, root.y);
    seen.isAt(place);
    passOn(place);
}

void RawInput::beginAnswer() {
    mayAsk = false;
    covered = pending.size();
    warpsWhenAsked = pointer.warps();
}

void RawInput::ask() {
    looksForOthers = std::exchange(wantsLook, false) || followsOthers;
    beginAnswer();
    track.asked();
    asked = xcb_query_pointer(connection.xcb(), connection.root()).sequence;
    connection.awaitReply(asked, *this);
}

void RawInput::handleReply(unsigned sequence, const void* reply) {
    if (sequence != asked) return;
    asked = 0;
    const auto* answer = static_cast<const xcb_query_pointer_reply_t*>(reply);
    const bool stale = pointer.warps() != warpsWhenAsked;
    if (!answer || stale) {
        covered = head;
        return;
    }
    if (const auto places =
            devices.placed({answer->root_x, answer->root_y}, pointer.lastPutSequence())) {
        movedByPlaces = *places;
        if (movedByPlaces) track.jumped(false);
    }
    if (!track.placed({static_cast<double>(answer->root_x), static_cast<double>(answer->root_y)})) {
        wantsLook = looksForOthers;
        ask();
        return;
    }
    const Point place = displays.toTopLeft(answer->root_x, answer->root_y);
    buttons = answer->mask;
    while (covered < pending.size() && isBefore(pending[covered].sequence, sequence))
        ++covered;
    const bool hasMoved = seen.movesTo(place, looksForOthers && !motion.looks());
    followsOthers |= hasMoved && looksForOthers && head == covered;
    if (hasMoved && (motion.looks() || looksForOthers)) addSeenMotion(sequence);
    motion.looked(hasMoved);
    passOn(place);
}

// The buttons are known as they are after all of the events.
void RawInput::passOn(Point place) {
    const auto hasPlace = [this](const RawEvent& event) {
        return event.place || pointer.warps() == warpsWhenAsked;
    };
    while (head < covered && asked == 0 && hasPlace(pending[head])) {
        const RawEvent event = pending[head++];
        const bool overtaken =
            event.isMotion() && head < covered && pending[head].kind == event.kind;
        if (overtaken) continue;
        std::uint16_t mask = *buttons;
        for (std::size_t i = covered; i-- > head;)
            mask = pending[i].buttonsBefore(mask);
        noteOtherButton(event);
        if (othersDown.any()) mask |= otherButtons;
        receiver.receive(
            event, event.place ? displays.toTopLeft(event.place->x, event.place->y) : place, mask);
    }
    if (asked != 0) return;
    pending.erase(pending.begin(), pending.begin() + static_cast<std::ptrdiff_t>(head));
    head = covered = 0;
}

void RawInput::noteOtherButton(const RawEvent& event) {
    constexpr unsigned firstOther = 8;
    const bool isButton =
        event.kind == RawEvent::Kind::buttonDown || event.kind == RawEvent::Kind::buttonUp;
    if (isButton && event.button >= firstOther && event.button < othersDown.size())
        othersDown[event.button] = event.isPress();
}

} // namespace platform::x11
