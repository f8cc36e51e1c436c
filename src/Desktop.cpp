#include "Desktop.h"

#include "platform/linux/Installation.h"

#include <unistd.h>

namespace {

namespace lnx = platform::linux;
namespace x = platform::x11;
using platform::qt::QtApplication;

std::string settingsPath(const lnx::ProductBundle& bundle) {
    const auto folder = lnx::configurationFolder();
    if (!folder) return {};
    return *folder + "/" + std::string(bundle.string("CFBundleIdentifier")) + ".plist";
}

} // namespace

Desktop::X11Services::X11Services(x::Connection& connection, platform::RunLoop& runLoop,
                                  platform::Log& log, const std::string& name)
    : displays(connection),
      pointer(connection, displays, runLoop),
      cursor(connection),
      input(connection, displays, pointer, QtApplication::hasActiveWindow),
      keyboard(connection, log),
      windows(connection, displays, log, name, lnx::helperPath("gamma-guard")),
      workspace(connection, static_cast<std::uint32_t>(::getpid())) {}

Desktop::Desktop(platform::Log& log, lnx::ProductBundle& bundle, platform::Descriptors& descriptors,
                 x::Connection& connection)
    : settings(settingsPath(bundle), log,
               [this] { application.afterEvent([this] { settings.savePending(); }); }),
      settingsWatch(settings.path(), descriptors, log, [this] { settings.fileChanged(); }),
      files(log),
      sounds(bundle.folder() + "/sounds", std::string(bundle.string("CFBundleDisplayName")), log),
      alerts(runLoop, application, bundle.folder() + "/icon.svg"),
      notifications(std::string(bundle.string("CFBundleDisplayName")),
                    std::string(bundle.string("CFBundleIdentifier")), log),
      quitSignals(descriptors, [this] { quit(); }) {
    x11.emplace(connection, runLoop, log, std::string(bundle.string("CFBundleDisplayName")));
    delegate.emplace(platform::Platform{log, runLoop, application, bundle, settings, files, system,
                                        x11->displays, x11->pointer, x11->cursor, x11->input,
                                        x11->keyboard, x11->windows, x11->workspace, alerts,
                                        notifications, sounds});

    application.onQuitRequest([this] { quit(); });
    application.atExit([this, &connection] {
        delegate.reset();
        x11.reset();
        connection.flush();
    });
    application.atExit([this] { notifications.flush(); });
    // Runs first: saving needs nothing of the rest.
    application.atExit([this] { settings.flush(); });
}

void Desktop::launch() {
    delegate->applicationDidFinishLaunching();
}

void Desktop::quit() {
    // A signal may come before the application object is there.
    if (delegate)
        delegate->quit();
    else
        application.exit(0);
}
