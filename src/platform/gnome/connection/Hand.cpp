#include "platform/gnome/connection/Hand.h"

#include <cmath>
#include <string_view>

namespace platform::gnome {

namespace {

constexpr const char* handName = "com.tamberlo.Shell";
constexpr const char* handPath = "/com/tamberlo/Shell";
constexpr const char* handInterface = "com.tamberlo.Shell1";

constexpr std::uint64_t second = 1'000'000, tenth = 100'000; // microseconds
constexpr std::uint64_t patience = 20 * second;
constexpr std::size_t fewReports = 512;

int whole(double value) {
    return static_cast<int>(std::lround(value));
}

void appendArea(sd_bus_message* message, const Rect& area) {
    (void)sd_bus_message_append(message, "(iiii)", whole(area.x), whole(area.y), whole(area.width),
                                whole(area.height));
}

} // namespace

Hand::Hand(Descriptors& descriptors, Log& log, std::string name, std::string uuid,
           std::function<void()> handler)
    : link(descriptors, log),
      program(std::move(name)),
      extension(std::move(uuid)),
      changed(std::move(handler)) {
    pushes.reserve(fewReports);
    link.add(*this);
    link.wait();
    if (link.bus()) {
        // The first answer is waited for, so that the program starts with the cursor in its hand.
        bus::Message asked = begin("Join");
        (void)sd_bus_message_append(asked.get(), "s", program.c_str());
        const bus::Message reply = call(std::move(asked), second);
        isHere = reply != nullptr;
        if (isHere)
            readLacks(*reply);
        else
            join();
    }
    link.start();
}

Hand::~Hand() {
    sendLater();
    link.remove(*this);
}

void Hand::attach(sd_bus& bus) {
    leave();
    sd_bus_slot* slot = nullptr;
    const std::string owner =
        std::string(
            "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
        handName + "'";
    const auto ownerChanged = [](sd_bus_message* message, void* own, sd_bus_error*) {
        auto& self = *static_cast<Hand*>(own);
        const char *name = nullptr, *before = nullptr, *now = nullptr;
        if (sd_bus_message_read(message, "sss", &name, &before, &now) < 0) return 0;
        self.leave();
        if (*now)
            self.join();
        else
            self.askWhy();
        return 0;
    };
    if (sd_bus_add_match_async(&bus, &slot, owner.c_str(), ownerChanged, nullptr, this) >= 0)
        ownerMatch.reset(slot);
    const std::string signals =
        std::string("type='signal',sender='") + handName + "',interface='" + handInterface + "'";
    const auto signal = [](sd_bus_message* message, void* self, sd_bus_error*) {
        return static_cast<Hand*>(self)->heard(*message);
    };
    if (sd_bus_add_match_async(&bus, &slot, signals.c_str(), signal, nullptr, this) >= 0)
        signalMatch.reset(slot);
}

// On the first connection the constructor asks by itself.
void Hand::up() {
    if (!fresh.empty()) join();
}

void Hand::leave() {
    claims.clear();
    veils.clear();
    crossing.reset();
    joining.reset();
    if (std::exchange(isHere, false) && changed) changed();
}

void Hand::join() {
    sd_bus_slot* slot = nullptr;
    const auto answered = [](sd_bus_message* reply, void* self, sd_bus_error*) {
        static_cast<Hand*>(self)->joined(reply);
        return 0;
    };
    const bus::Message message = begin("Join");
    if (!message || sd_bus_message_append(message.get(), "s", program.c_str()) < 0) return;
    if (sd_bus_call_async(link.bus(), &slot, message.get(), answered, this, patience) >= 0)
        joining.reset(slot);
    link.settle();
}

void Hand::joined(sd_bus_message* reply) {
    // A shell that has much to do, as at login, answers later.
    if (sd_bus_message_is_method_error(reply, SD_BUS_ERROR_NO_REPLY)) return join();
    isHere = !sd_bus_message_is_method_error(reply, nullptr);
    if (!isHere) return askWhy();
    readLacks(*reply);
    isFresh = true;
    link.callSoon();
    changed();
}

void Hand::readLacks(sd_bus_message& reply) {
    lacks.clear();
    std::uint32_t version = 0;
    if (sd_bus_message_read(&reply, "u", &version) <= 0 ||
        sd_bus_message_enter_container(&reply, 'a', "s") <= 0)
        return;
    const char* part = nullptr;
    while (sd_bus_message_read(&reply, "s", &part) > 0)
        lacks.insert(part);
}

// The shell knows about its extensions, also where the user has switched all of them off.
void Hand::askWhy() {
    if (!link.bus()) return;
    sd_bus_slot* slot = nullptr;
    const auto answered = [](sd_bus_message* reply, void* own, sd_bus_error*) {
        auto& self = *static_cast<Hand*>(own);
        self.why = Presence::notInstalled;
        if (sd_bus_message_enter_container(reply, 'a', "{sv}") < 0) return 0;
        while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
            const char* key = nullptr;
            double state = 0;
            (void)sd_bus_message_read(reply, "s", &key);
            if (key && std::string_view(key) == "state" &&
                sd_bus_message_read(reply, "v", "d", &state) > 0) {
                constexpr int error = 3, outOfDate = 4;
                self.why = whole(state) == error       ? Presence::broken
                           : whole(state) == outOfDate ? Presence::otherRelease
                                                       : Presence::switchedOff;
            } else {
                (void)sd_bus_message_skip(reply, "v");
            }
            (void)sd_bus_message_exit_container(reply);
        }
        self.changed();
        return 0;
    };
    if (sd_bus_call_method_async(link.bus(), &slot, "org.gnome.Shell", "/org/gnome/Shell",
                                 "org.gnome.Shell.Extensions", "GetExtensionInfo", answered, this,
                                 "s", extension.c_str()) >= 0)
        question.reset(slot);
    link.settle();
}

void Hand::onFresh(const void* owner, std::function<void(bool)> ask) {
    std::erase_if(fresh, [owner](const auto& one) { return one.first == owner; });
    if (ask) fresh.emplace_back(owner, std::move(ask));
}

void Hand::ask(bool again) {
    for (std::size_t i = 0; i < fresh.size(); ++i)
        fresh[i].second(again);
}

bus::Message Hand::begin(const char* member) {
    sd_bus_message* message = nullptr;
    if (!link.bus() || sd_bus_message_new_method_call(link.bus(), &message, handName, handPath,
                                                      handInterface, member) < 0)
        return nullptr;
    (void)sd_bus_message_set_auto_start(message, 0);
    return bus::Message(message);
}

void Hand::send(bus::Message message) {
    if (!isHere || !message) return;
    (void)sd_bus_message_set_expect_reply(message.get(), 0);
    (void)sd_bus_send(link.bus(), message.get(), nullptr);
    link.settle();
}

bus::Message Hand::call(bus::Message message, std::uint64_t microseconds) {
    if (!message) return nullptr;
    sd_bus_message* reply = nullptr;
    (void)sd_bus_call(link.bus(), message.get(), microseconds, nullptr, &reply);
    link.settle();
    return bus::Message(reply);
}

void Hand::hold(const Rect& monitor, std::optional<Point> place) {
    bus::Message message = begin("Hold");
    if (!message) return;
    appendArea(message.get(), monitor);
    const Point to = place.value_or(Point{});
    (void)sd_bus_message_append(message.get(), "b(dd)", place.has_value(), to.x, to.y);
    send(std::move(message));
}

void Hand::release() {
    send(begin("Release"));
}

void Hand::setCrossing(double pixels) {
    crossing = pixels;
    link.callSoon();
}

void Hand::warp(Point place) {
    bus::Message message = begin("Warp");
    if (message) (void)sd_bus_message_append(message.get(), "(dd)", place.x, place.y);
    send(std::move(message));
}

std::optional<Hand::Seen> Hand::where() {
    const bus::Message reply = isHere ? call(begin("Where"), tenth) : nullptr;
    Seen seen;
    if (!reply ||
        sd_bus_message_read(reply.get(), "(dd)u", &seen.place.x, &seen.place.y, &seen.state) <= 0)
        return std::nullopt;
    return seen;
}

void Hand::watch(bool motion, bool state) {
    bus::Message message = begin("Watch");
    if (message) (void)sd_bus_message_append(message.get(), "bb", motion, state);
    send(std::move(message));
}

void Hand::cover(std::uint32_t number, const Veil& veil) {
    showLater(number, veil);
}

void Hand::uncover(std::uint32_t number) {
    showLater(number, std::nullopt);
}

void Hand::showLater(std::uint32_t number, const std::optional<Veil>& veil) {
    std::erase_if(veils, [number](const auto& one) { return one.first == number; });
    veils.emplace_back(number, veil);
    link.callSoon();
}

// The shell draws as soon as it has taken in a veil, and whatever comes then waits for that: for as
// long as a frame and more. So the cursor goes first.
void Hand::sendLater() {
    if (const auto pixels = std::exchange(crossing, std::nullopt)) {
        bus::Message message = begin("Crossing");
        if (message) (void)sd_bus_message_append(message.get(), "d", *pixels);
        send(std::move(message));
    }
    for (const auto& [number, veil] : veils) {
        bus::Message message = begin(veil ? "Cover" : "Uncover");
        if (!message) continue;
        (void)sd_bus_message_append(message.get(), "u", number);
        if (veil) {
            appendArea(message.get(), veil->area);
            (void)sd_bus_message_append(message.get(), "udb", veil->colour, veil->opacity,
                                        veil->catches);
        }
        send(std::move(message));
    }
    veils.clear();
}

void Hand::hideCursor(bool hidden) {
    bus::Message message = begin("HideCursor");
    if (message) (void)sd_bus_message_append(message.get(), "b", hidden);
    send(std::move(message));
}

void Hand::grab(std::uint32_t number, const std::string& accelerator,
                std::function<void(bool)> granted) {
    const bus::Message message = isHere ? begin("Grab") : nullptr;
    if (!message) return;
    (void)sd_bus_message_append(message.get(), "us", number, accelerator.c_str());
    Claim& claim = claims[number];
    claim.owner = this;
    claim.granted = std::move(granted);
    const auto answered = [](sd_bus_message* reply, void* own, sd_bus_error*) {
        const auto& known = *static_cast<Claim*>(own);
        int yes = 0;
        if (!sd_bus_message_is_method_error(reply, nullptr))
            (void)sd_bus_message_read(reply, "b", &yes);
        known.granted(yes != 0);
        return 0;
    };
    sd_bus_slot* slot = nullptr;
    if (sd_bus_call_async(link.bus(), &slot, message.get(), answered, &claim, second) >= 0)
        claim.slot.reset(slot);
    link.settle();
}

void Hand::ungrab(std::uint32_t number) {
    claims.erase(number);
    bus::Message message = begin("Ungrab");
    if (message) (void)sd_bus_message_append(message.get(), "u", number);
    send(std::move(message));
}

bool Hand::record(std::function<void(std::uint32_t, State)> handler) {
    bus::Message message = isHere ? begin("Record") : nullptr;
    if (!message) return false;
    (void)sd_bus_message_append(message.get(), "b", 1);
    const bus::Message reply = call(std::move(message), second);
    int granted = 0;
    if (reply) (void)sd_bus_message_read(reply.get(), "b", &granted);
    if (granted) typed = std::move(handler);
    return granted != 0;
}

void Hand::stopRecording() {
    typed = {};
    bus::Message message = begin("Record");
    if (message) (void)sd_bus_message_append(message.get(), "b", 0);
    send(std::move(message));
}

void Hand::switchWorkspace(int step) {
    bus::Message message = begin("SwitchWorkspace");
    if (message) (void)sd_bus_message_append(message.get(), "i", step);
    send(std::move(message));
}

int Hand::heard(sd_bus_message& message) {
    const std::string_view member = sd_bus_message_get_member(&message);
    if (member == "Pushed") {
        readPushes(message);
        link.callSoon();
    } else if (member == "Kept") {
        isKept = true;
        link.callSoon();
    } else if (member == "Seen") {
        Seen seen;
        if (sd_bus_message_read(&message, "(dd)u", &seen.place.x, &seen.place.y, &seen.state) > 0)
            sights.push_back(seen);
        link.callSoon();
    } else if (member == "Pressed") {
        std::uint32_t number = 0;
        if (sd_bus_message_read(&message, "u", &number) > 0 && pressed) pressed(number);
    } else if (member == "Typed") {
        std::uint32_t keycode = 0, state = 0;
        if (sd_bus_message_read(&message, "uu", &keycode, &state) > 0 && typed)
            typed(keycode, state);
    } else if (member == "Dark") {
        int wished = 0;
        if (sd_bus_message_read(&message, "b", &wished) > 0 && dark) dark(wished != 0);
    } else if (member == "Freed") {
        const char* reason = nullptr;
        if (sd_bus_message_read(&message, "s", &reason) <= 0) return 0;
        isFresh = std::string_view(reason) != "shortcut";
        link.callSoon();
    }
    return 0;
}

void Hand::readPushes(sd_bus_message& message) {
    constexpr double milliseconds = 1e-3;
    if (sd_bus_message_enter_container(&message, 'a', "(ddddu)") < 0) return;
    Push push;
    std::uint32_t time = 0;
    while (sd_bus_message_read(&message, "(ddddu)", &push.from.x, &push.from.y, &push.step.x,
                               &push.step.y, &time) > 0) {
        push.time = time * milliseconds;
        pushes.push_back(push);
    }
}

void Hand::turn() {
    if (const auto again = std::exchange(isFresh, std::nullopt)) ask(*again);
    if (!pushes.empty() && handlers.pushed) handlers.pushed(pushes);
    pushes.clear();
    if (std::exchange(isKept, false) && handlers.kept) handlers.kept();
    while (!sights.empty()) {
        const Seen one = sights.front();
        sights.pop_front();
        if (handlers.seen) handlers.seen(one);
    }
    sendLater();
}

} // namespace platform::gnome
