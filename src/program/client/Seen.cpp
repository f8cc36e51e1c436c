#include "program/client/Seen.h"

#include "platform/json/Writer.h"

#include <array>
#include <cstdio>

namespace client {

namespace {

using platform::json::Member;
using platform::json::object;
using platform::json::Raw;

constexpr std::array<std::string_view, 7> all = {"Active",   "Held",         "Freed",  "Monitors",
                                                 "Shortcut", "Capabilities", "Version"};

const char* yesOrNo(bool is) {
    return is ? "yes" : "no";
}

std::string lineOf(const SeenMonitor& monitor) {
    char text[128];
    (void)std::snprintf(text, sizeof text, " %dx%d%+d%+d, scale %g", monitor.width, monitor.height,
                        monitor.x, monitor.y, monitor.scale);
    return "monitor " + monitor.name + text + (monitor.primary ? ", primary" : "") +
           (monitor.held ? ", held" : "") + (monitor.dark ? ", dark" : "") + "\n";
}

std::string lineOf(const SeenCapability& capability) {
    return "can " + capability.id + ": " + yesOrNo(capability.available) +
           (capability.reason.empty() ? "" : " (" + capability.reason + ")") + "\n";
}

Raw rawOf(const SeenMonitor& monitor) {
    return object(Member{"name", std::string_view(monitor.name)}, Member{"x", monitor.x},
                  Member{"y", monitor.y}, Member{"width", monitor.width},
                  Member{"height", monitor.height}, Member{"scale", monitor.scale},
                  Member{"primary", monitor.primary}, Member{"held", monitor.held},
                  Member{"dark", monitor.dark});
}

Raw rawOf(const SeenCapability& capability) {
    return object(Member{"id", std::string_view(capability.id)},
                  Member{"available", capability.available},
                  Member{"reason", std::string_view(capability.reason)});
}

template <class T>
std::vector<Raw> rawOf(const std::vector<T>& items) {
    std::vector<Raw> raw;
    for (const T& item : items)
        raw.push_back(rawOf(item));
    return raw;
}

void read(sd_bus_message* value, bool& into) {
    int is = 0;
    if (sd_bus_message_read(value, "b", &is) > 0) into = is != 0;
}

void read(sd_bus_message* value, std::string& into) {
    const char* text = nullptr;
    if (sd_bus_message_read(value, "s", &text) > 0) into = text;
}

void read(sd_bus_message* value, std::vector<SeenMonitor>& into) {
    into.clear();
    if (sd_bus_message_enter_container(value, 'a', "(s(iiii)dbbb)") < 0) return;
    for (;;) {
        SeenMonitor one;
        const char* name = nullptr;
        int primary = 0, held = 0, dark = 0;
        if (sd_bus_message_read(value, "(s(iiii)dbbb)", &name, &one.x, &one.y, &one.width,
                                &one.height, &one.scale, &primary, &held, &dark) <= 0)
            break;
        one.name = name;
        one.primary = primary != 0;
        one.held = held != 0;
        one.dark = dark != 0;
        into.push_back(std::move(one));
    }
    (void)sd_bus_message_exit_container(value);
}

void read(sd_bus_message* value, std::vector<SeenCapability>& into) {
    into.clear();
    if (sd_bus_message_enter_container(value, 'a', "(sbs)") < 0) return;
    const char* id = nullptr;
    const char* reason = nullptr;
    int is = 0;
    while (sd_bus_message_read(value, "(sbs)", &id, &is, &reason) > 0)
        into.push_back({id, is != 0, reason});
    (void)sd_bus_message_exit_container(value);
}

bool readProperty(Seen& seen, std::string_view name, sd_bus_message* value) {
    if (name == "Active")
        read(value, seen.active);
    else if (name == "Held")
        read(value, seen.held);
    else if (name == "Freed")
        (void)sd_bus_message_read(value, "u", &seen.freed);
    else if (name == "Monitors")
        read(value, seen.monitors);
    else if (name == "Shortcut")
        read(value, seen.shortcut);
    else if (name == "Capabilities")
        read(value, seen.capabilities);
    else if (name == "Version")
        read(value, seen.version);
    else
        return false;
    return true;
}

} // namespace

std::vector<std::string> Seen::take(sd_bus_message* message) {
    std::vector<std::string> names;
    if (sd_bus_message_enter_container(message, 'a', "{sv}") < 0) return names;
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const char* name = nullptr;
        const char* types = nullptr;
        char kind = 0;
        if (sd_bus_message_read(message, "s", &name) < 0 ||
            sd_bus_message_peek_type(message, &kind, &types) < 0 || kind != 'v' ||
            sd_bus_message_enter_container(message, 'v', types) < 0)
            break;
        if (readProperty(*this, name, message))
            names.emplace_back(name);
        else
            (void)sd_bus_message_skip(message, types);
        if (sd_bus_message_exit_container(message) < 0 ||
            sd_bus_message_exit_container(message) < 0)
            break;
    }
    (void)sd_bus_message_exit_container(message);
    return names;
}

std::string Seen::line(std::string_view property) const {
    if (property == "Active") return std::string("active ") + yesOrNo(active) + "\n";
    if (property == "Held") return "held " + (held.empty() ? "none" : held) + "\n";
    if (property == "Freed")
        return "freed " + (freed == 0 ? "no" : std::to_string(freed) + " s") + "\n";
    if (property == "Shortcut") return "shortcut " + (shortcut.empty() ? "none" : shortcut) + "\n";
    if (property == "Version") return "version " + version + "\n";
    std::string lines;
    if (property == "Monitors")
        for (const SeenMonitor& monitor : monitors)
            lines += lineOf(monitor);
    if (property == "Capabilities")
        for (const SeenCapability& capability : capabilities)
            lines += lineOf(capability);
    return lines;
}

std::string Seen::text() const {
    std::string lines;
    for (const auto property : all)
        lines += line(property);
    return lines;
}

std::string Seen::member(std::string_view property) const {
    using platform::json::members;
    if (property == "Active") return members(Member{"active", active});
    if (property == "Held") return members(Member{"held", std::string_view(held)});
    if (property == "Freed") return members(Member{"freed", freed});
    if (property == "Monitors") return members(Member{"monitors", rawOf(monitors)});
    if (property == "Shortcut") return members(Member{"shortcut", std::string_view(shortcut)});
    if (property == "Capabilities") return members(Member{"capabilities", rawOf(capabilities)});
    return members(Member{"version", std::string_view(version)});
}

std::string Seen::json() const {
    std::string text;
    for (const auto property : all)
        text += (text.empty() ? "{" : ",") + member(property);
    return text + "}";
}

} // namespace client
