#include "platform/layershell/portal/Shortcuts.h"

#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <string_view>
#include <utility>

// A session of the portal takes shortcuts once. So another one is made when others are wanted than
// those that it has, and none is while they are the same: the desktop may ask the user each time.
// Each request is answered twice, at once with its path and later, by a signal from that path, with
// what came of it.

namespace platform::layershell::portal {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* shortcutsName = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* registryName = "org.freedesktop.host.portal.Registry";
constexpr std::string_view idOfFirst = "toggle";

std::string idOf(std::size_t index) {
    return std::string(idOfFirst) + (index == 0 ? "" : "-" + std::to_string(index + 1));
}

} // namespace

std::string triggerOf(const Shortcut& shortcut) {
    const auto* const key = session::physicalKey(shortcut.keyCode);
    if (!key) return {};
    const bool isFunction =
        key->name.size() > 1 && key->name[0] == 'F' &&
        std::ranges::all_of(key->name.substr(1), [](char c) { return c >= '0' && c <= '9'; });
    std::string name(key->name);
    if (name.size() == 1 && name[0] >= 'A' && name[0] <= 'Z')
        name[0] = static_cast<char>(name[0] - 'A' + 'a');
    const bool isPlain = name.size() == 1 &&
                         ((name[0] >= 'a' && name[0] <= 'z') || (name[0] >= '0' && name[0] <= '9'));
    if (!isFunction && !isPlain) return {};
    constexpr std::pair<std::uint32_t, const char*> words[] = {{Shortcut::control, "CTRL+"},
                                                               {Shortcut::option, "ALT+"},
                                                               {Shortcut::shift, "SHIFT+"},
                                                               {Shortcut::command, "LOGO+"}};
    std::string text;
    for (const auto& [flag, word] : words)
        if (shortcut.modifierFlags & flag) text += word;
    return text + name;
}

Shortcuts::Shortcuts(Descriptors& descriptors, Log& log, Program own,
                     std::function<void(bool)> handler)
    : link(descriptors, log), program(std::move(own)), toldHandler(std::move(handler)) {
    link.add(*this);
    if (link.wait() != bus::Link::State::up) tell(false);
    link.start();
}

Shortcuts::~Shortcuts() {
    link.remove(*this);
}

void Shortcuts::attach(sd_bus& bus) {
    response.reset();
    reply.reset();
    session.clear();
    asked.clear();
    isAsking = false;
    const std::string rule = std::string("type='signal',sender='") + portalName + "',path='" +
                             portalPath + "',interface='" + shortcutsName + "',member='Activated'";
    const auto signal = [](sd_bus_message* message, void* self, sd_bus_error*) {
        static_cast<Shortcuts*>(self)->activated(*message);
        return 0;
    };
    sd_bus_slot* slot = nullptr;
    if (sd_bus_add_match_async(&bus, &slot, rule.c_str(), signal, nullptr, this) >= 0)
        signals.reset(slot);
}

// A portal of before 1.20 has no such registry, and finds out who calls by itself.
void Shortcuts::up() {
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(link.bus(), &made, portalName, portalPath, registryName,
                                       "Register") < 0)
        return;
    const bus::Message call(made);
    if (sd_bus_message_append(made, "sa{sv}", program.identifier.c_str(), 0) >= 0 &&
        sd_bus_message_set_expect_reply(made, 0) >= 0)
        (void)sd_bus_send(link.bus(), made, nullptr);
    link.callSoon();
}

void Shortcuts::hear(const std::vector<Binding>& list) {
    wanted = list;
    std::erase_if(wanted, [](const Binding& one) { return !one.isChosen; });
    link.callSoon();
}

// Several may have changed at once. While nothing is wanted, as when a key is recorded, what is
// bound stays and is not heeded.
void Shortcuts::turn() {
    if (std::exchange(isNews, false)) toldHandler(*told);
    if (!link.bus() || isAsking || wanted.empty()) return;
    const auto isAsked = [this](const Binding& one) {
        return std::ranges::find(asked, one.shortcut) != asked.end();
    };
    if (asked.size() == wanted.size() && std::ranges::all_of(wanted, isAsked)) return;
    closeSession();
    isAsking = true;
    bus::Message call = begin("CreateSession");
    const std::string token = "token" + std::to_string(++tokens);
    if (!call || sd_bus_message_open_container(call.get(), 'a', "{sv}") < 0 ||
        sd_bus_message_append(call.get(), "{sv}", "session_handle_token", "s", token.c_str()) < 0)
        return;
    request(std::move(call), &Shortcuts::created);
}

void Shortcuts::closeSession() {
    if (session.empty()) return;
    (void)sd_bus_call_method_async(link.bus(), nullptr, portalName, session.c_str(),
                                   "org.freedesktop.portal.Session", "Close", nullptr, nullptr, "");
    session.clear();
    asked.clear();
}

bus::Message Shortcuts::begin(const char* member) const {
    sd_bus_message* made = nullptr;
    (void)sd_bus_message_new_method_call(link.bus(), &made, portalName, portalPath, shortcutsName,
                                         member);
    return bus::Message(made);
}

