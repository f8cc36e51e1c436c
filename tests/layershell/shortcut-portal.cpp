// A desktop portal that binds shortcuts for programs: it prints what it is asked for, a line each.
// With "none" for an argument it binds nothing. Who calls Press has a program told that its
// shortcut was pressed. Runs until it is killed.

#include "bus/Handles.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr const char* path = "/org/freedesktop/portal/desktop";
constexpr const char* shortcuts = "org.freedesktop.portal.GlobalShortcuts";

struct Portal {
    bool binds = true;
    std::string session;
};

void print(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

// The text of an option in the dictionary that comes next.
std::string option(sd_bus_message* call, std::string_view wanted) {
    std::string found;
    (void)sd_bus_message_enter_container(call, 'a', "{sv}");
    while (sd_bus_message_enter_container(call, 'e', "sv") > 0) {
        const char *key = "", *text = "";
        (void)sd_bus_message_read(call, "sv", &key, "s", &text);
        if (key == wanted) found = text;
        (void)sd_bus_message_exit_container(call);
    }
    (void)sd_bus_message_exit_container(call);
    return found;
}

std::string pathFor(sd_bus_message* call, const char* kind, const std::string& token) {
    std::string sender = sd_bus_message_get_sender(call) + 1;
    std::ranges::replace(sender, '.', '_');
    return std::string(path) + "/" + kind + "/" + sender + "/" + token;
}

// The answer with the request's path, and what came of it.
void answer(sd_bus_message* call, const std::string& token, bool isDone, const auto& append) {
    const std::string request = pathFor(call, "request", token);
    (void)sd_bus_reply_method_return(call, "o", request.c_str());
    sd_bus_message* made = nullptr;
    (void)sd_bus_message_new_signal(sd_bus_message_get_bus(call), &made, request.c_str(),
                                    "org.freedesktop.portal.Request", "Response");
    const bus::Message signal(made);
    (void)sd_bus_message_append(made, "u", isDone ? 0U : 2U);
    append(made);
    (void)sd_bus_message_set_destination(made, sd_bus_message_get_sender(call));
    (void)sd_bus_send(nullptr, made, nullptr);
}

int create(sd_bus_message* call, void* own, sd_bus_error*) {
    auto& portal = *static_cast<Portal*>(own);
    (void)sd_bus_message_rewind(call, 1);
    const std::string session = option(call, "session_handle_token");
    (void)sd_bus_message_rewind(call, 1);
    portal.session = pathFor(call, "session", session);
    answer(call, option(call, "handle_token"), true, [&](sd_bus_message* signal) {
        (void)sd_bus_message_append(signal, "a{sv}", 1, "session_handle", "s",
                                    portal.session.c_str());
    });
    return 1;
}

int bind(sd_bus_message* call, void* own, sd_bus_error*) {
    const auto& portal = *static_cast<Portal*>(own);
    const char *session = "", *window = "", *id = "";
    std::string last;
    (void)sd_bus_message_read(call, "o", &session);
    (void)sd_bus_message_enter_container(call, 'a', "(sa{sv})");
    while (sd_bus_message_enter_container(call, 'r', "sa{sv}") > 0) {
        (void)sd_bus_message_read(call, "s", &id);
        last = id;
        print("bind " + last + " " + option(call, "preferred_trigger"));
        (void)sd_bus_message_exit_container(call);
    }
    (void)sd_bus_message_exit_container(call);
    (void)sd_bus_message_read(call, "s", &window);
    answer(call, option(call, "handle_token"), true, [&](sd_bus_message* signal) {
        (void)sd_bus_message_open_container(signal, 'a', "{sv}");
        (void)sd_bus_message_open_container(signal, 'e', "sv");
        (void)sd_bus_message_append(signal, "s", "shortcuts");
        (void)sd_bus_message_open_container(signal, 'v', "a(sa{sv})");
        if (portal.binds)
            (void)sd_bus_message_append(signal, "a(sa{sv})", 1, last.c_str(), 0);
        else
            (void)sd_bus_message_append(signal, "a(sa{sv})", 0);
        for (int open = 0; open < 3; ++open)
            (void)sd_bus_message_close_container(signal);
    });
    return 1;
}

int press(sd_bus_message* call, void* own, sd_bus_error*) {
    const auto& portal = *static_cast<Portal*>(own);
    const char* id = "";
    (void)sd_bus_message_read(call, "s", &id);
    (void)sd_bus_emit_signal(sd_bus_message_get_bus(call), path, shortcuts, "Activated", "osta{sv}",
                             portal.session.c_str(), id, std::uint64_t{0}, 0);
    return sd_bus_reply_method_return(call, "");
}

const sd_bus_vtable methods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("CreateSession", "a{sv}", "o", create, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("BindShortcuts", "oa(sa{sv})sa{sv}", "o", bind, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Press", "s", "", press, SD_BUS_VTABLE_UNPRIVILEGED), SD_BUS_VTABLE_END};

} // namespace

int main(int argc, char** argv) {
    Portal portal;
    portal.binds = argc < 2 || argv[1] != std::string_view("none");
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) return 1;
    const bus::Connection bus(opened);
    if (sd_bus_add_object_vtable(opened, nullptr, path, shortcuts, methods, &portal) < 0 ||
        sd_bus_request_name(opened, "org.freedesktop.portal.Desktop", 0) < 0)
        return 1;
    print("ready");
    while (true) {
        const int done = sd_bus_process(opened, nullptr);
        if (done < 0 || (done == 0 && sd_bus_wait(opened, ~std::uint64_t{0}) < 0)) return 1;
    }
}
