#include "testing/layershell/PrivateCompositor.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>

namespace support {

namespace fs = std::filesystem;

namespace {

constexpr uid_t nobody = 65534;

// Wayfire refuses to run as root; the sockets serve root.
std::vector<std::string> asUser(std::vector<std::string> command) {
    if (getuid() != 0) return command;
    const std::string id = std::to_string(nobody);
    const std::vector<std::string> change{"setpriv",        "--reuid=" + id,    "--regid=" + id,
                                          "--clear-groups", "--pdeathsig=TERM", "--"};
    command.insert(command.begin(), change.begin(), change.end());
    return command;
}

// Descriptor 3 is the one that is waited for.
const std::string announcement =
    "sh -c 'echo $WAYLAND_DISPLAY ${WAYFIRE_SOCKET:-none} >&3 && exec 3>&-'";

std::string mode(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

} // namespace

std::optional<std::string> PrivateCompositor::missing(const std::string& name) {
    for (const std::string& command : {name, std::string("grim"), std::string("wlr-randr")})
        if (!fs::exists("/usr/bin/" + command)) return command + " is not installed";
    return std::nullopt;
}

std::vector<std::string> PrivateCompositor::labwc() {
    const std::string config = folder.path("labwc");
    fs::create_directories(config);
    std::ofstream(config + "/rc.xml") << "<labwc_config><focus><followMouse>no</followMouse>"
                                         "</focus></labwc_config>\n";
    return {"labwc", "-C", config, "-s", announcement};
}

std::vector<std::string> PrivateCompositor::wayfire() {
    const std::string config = folder.path("wayfire.ini");
    std::ofstream(config) << "[core]\nplugins = ipc ipc-rules command autostart\nxwayland = false\n"
                             "[autostart]\nannounce = "
                          << announcement
                          << "\n[output:HEADLESS-1]\nmode = " << mode(leftWidth, leftHeight)
                          << "\nposition = 0,0\n[output:HEADLESS-2]\nmode = "
                          << mode(rightWidth, rightHeight) << "\nposition = " << leftWidth
                          << ",0\n";
    return {"wayfire", "-c", config};
}

PrivateCompositor::PrivateCompositor(const std::string& name) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const char* part : {"home/.config", "run"})
        fs::create_directories(folder.path(part));
    fs::permissions(folder.path("run"), fs::perms::owner_all);
    const char* const path = std::getenv("PATH");
    variables = {{"PATH", path ? path : "/usr/bin:/bin"},
                 {"HOME", folder.path("home")},
                 {"XDG_CONFIG_HOME", configFolder()},
                 {"XDG_RUNTIME_DIR", folder.path("run")},
                 {"XDG_SESSION_TYPE", "wayland"},
                 {"LANG", "C.UTF-8"},
                 {"NO_AT_BRIDGE", "1"},
                 {"WLR_BACKENDS", "headless"},
                 {"WLR_HEADLESS_OUTPUTS", "2"},
                 {"WLR_LIBINPUT_NO_DEVICES", "1"},
                 {"WLR_RENDERER", "pixman"},
                 {"WLR_NO_HARDWARE_CURSORS", "1"}};
    bus = std::make_unique<SessionBus>(variables);
    variables["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
    const auto command = name == "labwc" ? labwc() : wayfire();
    if (getuid() == 0)
        for (const auto& part : fs::recursive_directory_iterator(folder.path()))
            if (chown(part.path().c_str(), nobody, nobody) != 0)
                throw std::runtime_error("a folder cannot be handed over");
    if (getuid() == 0 && chown(folder.path().c_str(), nobody, nobody) != 0)
        throw std::runtime_error("a folder cannot be handed over");
    // As the session's entry on the login screen does.
    variables["XDG_CURRENT_DESKTOP"] =
        (name == "labwc" ? "labwc" : "Wayfire") + std::string(":wlroots");
    server = startServer(asUser(command), variables);
    std::istringstream line(server.line);
    line >> variables["WAYLAND_DISPLAY"] >> variables["WAYFIRE_SOCKET"];
    if (name != "wayfire") variables.erase("WAYFIRE_SOCKET");
    displaySocket = folder.path("run/") + variables["WAYLAND_DISPLAY"];
    // Some put the outputs side by side in an order of their own.
    const auto placed = spawn(
        "wlr-randr", {"--output", "HEADLESS-1", "--custom-mode", mode(leftWidth, leftHeight),
                      "--pos", "0,0", "--output", "HEADLESS-2", "--custom-mode",
                      mode(rightWidth, rightHeight), "--pos", std::to_string(leftWidth) + ",0"});
    if (placed->wait() != 0) throw std::runtime_error("no layout: " + placed->errors());
}

PrivateCompositor::~PrivateCompositor() {
    ProcessSweep rest("XDG_RUNTIME_DIR=" + folder.path("run"), server.process->pid());
    bus.reset();
    rest.end();
    server.process.reset();
}

std::unique_ptr<ChildProcess>
PrivateCompositor::spawn(const std::string& command,
                         const std::vector<std::string>& arguments) const {
    std::vector<std::string> whole{command};
    whole.insert(whole.end(), arguments.begin(), arguments.end());
    return std::make_unique<ChildProcess>(ChildProcess::Start{whole, variables, -1, SIGKILL});
}

double PrivateCompositor::brightness(int output) const {
    const std::string file = folder.path("picture.ppm");
    const auto client =
        spawn("grim", {"-t", "ppm", "-o", "HEADLESS-" + std::to_string(output), file});
    if (client->wait() != 0) throw std::runtime_error("no picture: " + client->errors());
    return readPicture(file).brightness();
}

} // namespace support