// The signal may come before the answer, so it is listened for at the path that the portal makes of
// the caller's name and the token.
void Shortcuts::request(bus::Message message, void (Shortcuts::*answered)(sd_bus_message&)) {
    const std::string token = "token" + std::to_string(++tokens);
    const char* name = nullptr;
    if (sd_bus_message_append(message.get(), "{sv}", "handle_token", "s", token.c_str()) < 0 ||
        sd_bus_message_close_container(message.get()) < 0 ||
        sd_bus_get_unique_name(link.bus(), &name) < 0)
        return;
    std::string sender(name + 1);
    std::ranges::replace(sender, '.', '_');
    const std::string rule = std::string("type='signal',sender='") + portalName +
                             "',interface='org.freedesktop.portal.Request',member='Response',"
                             "path='" +
                             portalPath + "/request/" + sender + "/" + token + "'";
    heard = answered;
    const auto signal = [](sd_bus_message* answer, void* own, sd_bus_error*) {
        auto& self = *static_cast<Shortcuts*>(own);
        (self.*self.heard)(*answer);
        return 0;
    };
    sd_bus_slot* slot = nullptr;
    if (sd_bus_add_match_async(link.bus(), &slot, rule.c_str(), signal, nullptr, this) >= 0)
        response.reset(slot);
    const auto refused = [](sd_bus_message* answer, void* own, sd_bus_error*) {
        auto& self = *static_cast<Shortcuts*>(own);
        if (sd_bus_message_is_method_error(answer, nullptr)) self.tell(false);
        return 0;
    };
    if (sd_bus_call_async(link.bus(), &slot, message.get(), refused, this, 0) >= 0)
        reply.reset(slot);
    link.settle();
}

void Shortcuts::created(sd_bus_message& answered) {
    std::uint32_t code = 1;
    if (sd_bus_message_read(&answered, "u", &code) < 0 || code != 0 ||
        sd_bus_message_enter_container(&answered, 'a', "{sv}") < 0)
        return tell(false);
    const char *key = nullptr, *path = nullptr;
    while (session.empty() && sd_bus_message_enter_container(&answered, 'e', "sv") > 0) {
        // It is a text, although it is a path.
        if (sd_bus_message_read(&answered, "s", &key) < 0) break;
        if (key == std::string_view("session_handle") &&
            sd_bus_message_read(&answered, "v", "s", &path) > 0)
            session = path;
        else if (sd_bus_message_skip(&answered, "v") < 0)
            break;
        (void)sd_bus_message_exit_container(&answered);
    }
    if (session.empty()) return tell(false);
    bind();
}

void Shortcuts::bind() {
    asked.clear();
    for (const Binding& one : wanted)
        asked.push_back(one.shortcut);
    bus::Message call = begin("BindShortcuts");
    if (!call || sd_bus_message_append(call.get(), "o", session.c_str()) < 0) return tell(false);
    appendShortcuts(*call);
    if (sd_bus_message_append(call.get(), "s", "") < 0 || // the window that asks: there is none
        sd_bus_message_open_container(call.get(), 'a', "{sv}") < 0)
        return tell(false);
    request(std::move(call), &Shortcuts::bound);
}

// What cannot be written makes the message one that the bus refuses to send.
void Shortcuts::appendShortcuts(sd_bus_message& message) const {
    (void)sd_bus_message_open_container(&message, 'a', "(sa{sv})");
    for (std::size_t i = 0; i < asked.size(); ++i) {
        const std::string trigger = triggerOf(asked[i]);
        (void)sd_bus_message_open_container(&message, 'r', "sa{sv}");
        (void)sd_bus_message_append(&message, "s", idOf(i).c_str());
        (void)sd_bus_message_open_container(&message, 'a', "{sv}");
        (void)sd_bus_message_append(&message, "{sv}", "description", "s", program.command.c_str());
        if (!trigger.empty())
            (void)sd_bus_message_append(&message, "{sv}", "preferred_trigger", "s",
                                        trigger.c_str());
        (void)sd_bus_message_close_container(&message);
        (void)sd_bus_message_close_container(&message);
    }
    (void)sd_bus_message_close_container(&message);
}

// The desktop may have left some out, or all of them where the user wants none.
void Shortcuts::bound(sd_bus_message& answered) {
    std::uint32_t code = 1;
    bool isAny = false;
    if (sd_bus_message_read(&answered, "u", &code) > 0 && code == 0 &&
        sd_bus_message_enter_container(&answered, 'a', "{sv}") > 0)
        while (!isAny && sd_bus_message_enter_container(&answered, 'e', "sv") > 0) {
            const char* key = nullptr;
            if (sd_bus_message_read(&answered, "s", &key) <= 0) break;
            if (key == std::string_view("shortcuts") &&
                sd_bus_message_enter_container(&answered, 'v', "a(sa{sv})") > 0 &&
                sd_bus_message_enter_container(&answered, 'a', "(sa{sv})") > 0)
                isAny = sd_bus_message_at_end(&answered, 0) == 0;
            else if (sd_bus_message_skip(&answered, "v") < 0 ||
                     sd_bus_message_exit_container(&answered) < 0)
                break;
        }
    tell(isAny);
}

void Shortcuts::tell(bool binds) {
    isAsking = false;
    isNews = std::exchange(told, binds) != binds;
    // What was refused is not asked for again before there is something else to ask for.
    if (!binds) {
        asked.clear();
        for (const Binding& one : wanted)
            asked.push_back(one.shortcut);
    }
    link.callSoon();
}

void Shortcuts::activated(sd_bus_message& signal) {
    const char *path = nullptr, *id = nullptr;
    if (sd_bus_message_read(&signal, "os", &path, &id) < 0 || session != path) return;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        if (id != idOf(i)) continue;
        const auto found = std::ranges::find(wanted, asked[i], &Binding::shortcut);
        if (found != wanted.end()) link.afterMessage([pressed = found->pressed] { pressed(); });
        return;
    }
}

} // namespace platform::layershell::portal
