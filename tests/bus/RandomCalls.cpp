#include "bus/RandomCalls.h"

#include "app/SettingsTable.h"
#include "bus/Names.h"

#include <limits>
#include <utility>

namespace bus {

namespace {

constexpr const char* properties = "org.freedesktop.DBus.Properties";

/// The end of the complete type that `types` begins with.
std::size_t endOfFirst(const std::string& types) {
    std::size_t at = 0;
    while (types[at] == 'a')
        ++at;
    int open = 0;
    do {
        if (types[at] == '(' || types[at] == '{') ++open;
        if (types[at] == ')' || types[at] == '}') --open;
        ++at;
    } while (open > 0);
    return at;
}

} // namespace

RandomCalls::RandomCalls(unsigned seed, std::string busName)
    : random(seed), name(std::move(busName)), path(objectPath(name)) {}

Message RandomCalls::next(sd_bus* caller) {
    static constexpr Target targets[] = {
        {productInterface, "Toggle", ""},
        {productInterface, "Free", "u"},
        {productInterface, "CrossTo", "s"},
        {productInterface, "ShowMenu", ""},
        {productInterface, "Quit", ""},
        {productInterface, "ListSettings", ""},
        {productInterface, "GetSetting", "s"},
        {productInterface, "SetSetting", "ss"},
        {productInterface, "SetSetting", "ss"},
        {productInterface, "SetSetting", "ss"},
        {productInterface, "ResetSetting", "s"},
        {productInterface, "Report", ""},
        {properties, "Get", "ss"},
        {properties, "GetAll", "s"},
        {properties, "Set", "ssv"},
        {properties, "Set", "ssv"},
        {"org.freedesktop.DBus.Introspectable", "Introspect", ""},
        {"org.freedesktop.DBus.Peer", "Ping", ""},
        {"org.freedesktop.Application", "Activate", "a{sv}"},
        {"org.freedesktop.Application", "Open", "asa{sv}"},
        {"org.freedesktop.Application", "ActivateAction", "sava{sv}"}};
    const Target& target = targets[below(std::size(targets))];
    const Target& other = targets[below(std::size(targets))];
    std::string member = target.member;
    if (below(20) == 0) member.insert(below(static_cast<unsigned>(member.size())), "x");
    const char* interface = target.interface;
    if (below(20) == 0) interface = below(2) == 0 ? other.interface : nullptr;
    const std::string place =
        below(20) > 0 ? path : pick({"/", "/com", path + "/more", "/com/tamberlo", "/x_1"});

    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(caller, &made, name.c_str(), place.c_str(), interface,
                                       member.c_str()) < 0)
        return nullptr;
    Message call(made);
    std::string arguments = target.arguments;
    if (below(5) == 0) arguments = other.arguments;
    if (below(8) == 0) arguments.clear();
    for (unsigned more = below(8) == 0 ? 1 + below(3) : 0; more > 0; --more)
        arguments += type(0);
    // Of what goes with the standard interface, the product's own is the one that is meant.
    if (interface == properties && arguments.starts_with('s') && below(8) > 0) {
        if (sd_bus_message_append(made, "s", productInterface) < 0) return nullptr;
        arguments.erase(0, 1);
        if (member == "Set" && arguments == "sv" && below(3) == 0)
            return sd_bus_message_append(made, "sv", "Active", "b", below(2)) < 0 ? nullptr
                                                                                  : std::move(call);
    }
    // Most names go with values of some kind.
    if (member == "SetSetting" && arguments == "ss" && below(8) > 0) {
        if (sd_bus_message_append(made, "ss", word().c_str(), value().c_str()) < 0) return nullptr;
        arguments.clear();
    }
    while (!arguments.empty()) {
        const auto end = endOfFirst(arguments);
        if (!append(made, arguments.substr(0, end))) return nullptr;
        arguments.erase(0, end);
    }
    if (below(30) == 0) (void)sd_bus_message_set_expect_reply(made, 0);
    return call;
}

std::string RandomCalls::word() {
    static const std::vector<std::string> known = {
        "Active",   "Held",     "Freed",    "Monitors", "Shortcut", "Capabilities",
        "Version",  "Screen-1", "screen-2", "Screen-2", "DUMMY0",   productInterface,
        properties, "on",       "silent",   "display",  ""};
    const auto table = palisor::settingsTable();
    const palisor::Setting& setting = table[below(static_cast<unsigned>(table.size()))];
    switch (below(8)) {
    case 0:
        return noise();
    case 1:
        return value();
    case 2:
    case 3:
        return pick(known);
    case 4:
        return std::string(setting.key);
    default:
        return std::string(setting.name);
    }
}

