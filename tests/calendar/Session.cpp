#include "calendar/Session.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>

extern char** environ;

namespace calendartests {

namespace fs = std::filesystem;
using support::ChildProcess;

namespace {

std::string contentOf(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

} // namespace

support::Environment environment() {
    support::Environment variables;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const auto equals = text.find('=');
        if (equals != std::string::npos)
            variables[text.substr(0, equals)] = text.substr(equals + 1);
    }
    return variables;
}

Session::Session(Server server) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const fs::path base = folder.path();
    for (const char* name : {"home", "config", "data", "cache", "run", "services"})
        fs::create_directories(base / name);
    fs::permissions(base / "run", fs::perms::owner_all);
    const auto set = [](const char* name, const std::string& value) {
        ::setenv(name, value.c_str(), 1);
    };
    set("HOME", base / "home");
    set("XDG_CONFIG_HOME", base / "config");
    set("XDG_DATA_HOME", base / "data");
    set("XDG_CACHE_HOME", base / "cache");
    set("XDG_RUNTIME_DIR", base / "run");
    set("GSETTINGS_BACKEND", "memory");
    set("TZ", "Europe/Rome");
    set("LC_ALL", "C.UTF-8");
    // A bus that starts nothing is a session without the server.
    const std::string services = server == Server::present ? "<standard_session_servicedirs/>" : "";
    folder.write(
        "bus.conf",
        "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
        "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
        "<busconfig><type>session</type><listen>unix:dir=" +
            (base / "run").string() + "</listen>" + services +
            "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
            "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
    bus = std::make_unique<support::SessionBus>(environment(), folder.path("bus.conf"));
    set("DBUS_SESSION_BUS_ADDRESS", bus->address());
}

std::string Session::marker() const {
    return "XDG_RUNTIME_DIR=" + folder.path("run");
}

Session::~Session() {
    support::ProcessSweep rest(marker(), ::getpid());
    bus.reset();
    rest.end();
}

int Session::kill(const std::string& word) const {
    int count = 0;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        if (contentOf(entry.path() / "cmdline").find(word) == std::string::npos ||
            contentOf(entry.path() / "environ").find(marker()) == std::string::npos)
            continue;
        ::kill(static_cast<pid_t>(std::stoi(name)), SIGKILL);
        ++count;
    }
    return count;
}

Client::Client(const support::Environment& session) {
    input = support::makePipe();
    process = std::make_unique<ChildProcess>(
        ChildProcess::Start{{CALENDAR_CLIENT}, session, input.readEnd.get()});
    input.readEnd.reset();
}

std::string Client::ask(const std::string& command) {
    const std::string line = command + "\n";
    if (::write(input.writeEnd.get(), line.data(), line.size()) !=
        static_cast<ssize_t>(line.size()))
        throw std::runtime_error("the calendar client has gone: " + process->errors());
    const std::string end = "answered " + std::to_string(++asked) + "\n";
    if (!process->waitForText(end)) throw std::runtime_error(command + ": no answer");
    const std::string all = process->output();
    const auto last = all.find(end, read);
    std::string text = all.substr(read, last - read);
    read = last + end.size();
    if (text.starts_with("error ")) throw std::runtime_error(command + ": " + text);
    return text;
}

void Client::add(const std::string& calendar, const std::string& ics) {
    folder.write("add.ics", ics);
    ask("add " + calendar + " " + folder.path("add.ics"));
}

} // namespace calendartests
