#include "testing/gnome/PrivateShell.h"

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace support {

namespace {

constexpr const char* shellName = "org.gnome.Shell";
constexpr const char* remoteName = "org.gnome.Mutter.RemoteDesktop";
constexpr const char* remotePath = "/org/gnome/Mutter/RemoteDesktop";
constexpr const char* remoteSession = "org.gnome.Mutter.RemoteDesktop.Session";
constexpr int oldestRelease = 43;
constexpr std::uint64_t patience = 30'000'000; // microseconds

int release() {
    FILE* const asked = ::popen("gnome-shell --version 2>/dev/null", "r");
    if (!asked) return 0;
    int major = 0;
    const bool isRead = std::fscanf(asked, "GNOME Shell %d", &major) == 1;
    ::pclose(asked);
    return isRead ? major : 0;
}

bus::Connection connect(const std::string& address) {
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0) throw std::runtime_error("no bus");
    bus::Connection connection(made);
    if (sd_bus_set_address(made, address.c_str()) < 0 || sd_bus_set_bus_client(made, 1) < 0 ||
        sd_bus_start(made) < 0)
        throw std::runtime_error("the shell's bus refuses the test");
    (void)sd_bus_set_method_call_timeout(made, patience);
    return connection;
}

bool hasOwner(sd_bus* bus, const char* name) {
    bus::Error error;
    sd_bus_message* reply = nullptr;
    int has = 0;
    if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "NameHasOwner", error.get(), &reply, "s",
                           name) < 0)
        return false;
    const bus::Message owned(reply);
    return sd_bus_message_read(reply, "b", &has) > 0 && has;
}

} // namespace

std::optional<std::string> PrivateShell::missing() {
    const int found = release();
    if (found == 0) return "GNOME Shell is not installed";
    if (found < oldestRelease)
        return "GNOME Shell " + std::to_string(found) + " is older than the extension knows";
    return std::nullopt;
}

PrivateShell::PrivateShell(const Options& options)
    : PrivateSession({{"XDG_CURRENT_DESKTOP", "GNOME"},
                      {"GSETTINGS_BACKEND", "keyfile"},
                      {"LIBGL_ALWAYS_SOFTWARE", "1"}},
                     SystemBus::own) {
    variables["WAYLAND_DISPLAY"] = "wayland-test";
    for (const auto& command : options.before) {
        const auto process = spawn(command);
        if (process->wait() != 0)
            throw std::runtime_error(command[0] + ": " + process->output() + process->errors());
    }
    std::vector<std::string> command{"gnome-shell", "--headless",        "--unsafe-mode",
                                     "--no-x11",    "--wayland-display", "wayland-test"};
    for (const std::string& monitor : options.monitors)
        command.insert(command.end(), {"--virtual-monitor", monitor});
    server = spawn(command);
    connection = connect(busAddress());
    if (!waitUntil([this] { return isUp(); }))
        throw std::runtime_error("GNOME Shell does not start: " + log());
    run("Main.overview.hide()");
    if (!waitUntil([&] { return isTrue("!Main.overview.visible"); }))
        throw std::runtime_error("the overview stays");
}

// It has its name before it can be asked anything, and that before it has started up.
bool PrivateShell::isUp() const {
    if (!hasOwner(bus(), shellName) || !hasOwner(bus(), remoteName)) return false;
    try {
        return isTrue("!Main.layoutManager._startingUp");
    } catch (const std::runtime_error&) {
        return false;
    }
}

std::unique_ptr<ChildProcess> PrivateShell::spawn(const std::vector<std::string>& command) const {
    return PrivateSession::spawn(command[0], {command.begin() + 1, command.end()});
}

std::string PrivateShell::run(const std::string& script) const {
    bus::Error error;
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(bus(), shellName, "/org/gnome/Shell", shellName, "Eval", error.get(),
                           &reply, "s", script.c_str()) < 0)
        throw std::runtime_error(std::string("the shell: ") + error.text());
    const bus::Message owned(reply);
    int isDone = 0;
    const char* value = nullptr;
    if (sd_bus_message_read(reply, "bs", &isDone, &value) <= 0 || !isDone)
        throw std::runtime_error(script + ": " + (value ? value : "no answer"));
    return value;
}

void PrivateShell::picture(const std::string& file) const {
    bus::Error error;
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(bus(), "org.gnome.Shell.Screenshot", "/org/gnome/Shell/Screenshot",
                           "org.gnome.Shell.Screenshot", "Screenshot", error.get(), &reply, "bbs",
                           1, 0, file.c_str()) < 0)
        throw std::runtime_error(std::string("no picture: ") + error.text());
    const bus::Message owned(reply);
    int isMade = 0;
    if (sd_bus_message_read(reply, "b", &isMade) <= 0 || !isMade)
        throw std::runtime_error("no picture in " + file);
}

