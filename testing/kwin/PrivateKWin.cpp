#include "testing/kwin/PrivateKWin.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace support {

namespace fs = std::filesystem;

namespace {

Environment plain() {
    const char* const path = std::getenv("PATH");
    return {{"PATH", path ? path : "/usr/bin:/bin"}};
}

} // namespace

std::optional<std::string> PrivateKWin::missing() {
    if (!fs::exists("/usr/bin/kwin_wayland")) return "kwin_wayland is not installed";
    try {
        ChildProcess asked({.command = {"kwin_wayland", "--version"}, .environment = plain()});
        asked.wait();
        int major = 0, minor = 0;
        if (std::sscanf(asked.output().c_str(), "kwin %d.%d", &major, &minor) != 2)
            return "kwin_wayland does not tell its version: " + asked.errors();
        if (major * 100 + minor < 601) return "this KWin is older than 6.1: " + asked.output();
    } catch (const std::runtime_error&) {
        return "kwin_wayland cannot be executed here: setcap -r /usr/bin/kwin_wayland";
    }
    return std::nullopt;
}

PrivateKWin::PrivateKWin(const Options& options)
    : PrivateSession(
          {{"KWIN_COMPOSE", "Q"}, {"QT_QUICK_BACKEND", "software"}, {"LIBGL_ALWAYS_SOFTWARE", "1"}},
          options.locks ? SystemBus::own : SystemBus::none) {
    for (const char* part : {"home/.config/menus", "home/.local/share/applications"})
        fs::create_directories(folder.path(part));
    std::ofstream(configFolder() + "/kwinrc") << options.configuration;
    // Installed is what a menu of the desktop's has.
    std::ofstream(configFolder() + "/menus/applications.menu")
        << "<!DOCTYPE Menu PUBLIC \"-//freedesktop//DTD Menu 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/menu-spec/1.0/menu.dtd\">"
           "<Menu><Name>Applications</Name><DefaultAppDirs/><Include><All/></Include></Menu>";
    if (!options.desktopFile.empty())
        std::ofstream(folder.path("home/.local/share/applications/program.desktop"))
            << options.desktopFile;
    std::vector<std::string> command{
        "kwin_wayland", "--output-count", std::to_string(options.outputs),
        "--width",      "1280",           "--height",
        "720",          "--socket",       "wayland-kwin"};
    if (!options.locks) command.emplace_back("--no-lockscreen");
    if (options.shownIn.empty())
        command.emplace_back("--virtual");
    else
        command.insert(command.end(), {"--wayland-display", options.shownIn});
    if (options.locks) loginManager.emplace(variables.at("DBUS_SYSTEM_BUS_ADDRESS"));
    server = std::make_unique<ChildProcess>(ChildProcess::Start{
        .command = std::move(command), .environment = variables, .deathSignal = SIGTERM});
    variables["WAYLAND_DISPLAY"] = "wayland-kwin";
    for (const auto& [name, value] : options.more)
        variables[name] = value;
    const auto isUp = [&] {
        if (!fs::exists(socket())) return false;
        const auto asked = spawn("busctl", {"--user", "call", "org.kde.KWin", "/Scripting",
                                            "org.freedesktop.DBus.Peer", "Ping"});
        return asked->wait() == 0 && (!loginManager || loginManager->isUsed());
    };
    if (!waitUntil(isUp)) throw std::runtime_error("KWin does not start: " + log());
}

void PrivateKWin::call(const std::vector<std::string>& words) const {
    std::vector<std::string> whole{"--user", "call", "org.kde.KWin"};
    whole.insert(whole.end(), words.begin(), words.end());
    const auto asked = spawn("busctl", whole);
    if (asked->wait() != 0) throw std::runtime_error(words[0] + ": " + asked->errors());
}

void PrivateKWin::load(const std::string& text) {
    load("loaded-" + std::to_string(++evaluated), text);
}

void PrivateKWin::load(const std::string& name, const std::string& text) {
    const std::string file = folder.path(name + ".js");
    std::ofstream(file) << text;
    call({"/Scripting", "org.kde.kwin.Scripting", "loadScript", "ss", file, name});
    call({"/Scripting", "org.kde.kwin.Scripting", "start"});
}

std::string PrivateKWin::evaluate(const std::string& expression) {
    const std::string name = "asked-" + std::to_string(++evaluated), mark = name + " [";
    load(name, "print(\"" + mark + "\" + (" + expression + ") + \"]\");");
    if (!server->waitForText(mark))
        throw std::runtime_error("no answer: " + expression + "\n" + log());
    call({"/Scripting", "org.kde.kwin.Scripting", "unloadScript", "s", name});
    std::string answer;
    if (!waitUntil([&] {
            const std::string all = log();
            const auto begin = all.rfind(mark) + mark.size(), end = all.find(']', begin);
            if (end != std::string::npos) answer = all.substr(begin, end - begin);
            return end != std::string::npos;
        }))
        throw std::runtime_error("half an answer: " + expression);
    return answer;
}

} // namespace support
