#include "platform/x11/keys/HotKeys.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>

namespace platform::x11 {
using session::PhysicalKey;
using session::physicalKey;
using session::physicalKeyAt;

namespace {

Shortcut plain(const Shortcut& shortcut) {
    return {shortcut.keyCode, shortcut.modifierFlags & Shortcut::modifiers};
}

} // namespace

HotKeys::HotKeys(Connection& x, Settings& store, Log& writer, Later scheduler)
    : connection(x),
      settings(store),
      log(writer),
      later(std::move(scheduler)),
      map(connection,
          [this](bool modifiersMoved) {
              if (modifiersMoved) claim();
              if (labelsChanged) later(labelsChanged);
          }),
      recording(connection, map, log, later) {
    connection.listen(*this, {XCB_KEY_PRESS, XCB_KEY_RELEASE, XCB_FOCUS_OUT});
    if (!map.isServers())
        log.write("the X server lacks the extension XKEYBOARD: shortcuts are shown as a U.S. "
                  "keyboard labels them");
}

HotKeys::~HotKeys() {
    connection.forget(*this);
    release();
    connection.flush();
}

// ---- what is claimed ----------------------------------------------------------------------------

void HotKeys::registerShortcut(const Shortcut& shortcut, std::function<void()> action) {
    registered.push_back({plain(shortcut), std::move(action)});
    claim();
}

void HotKeys::unregisterShortcut(const Shortcut& shortcut) {
    std::erase_if(registered,
                  [&](const Claim& known) { return known.shortcut == plain(shortcut); });
    claim();
}

void HotKeys::bindShortcut(std::string_view settingsKey, std::function<void()> action) {
    bindings.insert_or_assign(std::string(settingsKey), std::move(action));
    if (observed.emplace(settingsKey).second)
        settings.observe(settingsKey, [this, known = std::weak_ptr<void>(alive)] {
            if (!known.expired()) claim();
        });
    claim();
    const auto shortcut = stored(settingsKey);
    if (shortcut && boundTaken && isTaken(*shortcut)) boundTaken(*shortcut);
}

void HotKeys::breakBinding(std::string_view settingsKey) {
    const auto found = bindings.find(settingsKey);
    if (found == bindings.end()) return;
    bindings.erase(found);
    claim();
}

std::optional<Shortcut> HotKeys::stored(std::string_view settingsKey) const {
    const auto shortcut = Shortcut::fromValue(settings.object(settingsKey));
    return shortcut ? std::optional(plain(*shortcut)) : std::nullopt;
}

std::vector<Shortcut> HotKeys::wanted() const {
    std::vector<Shortcut> all;
    const auto add = [&all](const Shortcut& shortcut) {
        if (std::ranges::find(all, shortcut) == all.end()) all.push_back(shortcut);
    };
    for (const Claim& known : registered)
        add(known.shortcut);
    for (const auto& [key, action] : bindings)
        if (const auto shortcut = stored(key)) add(*shortcut);
    return all;
}

// ---- grabs --------------------------------------------------------------------------------------

/// Grabs everything that is wanted, and nothing else. One round trip.
void HotKeys::claim() {
    if (recording.isOn()) return;
    release();
    taken.clear();
    heldStates = map.lockStates();

    std::vector<Asked> asked;
    for (const Shortcut& shortcut : wanted())
        if (auto one = ask(shortcut)) asked.push_back(std::move(*one));
    connection.sync();
    for (const Asked& one : asked) {
        if (!isRefused(one)) {
            held.push_back(one.grab);
            continue;
        }
        // In some states of the lock keys it may be free, but would be no use.
        ungrab(one.grab);
        taken.push_back(one.shortcut);
        tell(one.shortcut);
    }
    connection.flush();
}

/// Nothing for a key that no keyboard has. Grabs of the extension are no obstacle to the server,
/// but their owner gets the key and nobody else: such a one is asked for too, and given up at once.
std::optional<HotKeys::Asked> HotKeys::ask(const Shortcut& shortcut) {
    const PhysicalKey* key = physicalKey(shortcut.keyCode);
    if (key == nullptr) return std::nullopt;
    xcb_connection_t* const x = connection.xcb();
    Asked asked{shortcut, {key->keycode(), map.maskOf(shortcut.modifierFlags)}, {}, {}};
    std::vector<std::uint32_t> masks;
    for (const std::uint16_t state : heldStates) {
        masks.push_back(asked.grab.mask | static_cast<std::uint32_t>(state));
        asked.core.push_back(
            xcb_grab_key_checked(x, 0, connection.root(), static_cast<std::uint16_t>(masks.back()),
                                 asked.grab.keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    const auto count = static_cast<std::uint16_t>(masks.size());
    const std::uint32_t noEvents = 0;
    asked.probe = xcb_input_xi_passive_grab_device(
        x, XCB_CURRENT_TIME, connection.root(), XCB_NONE, asked.grab.keycode, XCB_INPUT_DEVICE_ALL,
        count, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_GRAB_MODE_ASYNC, 0,
        &noEvents, masks.data());
    xcb_input_xi_passive_ungrab_device(x, connection.root(), asked.grab.keycode,
                                       XCB_INPUT_DEVICE_ALL, count, XCB_INPUT_GRAB_TYPE_KEYCODE,
                                       masks.data());
    return asked;
}

bool HotKeys::isRefused(const Asked& asked) {
    bool refused = false;
    for (const xcb_void_cookie_t cookie : asked.core)
        refused |=
            Reply<xcb_generic_error_t>(xcb_request_check(connection.xcb(), cookie)) != nullptr;
    const auto probed = connection.wait(asked.probe, xcb_input_xi_passive_grab_device_reply);
    return refused || (probed && probed->num_modifiers != 0);
}

void HotKeys::release() {
    for (const Grab& grab : held)
        ungrab(grab);
    held.clear();
}

void HotKeys::ungrab(const Grab& grab) {
    for (const std::uint16_t state : heldStates)
        xcb_ungrab_key(connection.xcb(), grab.keycode, connection.root(),
                       static_cast<std::uint16_t>(grab.mask | state));
}

/// Nobody has chosen those that are only registered.
void HotKeys::tell(const Shortcut& shortcut) {
    const bool chosen = std::ranges::any_of(
        bindings, [&](const auto& binding) { return stored(binding.first) == shortcut; });
    if (!chosen) return;
    if (!told.emplace(shortcut.keyCode, shortcut.modifierFlags).second) return;
    log.write("the shortcut " + modifierFlagsString(shortcut) + keyCodeString(shortcut) +
              " does nothing: another program holds it");
}

bool HotKeys::isTaken(const Shortcut& shortcut) const {
    return std::ranges::find(taken, plain(shortcut)) != taken.end();
}

bool HotKeys::isRegistered(const Shortcut& shortcut) const {
    return std::ranges::find(registered, plain(shortcut), &Claim::shortcut) != registered.end();
}

HotKeys::Obstacle HotKeys::obstacleTo(const Shortcut& shortcut) {
    if (isRegistered(shortcut)) return Obstacle::fixed;
    // To try it is to give it up, which would take it from the binding that has it.
    if (!recording.isOn() && std::ranges::count(wanted(), plain(shortcut)) != 0)
        return isTaken(shortcut) ? Obstacle::taken : Obstacle::none;
    heldStates = map.lockStates();
    const auto asked = ask(plain(shortcut));
    if (!asked) return Obstacle::none;
    connection.sync();
    const bool refused = isRefused(*asked);
    ungrab(asked->grab);
    connection.flush();
    return refused ? Obstacle::taken : Obstacle::none;
}

bool HotKeys::startRecording(KeyRecording::Handler taker, std::function<void()> left) {
    if (!recording.start(std::move(taker), std::move(left))) return false;
    release();
    connection.flush();
    return true;
}

void HotKeys::stopRecording() {
    if (!recording.isOn()) return;
    recording.stop();
    claim();
}

// ---- events -------------------------------------------------------------------------------------

void HotKeys::handle(const xcb_generic_event_t& event) {
    const unsigned type = event.response_type & 0x7f;
    if (type == XCB_FOCUS_OUT) {
        recording.focusLeft(reinterpret_cast<const xcb_focus_out_event_t&>(event));
        return;
    }
    // A release has the same form.
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    if (recording.hasKeyboard()) {
        recording.handle(key, type == XCB_KEY_PRESS);
    } else if (type == XCB_KEY_PRESS) {
        pressed(key);
    } else {
        lastReleased = key.detail;
        releaseTime = key.time;
    }
}

/// A held key repeats as a release and a press of the same moment. A program that types for the
/// user may press anew as soon as that, but then it did not hold the key before.
bool HotKeys::isRepetition(const xcb_key_press_event_t& event) const {
    constexpr xcb_timestamp_t shortestDelay = 50; // milliseconds; by default 500 or more
    return event.detail == lastReleased && event.time == releaseTime &&
           (repeating || releaseTime - pressTime >= shortestDelay);
}

void HotKeys::pressed(const xcb_key_press_event_t& event) {
    repeating = isRepetition(event);
    pressTime = event.time;
    if (repeating) return;
    const PhysicalKey* key = physicalKeyAt(event.detail);
    if (key == nullptr) return;
    const Shortcut shortcut{key->virtualCode, map.flagsOf(event.state)};
    const auto claimed = std::ranges::find(registered, shortcut, &Claim::shortcut);
    if (claimed != registered.end()) {
        later(claimed->action);
        return;
    }
    for (const auto& [settingsKey, action] : bindings)
        if (stored(settingsKey) == shortcut) {
            later(action);
            return;
        }
}

// ---- labels -------------------------------------------------------------------------------------

std::string HotKeys::modifierFlagsString(const Shortcut& shortcut) const {
    std::string text;
    if (shortcut.modifierFlags & Shortcut::control) text += "Ctrl+";
    if (shortcut.modifierFlags & Shortcut::option) text += "Alt+";
    if (shortcut.modifierFlags & Shortcut::shift) text += "Shift+";
    if (shortcut.modifierFlags & Shortcut::command) text += "Super+";
    return text;
}

std::string HotKeys::keyCodeString(const Shortcut& shortcut) const {
    const PhysicalKey* key = physicalKey(shortcut.keyCode);
    return key != nullptr ? map.label(*key) : "Key " + std::to_string(shortcut.keyCode);
}

std::optional<std::uint16_t> HotKeys::keyCodeNamed(std::string_view name) const {
    const PhysicalKey* key = map.keyNamed(name);
    return key != nullptr ? std::optional(key->virtualCode) : std::nullopt;
}

} // namespace platform::x11