std::string RandomCalls::value() {
    switch (below(4)) {
    case 0:
        return pick({"on", "off", "YES", "no", "true", "False", " 1 ", "0"});
    case 1:
        return std::to_string(below(below(3) == 0 ? 100'000 : 120)) +
               pick({"", "%", "s", " %", "x"});
    case 2:
        return pick({"none", "Ctrl+Super+K", "Ctrl+Alt+F2", "K", "Shift+K", "Super+", "+",
                     "Ctrl+Ctrl", "-1", "99999999999999999999", "-99999999999999999999", "1e3",
                     "0x10", "Pop"});
    default:
        return noise();
    }
}

/// Any text in UTF-8, also one that takes a format for its own, and one that is too long for most
/// places.
std::string RandomCalls::noise() {
    static const std::vector<std::string> letters = {"a",  "Z",  "0",    " ",  "\n", "\x1b[2J",
                                                     "%s", "%n", "\"",   "\\", "/",  "ä",
                                                     "€",  "😀",  "\x7f", "+"};
    constexpr unsigned usual = 12, longer = 700, huge = 100'000;
    unsigned length = below(usual);
    if (below(6) == 0) length = below(longer);
    if (below(300) == 0) length = below(huge);
    std::string text;
    while (text.size() < length)
        text += pick(letters);
    return text;
}

/// One complete type.
std::string RandomCalls::type(int depth) {
    static const std::string basic = "ybnqiuxtdsog";
    constexpr int deepest = 4;
    const std::string simple(1, basic[below(static_cast<unsigned>(basic.size()))]);
    switch (depth < deepest ? below(8) : 7) {
    case 0:
        return "a" + type(depth + 1);
    case 1:
        return "v";
    case 2:
        return "(" + type(depth + 1) + type(depth + 1) + ")";
    case 3:
        return "a{" + simple + type(depth + 1) + "}";
    default:
        return simple;
    }
}

bool RandomCalls::append(sd_bus_message* message, const std::string& types) {
    const auto whole = [&](char kind, const std::string& contents, unsigned times) {
        if (sd_bus_message_open_container(message, kind, contents.c_str()) < 0) return false;
        for (; times > 0; --times)
            for (std::size_t at = 0, length = 0; at < contents.size(); at += length) {
                length = endOfFirst(contents.substr(at));
                if (!append(message, contents.substr(at, length))) return false;
            }
        return sd_bus_message_close_container(message) >= 0;
    };
    switch (types[0]) {
    case 'a':
        return whole('a', types.substr(1), below(4));
    case '(':
        return whole('r', types.substr(1, types.size() - 2), 1);
    case '{':
        return whole('e', types.substr(1, types.size() - 2), 1);
    case 'v':
        return whole('v', type(2), 1);
    default:
        return appendBasic(message, types[0]);
    }
}

bool RandomCalls::appendBasic(sd_bus_message* message, char type) {
    std::string text;
    switch (type) {
    case 's':
        text = word();
        break;
    case 'o':
        text = pick({"/", path, "/a/b"});
        break;
    case 'g':
        text = pick({"", "s", "a{sv}", "((ii)v)"});
        break;
    case 'b': {
        const int flag = static_cast<int>(below(2));
        return sd_bus_message_append_basic(message, type, &flag) >= 0;
    }
    case 'd': {
        using Limits = std::numeric_limits<double>;
        const double numbers[] = {0, -1, 1.5, Limits::infinity(), Limits::quiet_NaN(), 1e300};
        return sd_bus_message_append_basic(message, type, &numbers[below(6)]) >= 0;
    }
    default: {
        // Of any width: the lowest bytes are taken.
        const std::uint64_t numbers[] = {0, 1, 60, 86'400, 86'401, ~std::uint64_t{0}, random()};
        return sd_bus_message_append_basic(message, type, &numbers[below(7)]) >= 0;
    }
    }
    return sd_bus_message_append_basic(message, type, text.c_str()) >= 0;
}

} // namespace bus
