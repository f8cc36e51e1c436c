#include "testing/sway/PrivateSway.h"

#include "testing/desktop/Hand.h"
#include "testing/desktop/Layout.h"
#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <wayland-client.h>

namespace support {

namespace fs = std::filesystem;

namespace {

bool isInstalled(const std::string& command) {
    for (const char* folder : {"/usr/bin/", "/usr/local/bin/"})
        if (fs::exists(folder + command)) return true;
    return false;
}

std::uint32_t milliseconds32(Clock::time_point when = Clock::now()) {
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(when.time_since_epoch()).count());
}

} // namespace

std::optional<std::string> PrivateSway::missing() {
    for (const char* command : {"sway", "swaymsg", "grim"})
        if (!isInstalled(command)) return std::string(command) + " is not installed";
    return std::nullopt;
}

WlrootsSession::WlrootsSession(int outputs, const std::string& desktop)
    : PrivateSession({{"WLR_BACKENDS", "headless"},
                      {"WLR_HEADLESS_OUTPUTS", std::to_string(outputs)},
                      {"WLR_LIBINPUT_NO_DEVICES", "1"},
                      {"WLR_RENDERER", "pixman"},
                      {"WLR_NO_HARDWARE_CURSORS", "1"}}) {
    // As the session's entry on the login screen does.
    if (!desktop.empty()) variables["XDG_CURRENT_DESKTOP"] = desktop;
}

// They refuse to run as root, but their sockets serve root.
std::string WlrootsSession::announced(const std::vector<std::string>& command) {
    Announced begun = startServer(asAUser(command, folder.path()), variables);
    server = std::move(begun.process);
    return begun.line;
}

Picture WlrootsSession::picture(int output) const {
    const std::string file = folder.path("picture.ppm");
    const auto client =
        spawn("grim", {"-t", "ppm", "-o", "HEADLESS-" + std::to_string(output), file});
    if (client->wait() != 0) throw std::runtime_error("no picture: " + client->errors());
    return readPicture(file);
}

PrivateSway::PrivateSway(const Options& options)
    : WlrootsSession(static_cast<int>(parseLayout(options.layout).size())) {
    std::ofstream config(folder.path("config"));
    const Layout layout = parseLayout(options.layout);
    for (std::size_t i = 0; i < layout.size(); ++i) {
        const Area& area = layout[i].area;
        config << "output HEADLESS-" << i + 1 << " mode " << area.width << "x" << area.height
               << " position " << area.x << " " << area.y << "\n";
    }
    config << "xwayland disable\nfocus_follows_mouse no\n"
           << options.configuration << "\nexec sh -c 'echo $SWAYSOCK $WAYLAND_DISPLAY >&3'\n";
    config.close();
    const std::string line = announced({"sway", "-c", folder.path("config")});
    const auto space = line.find(' ');
    if (space == std::string::npos) throw std::runtime_error("sway told: " + line);
    variables["SWAYSOCK"] = line.substr(0, space);
    variables["WAYLAND_DISPLAY"] = line.substr(space + 1);
    run("focus output HEADLESS-1"); // where windows come, on every release
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

bool PrivateSway::isOfOneColour(int output) const {
    const auto pixels = picture(output).pixels;
    return std::ranges::all_of(pixels.begin(), pixels.begin() + pixels.size() / 3 * 2,
                               [&](const Colour& one) { return one == pixels[0]; });
}

Picture readPicture(const std::string& file) {
    std::ifstream read(file, std::ios::binary);
    std::string kind;
    Picture seen{};
    int most = 0;
    read >> kind >> seen.area.width >> seen.area.height >> most;
    read.get();
    const std::string bytes{std::istreambuf_iterator<char>(read), {}};
    const auto pixels = static_cast<std::size_t>(seen.area.width * seen.area.height);
    if (kind != "P6" || bytes.empty() || bytes.size() != 3 * pixels)
        throw std::runtime_error("no picture");
    seen.pixels.resize(pixels);
    std::memcpy(seen.pixels.data(), bytes.data(), bytes.size());
    return seen;
}

SwayHand::SwayHand(const PrivateSway& desktop) : SwayHand(&desktop, desktop.socket()) {}

SwayHand::SwayHand(const PrivateSway* desktop, const std::string& socketPath)
    : sway(desktop),
      client(socketPath),
      pointer(
          zwlr_virtual_pointer_manager_v1_create_virtual_pointer(client.pointers, client.seat)) {
    client.synchronize();
}

SwayHand::~SwayHand() {
    zwlr_virtual_pointer_v1_destroy(pointer);
    wl_display_flush(client.display);
}

void SwayHand::moveTo(int x, int y) {
    sway->run("seat - cursor set " + std::to_string(x) + " " + std::to_string(y));
}

void SwayHand::place(int x, int y, int width, int height) {
    const auto halves = [](int pixels) { return static_cast<std::uint32_t>(2 * pixels); };
    zwlr_virtual_pointer_v1_motion_absolute(pointer, milliseconds32(), halves(x) + 1, halves(y) + 1,
                                            halves(width), halves(height));
    zwlr_virtual_pointer_v1_frame(pointer);
    client.synchronize();
}

void SwayHand::send(double dx, double dy, Clock::time_point when) {
    zwlr_virtual_pointer_v1_motion(pointer, milliseconds32(when), wl_fixed_from_double(dx),
                                   wl_fixed_from_double(dy));
    zwlr_virtual_pointer_v1_frame(pointer);
    client.flush();
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

void SwayHand::pushAt(double speed, double seconds, int hz) {
    const auto begun = Clock::now();
    const std::chrono::nanoseconds period{1'000'000'000 / hz};
    repeat(static_cast<int>(seconds * hz), hz, [&](int step) {
        const auto pixels = [&](int steps) { return std::trunc(speed * steps / hz); };
        const double dx = pixels(step + 1) - pixels(step);
        if (dx != 0) send(dx, 0, begun + step * period);
    });
    client.synchronize();
}

void SwayHand::button(std::uint32_t code, bool down) {
    zwlr_virtual_pointer_v1_button(pointer, milliseconds32(), code,
                                   down ? WL_POINTER_BUTTON_STATE_PRESSED
                                        : WL_POINTER_BUTTON_STATE_RELEASED);
    zwlr_virtual_pointer_v1_frame(pointer);
    client.synchronize();
}

void SwayHand::pressButton(std::uint32_t code) {
    button(code, true);
}

void SwayHand::releaseButton(std::uint32_t code) {
    button(code, false);
}

} // namespace support