PrivateShell::Place PrivateShell::cursor() const {
    Place place;
    const std::string told = run("global.get_pointer()");
    if (std::sscanf(told.c_str(), "[%d,%d", &place.x, &place.y) != 2)
        throw std::runtime_error("no place: " + told);
    return place;
}

void PrivateShell::moveTo(int x, int y) const {
    // In two legs, as barriers of the shell's own stop a warp from the corner; and again, as the
    // shell puts a cursor of its own while it lays out its monitors.
    const std::string to = std::to_string(y) + ")";
    const std::string script = "(() => { const seat = (global.stage.context?.get_backend() ??"
                               " imports.gi.Clutter.get_default_backend()).get_default_seat();"
                               "seat.warp_pointer(global.get_pointer()[0], " +
                               to + ";" + "seat.warp_pointer(" + std::to_string(x) + ", " + to +
                               "; })()";
    const auto isThere = [&] {
        if (cursor() == Place{x, y}) return true;
        run(script);
        return false;
    };
    if (!waitUntil(isThere)) throw std::runtime_error("the cursor cannot be put there");
}

ShellHand::ShellHand(const PrivateShell& owner) : shell(owner), bus(owner.bus()) {
    bus::Error error;
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(bus, remoteName, remotePath, remoteName, "CreateSession", error.get(),
                           &reply, "") < 0)
        throw std::runtime_error(std::string("no remote desktop: ") + error.text());
    const bus::Message owned(reply);
    const char* path = nullptr;
    (void)sd_bus_message_read(reply, "o", &path);
    session = path ? path : "";
    tell(true, "Start", "");
}

ShellHand::~ShellHand() {
    (void)sd_bus_call_method(bus, remoteName, session.c_str(), remoteSession, "Stop", nullptr,
                             nullptr, "");
}

template <class... Arguments>
void ShellHand::tell(bool waits, const char* member, const char* types, Arguments... arguments) {
    bus::Error error;
    const int done =
        waits ? sd_bus_call_method(bus, remoteName, session.c_str(), remoteSession, member,
                                   error.get(), nullptr, types, arguments...)
              : sd_bus_call_method_async(bus, nullptr, remoteName, session.c_str(), remoteSession,
                                         member, nullptr, nullptr, types, arguments...);
    if (done < 0) throw std::runtime_error(std::string(member) + ": " + error.text());
    if (!waits) (void)sd_bus_flush(bus);
}

void ShellHand::relative(double dx, double dy) {
    tell(true, "NotifyPointerMotionRelative", "dd", dx, dy);
}

double ShellHand::push(double dx, double dy, int steps, int hz) {
    const Pace pace =
        repeat(steps, hz, [&](int) { tell(false, "NotifyPointerMotionRelative", "dd", dx, dy); });
    relative(0, 0);
    return pace.took;
}

void ShellHand::pushAt(double speed, double seconds, int hz) {
    const std::string rate = std::to_string(hz);
    shell.run("(() => { const {Clutter} = imports.gi, steps = " +
              std::to_string(static_cast<int>(seconds * hz)) +
              ";"
              "const seat = (global.stage.context?.get_backend() ??"
              "  Clutter.get_default_backend()).get_default_seat();"
              "globalThis.mouse = globalThis.mouse || seat.create_virtual_device("
              "  Clutter.InputDeviceType.POINTER_DEVICE);"
              "const pixels = step => Math.trunc(" +
              std::to_string(speed) + " * step / " + rate +
              ");"
              "const begun = GLib.get_monotonic_time(), timeOf = step => begun + step * 1e6 / " +
              rate +
              ";"
              "let step = 0; globalThis.isPushed = false;"
              "const send = () => { for (; step < steps && timeOf(step) <= "
              "  GLib.get_monotonic_time(); ++step) {"
              "    const dx = pixels(step + 1) - pixels(step);"
              "    if (dx) mouse.notify_relative_motion(Math.round(timeOf(step)), dx, 0); }"
              "  isPushed = step === steps; return !isPushed; };"
              "GLib.timeout_add(GLib.PRIORITY_HIGH, 1, send); })()");
    if (!waitUntil([&] { return shell.isTrue("isPushed"); }))
        throw std::runtime_error("the push does not end");
    relative(0, 0);
}

void ShellHand::button(int code, bool down) {
    tell(true, "NotifyPointerButton", "ib", code, down);
}

void ShellHand::key(unsigned code, bool down) {
    tell(true, "NotifyKeyboardKeycode", "ub", code, down);
}

void ShellHand::chord(const std::vector<unsigned>& codes) {
    for (const unsigned code : codes)
        key(code, true);
    for (auto code = codes.rbegin(); code != codes.rend(); ++code)
        key(*code, false);
}

} // namespace support
