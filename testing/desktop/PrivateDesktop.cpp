#include "testing/desktop/PrivateDesktop.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>
#include <xcb/xfixes.h>

namespace support {

namespace {

// Painted at once and plainly: a picture taken after the event shows the end of it.
constexpr const char* compositorConfiguration = R"(backend = "xrender";
vsync = false;
shadow = false;
fading = false;
unredir-if-possible = false;
use-damage = true;
)";

// What of the surroundings may reach a private desktop.
Environment inherited() {
    Environment result;
    for (const char* name : {"PATH", "USER", "LOGNAME", "TMPDIR", "ASAN_OPTIONS", "UBSAN_OPTIONS",
                             "TSAN_OPTIONS", "LSAN_OPTIONS", "LD_LIBRARY_PATH"})
        if (const char* value = std::getenv(name)) result[name] = value;
    return result;
}

// The window manager's check window names itself (EWMH): a stale one of a dead manager does not.
bool managerIsThere(const XConnection& x) {
    const xcb_atom_t name = x.atom("_NET_SUPPORTING_WM_CHECK");
    const auto windowIn = [&](xcb_window_t holder) -> xcb_window_t {
        const auto reply = own(xcb_get_property_reply(
            x.get(), xcb_get_property(x.get(), 0, holder, name, XCB_ATOM_WINDOW, 0, 1), nullptr));
        if (!reply || xcb_get_property_value_length(reply.get()) != 4) return XCB_NONE;
        return *static_cast<xcb_window_t*>(xcb_get_property_value(reply.get()));
    };
    const xcb_window_t check = windowIn(x.root());
    return check != XCB_NONE && windowIn(check) == check;
}

bool selectionIsOwned(const XConnection& x, xcb_atom_t selection) {
    const auto reply = own(xcb_get_selection_owner_reply(
        x.get(), xcb_get_selection_owner(x.get(), selection), nullptr));
    return reply && reply->owner != XCB_NONE;
}

// Asks for an event when the compositing selection changes hands.
xcb_atom_t watchCompositor(const XConnection& x) {
    own(xcb_xfixes_query_version_reply(x.get(), xcb_xfixes_query_version(x.get(), 5, 0), nullptr));
    const xcb_atom_t selection = x.atom("_NET_WM_CM_S0");
    xcb_xfixes_select_selection_input(x.get(), x.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    return selection;
}

} // namespace

PrivateDesktop::Options PrivateDesktop::withLayout(const std::string& layout) {
    Options options;
    options.layout = layout;
    return options;
}

PrivateDesktop::PrivateDesktop(const Options& options) : variables(inherited()) {
    const Layout layout = parseLayout(options.layout);
    // What children of children leave behind comes to this process, which can then reap it.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    makeFolders();
    startFirstOf(options, layout);
    variables["DISPLAY"] = server.display;
    x = std::make_unique<XConnection>(server.display);
    outputs = std::make_unique<Monitors>(
        *x, server.kind == ServerKind::xorg ? Monitors::Way::outputs : Monitors::Way::regions);
    outputs->apply(layout);
    makePointerPlain();
    if (options.bus) startBus();
}

PrivateDesktop::~PrivateDesktop() {
    // Looked for before the bus ends: an exiting process no longer shows its environment.
    ProcessSweep rest("XDG_RUNTIME_DIR=" + runtimeFolder().string(), server.process->pid());
    compositor.reset();
    windowManager.reset();
    bus.reset();
    rest.end();
    outputs.reset();
    x.reset();
    server.process.reset();
}

std::string PrivateDesktop::kindName() const {
    switch (server.kind) {
    case ServerKind::xorg:
        return "Xorg with the dummy driver";
    case ServerKind::xvfb:
        return "Xvfb";
    case ServerKind::xephyr:
        return "Xephyr";
    }
    return {};
}

void PrivateDesktop::makeFolders() {
    namespace fs = std::filesystem;
    for (const auto& path : {configFolder(), dataFolder(), cacheFolder(), runtimeFolder()})
        fs::create_directories(path);
    // Services refuse a runtime folder that others can read.
    fs::permissions(runtimeFolder(), fs::perms::owner_all);
    variables["HOME"] = home();
    variables["XDG_CONFIG_HOME"] = configFolder();
    variables["XDG_DATA_HOME"] = dataFolder();
    variables["XDG_CACHE_HOME"] = cacheFolder();
    variables["XDG_RUNTIME_DIR"] = runtimeFolder();
    variables["LANG"] = "C.UTF-8";
    variables["QT_QPA_PLATFORM"] = "xcb";
    variables["NO_AT_BRIDGE"] = "1";
}

void PrivateDesktop::startFirstOf(const Options& options, const Layout& layout) {
    std::string failures;
    for (const ServerKind kind : options.servers) {
        try {
            server = startXServer({kind, folder.path(), layout, options.hostDisplay,
                                   options.devices, options.serverArguments, options.depth},
                                  variables);
            return;
        } catch (const std::runtime_error& error) {
            failures += std::string(error.what()) + "\n";
        }
    }
    throw std::runtime_error("no X server:\n" + failures);
}

void PrivateDesktop::startBus() {
    bus = std::make_unique<SessionBus>(variables);
    variables["DBUS_SESSION_BUS_ADDRESS"] = bus->address();
}

std::string PrivateDesktop::call(const std::vector<std::string>& message) const {
    std::vector<std::string> arguments{"--session", "--print-reply"};
    arguments.insert(arguments.end(), message.begin(), message.end());
    const auto client = spawn("dbus-send", arguments);
    return client->wait() == 0 ? client->output() : "";
}

bool PrivateDesktop::isOnTheBus(const std::string& name) const {
    const std::string reply = call({"--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                                    "org.freedesktop.DBus.NameHasOwner", "string:" + name});
    if (reply.empty()) throw std::runtime_error("the session bus does not answer");
    return reply.find("boolean true") != std::string::npos;
}

bool PrivateDesktop::isOnTheBusSoon(const std::string& name, bool there) const {
    return waitUntil([&] { return isOnTheBus(name) == there; });
}

// A step of 7 that the hand makes is then a step of 7 of the cursor.
void PrivateDesktop::makePointerPlain() const {
    xcb_change_pointer_control(x->get(), 1, 1, 0, 1, 1);
    x->sync();
}

void PrivateDesktop::failWithLog(const std::string& what, ChildProcess& child) const {
    child.end();
    throw std::runtime_error(what + ":\n" + child.output() + child.errors());
}

bool PrivateDesktop::hasDevices() const {
    return std::filesystem::exists(deviceSocket(folder.path(), 0));
}

std::unique_ptr<Device> PrivateDesktop::device(std::size_t index) const {
    return std::make_unique<Device>(deviceSocket(folder.path(), index),
                                    boundsOf(outputs->layout()));
}

bool PrivateDesktop::canGamma() const {
    const auto resources = own(xcb_randr_get_screen_resources_current_reply(
        x->get(), xcb_randr_get_screen_resources_current(x->get(), x->root()), nullptr));
    if (!resources || resources->num_crtcs == 0) return false;
    const auto* crtcs = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    const auto size = own(xcb_randr_get_crtc_gamma_size_reply(
        x->get(), xcb_randr_get_crtc_gamma_size(x->get(), crtcs[0]), nullptr));
    return server.kind == ServerKind::xorg && size && size->size > 0;
}

void PrivateDesktop::setVariable(const std::string& name, const std::string& value) {
    variables[name] = value;
}

void PrivateDesktop::plug(const std::string& output, const std::string& monitor) {
    const Monitor added = parseMonitor(monitor, output);
    Layout layout = outputs->layout();
    std::erase_if(layout, [&](const Monitor& other) { return other.output == output; });
    if (added.primary)
        for (Monitor& other : layout)
            other.primary = false;
    layout.push_back(added);
    outputs->apply(layout);
}

void PrivateDesktop::unplug(const std::string& output) {
    Layout layout = outputs->layout();
    bool primaryGoes = false;
    std::erase_if(layout, [&](const Monitor& monitor) {
        const bool goes = monitor.output == output;
        primaryGoes = primaryGoes || (goes && monitor.primary);
        return goes;
    });
    if (primaryGoes && !layout.empty()) layout.front().primary = true;
    outputs->apply(layout);
}

void PrivateDesktop::startWindowManager(const std::string& name) {
    if (windowManager) throw std::logic_error("a window manager runs already");
    const XConnection watcher(server.display);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(watcher.get(), watcher.root(), XCB_CW_EVENT_MASK, &mask);
    if (name == "openbox")
        windowManager = spawn("openbox", {"--sm-disable", "--startup", "echo openbox is ready"});
    else if (name == "xfwm4")
        windowManager = spawn("xfwm4", {"--compositor=off", "--vblank=off"});
    else
        throw std::invalid_argument("no such window manager: " + name);
    if (!watcher.waitUntil([&] { return managerIsThere(watcher); }))
        failWithLog(name + " did not start", *windowManager);
    // openbox announces itself before it listens, and loses a window that is mapped in between.
    if (name == "openbox" && !windowManager->waitForText("openbox is ready"))
        failWithLog(name + " is not ready", *windowManager);
}

void PrivateDesktop::stopWindowManager() {
    windowManager.reset();
}

void PrivateDesktop::startCompositor() {
    if (compositor) throw std::logic_error("a compositor runs already");
    const XConnection watcher(server.display);
    const xcb_atom_t selection = watchCompositor(watcher);
    const std::string configuration = folder.path("picom.conf");
    std::ofstream(configuration) << compositorConfiguration;
    compositor = spawn("picom", {"--config", configuration});
    if (!watcher.waitUntil([&] { return selectionIsOwned(watcher, selection); }))
        failWithLog("picom did not start", *compositor);
}

void PrivateDesktop::stopCompositor() {
    const XConnection watcher(server.display);
    const xcb_atom_t selection = watchCompositor(watcher);
    compositor.reset();
    if (!watcher.waitUntil([&] { return !selectionIsOwned(watcher, selection); }))
        throw std::runtime_error("another compositor runs");
}

std::unique_ptr<ChildProcess>
PrivateDesktop::spawn(const std::string& command, const std::vector<std::string>& arguments) const {
    std::vector<std::string> whole{command};
    whole.insert(whole.end(), arguments.begin(), arguments.end());
    return std::make_unique<ChildProcess>(ChildProcess::Start{whole, variables, -1, SIGKILL});
}

} // namespace support
