#include "Run.h"

#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace desktop {

namespace {

constexpr std::string_view trouble = "TROUBLE, ";

bool hasTray(const support::XConnection& x) {
    const auto reply = support::own(xcb_get_selection_owner_reply(
        x.get(), xcb_get_selection_owner(x.get(), x.atom("_NET_SYSTEM_TRAY_S0")), nullptr));
    return reply && reply->owner != XCB_NONE;
}

} // namespace

std::vector<std::string> Visit::lines() const {
    std::vector<std::string> all;
    std::istringstream text(said);
    for (std::string line; std::getline(text, line);)
        all.push_back(line);
    return all;
}

std::string Visit::of(const std::string& key) const {
    for (const std::string& line : lines())
        if (line.starts_with(key + ": ")) return line.substr(key.size() + 2);
    return {};
}

std::vector<std::string> Visit::troubles() const {
    std::vector<std::string> keys;
    for (const std::string& line : lines())
        if (const auto colon = line.find(": ");
            colon != std::string::npos && line.substr(colon + 2).starts_with(trouble))
            keys.push_back(line.substr(0, colon));
    return keys;
}

bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

Visit visit(const support::Environment& environment, const std::vector<std::string>& options) {
    std::vector<std::string> command{programs() + "/palisor-doctor"};
    command.insert(command.end(), options.begin(), options.end());
    support::ChildProcess doctor({.command = command, .environment = environment});
    const auto status = doctor.wait();
    if (!status) throw std::runtime_error("the doctor did not come to an end");
    return {*status, doctor.output(), doctor.errors()};
}

Whole::Whole(const Without& without) : Product(without.layout) {
    desktop.startWindowManager("openbox");
    if (!without.compositor) desktop.startCompositor();
    notices =
        desktop.spawn(SERVICE, {"org.freedesktop.Notifications", "/org/freedesktop/Notifications"});
    if (!notices->waitForText("ready")) throw std::runtime_error(notices->errors());
    if (without.tray) return;
    const bool isTrayer = ::access("/usr/bin/trayer", X_OK) == 0;
    tray = desktop.spawn(isTrayer ? "trayer" : "stalonetray");
    const support::XConnection x(desktop.display());
    if (!waitUntil([&] { return hasTray(x); })) throw std::runtime_error(tray->errors());
}

} // namespace desktop
