#include "testing/layershell/PrivateCompositor.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace support {

namespace fs = std::filesystem;

namespace {

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
    // Up to 0.9 it draws with a graphics card alone.
    if (name == "wayfire" && !fs::exists("/dev/dri")) {
        ChildProcess asked(
            {.command = {"wayfire", "--version"}, .environment = {{"PATH", "/usr/bin:/bin"}}});
        asked.wait();
        if (asked.output().starts_with("0.9")) return "this Wayfire needs a graphics card";
    }
    return std::nullopt;
}

std::vector<std::string> PrivateCompositor::labwc() {
    const std::string config = folder.path("labwc");
    fs::create_directories(config);
    std::ofstream(config + "/rc.xml") << "<labwc_config><focus><followMouse>no</followMouse>"
                                         "</focus><desktops number=\"3\"/></labwc_config>\n";
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

PrivateCompositor::PrivateCompositor(const std::string& name)
    : WlrootsSession(2, (name == "labwc" ? "labwc" : "Wayfire") + std::string(":wlroots")) {
    std::istringstream line(announced(name == "labwc" ? labwc() : wayfire()));
    line >> variables["WAYLAND_DISPLAY"] >> variables["WAYFIRE_SOCKET"];
    if (name != "wayfire") variables.erase("WAYFIRE_SOCKET");
    // Some put the outputs side by side in an order of their own.
    const auto placed = spawn(
        "wlr-randr", {"--output", "HEADLESS-1", "--custom-mode", mode(leftWidth, leftHeight),
                      "--pos", "0,0", "--output", "HEADLESS-2", "--custom-mode",
                      mode(rightWidth, rightHeight), "--pos", std::to_string(leftWidth) + ",0"});
    if (placed->wait() != 0) throw std::runtime_error("no layout: " + placed->errors());
}

} // namespace support
