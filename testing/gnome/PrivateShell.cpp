#include "testing/gnome/PrivateShell.h"

#include <cstdio>
#include <filesystem>
#include <grp.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>

namespace support {

namespace fs = std::filesystem;

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

PrivateShell::PrivateShell(const Options& options) {
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
                 {"XDG_CURRENT_DESKTOP", "GNOME"},
                 {"GSETTINGS_BACKEND", "keyfile"},
                 {"LIBGL_ALWAYS_SOFTWARE", "1"},
                 {"LANG", "C.UTF-8"},
                 {"NO_AT_BRIDGE", "1"}};
    systemBus = std::make_unique<SessionBus>(variables);
    variables["DBUS_SYSTEM_BUS_ADDRESS"] = systemBus->address();
    sessionBus = std::make_unique<SessionBus>(variables);
    variables["DBUS_SESSION_BUS_ADDRESS"] = sessionBus->address();
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
    shell = spawn(command);
    connection = connect(sessionBus->address());
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

PrivateShell::~PrivateShell() {
    connection.reset();
    ProcessSweep rest("XDG_RUNTIME_DIR=" + folder.path("run"), -1);
    rest.end();
}

std::unique_ptr<ChildProcess> PrivateShell::spawn(const std::vector<std::string>& command) const {
    return std::make_unique<ChildProcess>(ChildProcess::Start{command, variables, -1, SIGKILL});
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

PrivateShell::Place PrivateShell::cursor() const {
    Place place;
    const std::string told = run("global.get_pointer()");
    if (std::sscanf(told.c_str(), "[%d,%d", &place.x, &place.y) != 2)
        throw std::runtime_error("no place: " + told);
    return place;
}

void PrivateShell::moveTo(int x, int y) const {
    // In two legs, as barriers of the shell's own stop a warp from the corner.
    const std::string to = std::to_string(y) + ")";
    run("(() => { const seat = (global.stage.context?.get_backend() ??"
        " imports.gi.Clutter.get_default_backend()).get_default_seat();"
        "seat.warp_pointer(global.get_pointer()[0], " +
        to +
        ";"
        "seat.warp_pointer(" +
        std::to_string(x) + ", " + to + "; })()");
    if (!waitUntil([&] { return cursor() == Place{x, y}; }))
        throw std::runtime_error("the cursor cannot be put there");
}

ShellHand::ShellHand(const PrivateShell& shell) : bus(shell.bus()) {
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

void becomeAUser() {
    constexpr uid_t nobody = 65534;
    if (getuid() != 0) return;
    if (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)
        throw std::runtime_error("the test cannot give up its rights");
    // It looks at processes of its own, and they at it.
    prctl(PR_SET_DUMPABLE, 1);
}

} // namespace support
