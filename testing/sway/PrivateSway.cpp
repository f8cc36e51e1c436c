#include "testing/sway/PrivateSway.h"

#include "testing/desktop/Hand.h"
#include "testing/desktop/Layout.h"
#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <linux/input-event-codes.h>
#include <stdexcept>
#include <string_view>
#include <sys/prctl.h>
#include <unistd.h>
#include <wayland-client.h>

namespace support {

namespace fs = std::filesystem;

namespace {

bool isInstalled(const std::string& command) {
    for (const char* folder : {"/usr/bin/", "/usr/local/bin/"})
        if (fs::exists(folder + command)) return true;
    return false;
}

bool isOneThatHolds() {
    FILE* const asked = ::popen("sway --version", "r");
    if (!asked) return false;
    char answer[64] = "";
    const bool isRead = std::fgets(answer, sizeof answer, asked) != nullptr;
    ::pclose(asked);
    const std::string_view text(answer);
    return isRead && (text.starts_with("sway version 1.7") || text.starts_with("sway version 1.8"));
}

constexpr uid_t nobody = 65534;

// Sway refuses to run as root, but its sockets serve root.
std::vector<std::string> asUser(std::vector<std::string> command) {
    if (getuid() != 0) return command;
    const std::string id = std::to_string(nobody);
    const std::vector<std::string> change{"setpriv",        "--reuid=" + id,    "--regid=" + id,
                                          "--clear-groups", "--pdeathsig=TERM", "--"};
    command.insert(command.begin(), change.begin(), change.end());
    return command;
}

std::uint32_t milliseconds32() {
    const auto now = Clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

} // namespace

std::optional<std::string> PrivateSway::missing() {
    for (const char* command : {"sway", "swaymsg", "grim"})
        if (!isInstalled(command)) return std::string(command) + " is not installed";
    if (!isOneThatHolds()) return "this sway is not one of 1.7 and 1.8, which the program knows";
    return std::nullopt;
}

PrivateSway::PrivateSway(const Options& options) {
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const char* part : {"home/.config", "run"})
        fs::create_directories(folder.path(part));
    fs::permissions(folder.path("run"), fs::perms::owner_all);
    const char* const path = std::getenv("PATH");
    variables = {{"PATH", path ? path : "/usr/bin:/bin"},
                 {"HOME", folder.path("home")},
                 {"XDG_CONFIG_HOME", configFolder()},
                 {"XDG_RUNTIME_DIR", runtimeFolder()},
                 {"XDG_SESSION_TYPE", "wayland"},
                 {"LANG", "C.UTF-8"},
                 {"NO_AT_BRIDGE", "1"},
                 {"WLR_BACKENDS", "headless"},
                 {"WLR_LIBINPUT_NO_DEVICES", "1"},
                 {"WLR_RENDERER", "pixman"},
                 {"WLR_NO_HARDWARE_CURSORS", "1"}};
    bus = std::make_unique<SessionBus>(variables);
    variables["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
    std::ofstream config(folder.path("config"));
    const Layout layout = parseLayout(options.layout);
    variables["WLR_HEADLESS_OUTPUTS"] = std::to_string(layout.size());
    for (std::size_t i = 0; i < layout.size(); ++i) {
        const Area& area = layout[i].area;
        config << "output HEADLESS-" << i + 1 << " mode " << area.width << "x" << area.height
               << " position " << area.x << " " << area.y << "\n";
    }
    config << "xwayland disable\nfocus_follows_mouse no\n"
           << options.configuration << "\nexec sh -c 'echo $SWAYSOCK $WAYLAND_DISPLAY >&3'\n";
    config.close();
    if (getuid() == 0)
        for (const char* part : {"", "home", "home/.config", "run"})
            if (chown(folder.path(part).c_str(), nobody, nobody) != 0)
                throw std::runtime_error("a folder cannot be handed over");
    server = startServer(asUser({"sway", "-c", folder.path("config")}), variables);
    const auto space = server.line.find(' ');
    if (space == std::string::npos) throw std::runtime_error("sway told: " + server.line);
    variables["SWAYSOCK"] = server.line.substr(0, space);
    variables["WAYLAND_DISPLAY"] = server.line.substr(space + 1);
    displaySocket = runtimeFolder() + "/" + variables["WAYLAND_DISPLAY"];
}

PrivateSway::~PrivateSway() {
    ProcessSweep rest("XDG_RUNTIME_DIR=" + runtimeFolder(), server.process->pid());
    bus.reset();
    rest.end();
    server.process.reset();
}

std::unique_ptr<ChildProcess> PrivateSway::spawn(const std::string& command,
                                                 const std::vector<std::string>& arguments) const {
    std::vector<std::string> whole{command};
    whole.insert(whole.end(), arguments.begin(), arguments.end());
    return std::make_unique<ChildProcess>(ChildProcess::Start{whole, variables, -1, SIGKILL});
}

void PrivateSway::run(const std::string& command) const {
    const auto client = spawn("swaymsg", {"--", command});
    if (client->wait() != 0)
        throw std::runtime_error(command + ": " + client->output() + client->errors());
}

std::string PrivateSway::ask(const std::string& question) const {
    const auto client = spawn("swaymsg", {"-r", "-t", question});
    if (client->wait() != 0) throw std::runtime_error(question + ": " + client->errors());
    return client->output();
}

std::string PrivateSway::picture(int output) const {
    const std::string file = folder.path("picture.ppm");
    const auto client =
        spawn("grim", {"-t", "ppm", "-o", "HEADLESS-" + std::to_string(output), file});
    if (client->wait() != 0) throw std::runtime_error("no picture: " + client->errors());
    std::ifstream picture(file, std::ios::binary);
    std::string kind;
    int width = 0, height = 0, most = 0;
    picture >> kind >> width >> height >> most;
    picture.get();
    std::string bytes{std::istreambuf_iterator<char>(picture), {}};
    if (kind != "P6" || bytes.empty()) throw std::runtime_error("no picture");
    return bytes;
}

double PrivateSway::brightness(int output) const {
    const std::string bytes = picture(output);
    double sum = 0;
    for (const char byte : bytes)
        sum += static_cast<unsigned char>(byte);
    return sum / static_cast<double>(bytes.size());
}

bool PrivateSway::isOfOneColour(int output) const {
    const std::string bytes = picture(output);
    for (std::size_t i = 3; i < bytes.size() / 3 * 2; ++i)
        if (bytes[i] != bytes[i - 3]) return false;
    return true;
}

SwayHand::SwayHand(const PrivateSway& desktop)
    : sway(desktop),
      client(desktop.socket()),
      pointer(
          zwlr_virtual_pointer_manager_v1_create_virtual_pointer(client.pointers, client.seat)) {
    client.synchronize();
}

SwayHand::~SwayHand() {
    zwlr_virtual_pointer_v1_destroy(pointer);
    wl_display_flush(client.display);
}

void SwayHand::moveTo(int x, int y) {
    sway.run("seat - cursor set " + std::to_string(x) + " " + std::to_string(y));
}

void SwayHand::send(double dx, double dy) {
    zwlr_virtual_pointer_v1_motion(pointer, milliseconds32(), wl_fixed_from_double(dx),
                                   wl_fixed_from_double(dy));
    zwlr_virtual_pointer_v1_frame(pointer);
    wl_display_flush(client.display);
}

void SwayHand::relative(double dx, double dy) {
    send(dx, dy);
    client.synchronize();
}

double SwayHand::push(double dx, double dy, int steps, int hz) {
    const Pace pace = repeat(steps, hz, [&](int) { send(dx, dy); });
    client.synchronize();
    return pace.took;
}

void SwayHand::button(bool down) {
    zwlr_virtual_pointer_v1_button(pointer, milliseconds32(), BTN_LEFT,
                                   down ? WL_POINTER_BUTTON_STATE_PRESSED
                                        : WL_POINTER_BUTTON_STATE_RELEASED);
    zwlr_virtual_pointer_v1_frame(pointer);
    client.synchronize();
}

void SwayHand::pressButton() {
    button(true);
}

void SwayHand::releaseButton() {
    button(false);
}

} // namespace support
