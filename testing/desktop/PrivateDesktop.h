#pragma once

#include "testing/SessionBus.h"
#include "testing/TempFolder.h"
#include "testing/desktop/Monitors.h"
#include "testing/desktop/XServer.h"
#include "testing/devices/Device.h"

namespace support {

/// A desktop of the test's own: an X server on a free display with the monitors asked for, a home
/// and XDG folders, a session bus, and what is started on top. It uses nothing of the desktop it
/// runs on. Everything ends with the object, also what the bus started; where the process is
/// killed, the server, the bus and the programs die with it.
///
/// One thread, which must outlive the object: the children die with the thread that made them.
class PrivateDesktop {
  public:
    struct Options {
        std::string layout = "1920x1080+0+0,1280x1024+1920+56"; ///< as parseLayout reads it
        /// Tried in this order; the first that starts is used.
        std::vector<ServerKind> servers = {ServerKind::xorg, ServerKind::xvfb};
        std::string hostDisplay;                    ///< for Xephyr
        std::vector<std::string> serverArguments{}; ///< behind the usual ones
        bool bus = true;
        /// Kinds of devices of an Xorg's own, driven through `device`; other servers have none.
        std::vector<std::string> devices{};
        int depth = 24; ///< bits of a pixel, of an Xorg alone: also 16 and 30
    };

    PrivateDesktop() : PrivateDesktop(Options{}) {}
    explicit PrivateDesktop(const std::string& layout) : PrivateDesktop(withLayout(layout)) {}
    /// Throws std::runtime_error with the log of what did not start.
    explicit PrivateDesktop(const Options& options);
    ~PrivateDesktop();
    PrivateDesktop(const PrivateDesktop&) = delete;
    PrivateDesktop& operator=(const PrivateDesktop&) = delete;

    const std::string& display() const { return server.display; }
    ServerKind kind() const { return server.kind; }
    pid_t serverProcess() const { return server.process->pid(); }
    std::string kindName() const;

    /// Whether gamma ramps can be set and read back, and whether monitors are real outputs.
    bool canGamma() const;
    /// Whether the server has made the devices that were asked for.
    bool hasDevices() const;
    bool canPlugOutputs() const { return server.kind == ServerKind::xorg; }

    /// What programs on this desktop are started with; `setVariable` is for later ones.
    const Environment& environment() const { return variables; }
    void setVariable(const std::string& name, const std::string& value);
    std::filesystem::path home() const { return folder.path("home"); }
    std::filesystem::path configFolder() const { return home() / ".config"; }
    std::filesystem::path dataFolder() const { return home() / ".local/share"; }
    std::filesystem::path cacheFolder() const { return home() / ".cache"; }
    std::filesystem::path runtimeFolder() const { return folder.path("run"); }

    /// That one of the devices asked for. One object at a time.
    std::unique_ptr<Device> device(std::size_t index) const;

    /// The monitors as RandR tells them, primary first.
    Layout monitors() const { return outputs->seen(); }
    /// Sets all monitors at once, as parseLayout reads them.
    void setLayout(const std::string& layout) { outputs->apply(parseLayout(layout)); }
    /// Plugs a monitor in, or moves it: plug("DUMMY1", "1280x1024+1920+56"). "*" makes it primary.
    void plug(const std::string& output, const std::string& monitor);
    /// The first that remains becomes primary where the primary one goes.
    void unplug(const std::string& output);

    /// "openbox" or "xfwm4"; returns when it manages windows. One at a time.
    void startWindowManager(const std::string& name);
    void stopWindowManager();
    /// picom; returns when it owns the compositing selection, or when nobody does any more.
    void startCompositor();
    void stopCompositor();

    /// A new session bus in the place of the one before: what is started from now on uses it.
    void startBus();
    void stopBus() { bus.reset(); }
    pid_t busProcess() const { return bus->pid(); }
    /// What dbus-send prints of the reply to a call on the session bus, which it is given
    /// ("--dest=...", object, method, arguments); empty where it fails.
    std::string call(const std::vector<std::string>& message) const;
    bool isOnTheBus(const std::string& name) const;
    /// Whether the name comes, or goes.
    bool isOnTheBusSoon(const std::string& name, bool there = true) const;

    std::unique_ptr<ChildProcess> spawn(const std::string& command,
                                        const std::vector<std::string>& arguments = {}) const;

  private:
    static Options withLayout(const std::string& layout);
    void makeFolders();
    void startFirstOf(const Options& options, const Layout& layout);
    void makePointerPlain() const;
    void failWithLog(const std::string& what, ChildProcess& child) const;

    testing_support::TempFolder folder;
    Environment variables;
    XServer server{};
    std::unique_ptr<XConnection> x;
    std::unique_ptr<Monitors> outputs;
    std::unique_ptr<SessionBus> bus;
    std::unique_ptr<ChildProcess> windowManager, compositor;
};

} // namespace support
