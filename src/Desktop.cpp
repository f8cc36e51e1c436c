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
                                  platform::Log& log, const std::string& name,
                                  platform::PictureSource pictures)
    : displays(connection),
      pointer(connection, displays, runLoop),
      cursor(connection),
      input(connection, displays, pointer, QtApplication::hasActiveWindow),
      keyboard(connection, log),
      windows(connection, displays, log, name, lnx::helperPath("gamma-guard"), std::move(pictures)),
      workspace(connection, static_cast<std::uint32_t>(::getpid()), QtApplication::openFile) {}

Desktop::Desktop(platform::Log& log, lnx::ProductBundle& bundle, platform::Descriptors& descriptors,
                 x::Connection& connection)
    : settings(settingsPath(bundle), log,
               [this] { application.afterEvent([this] { settings.savePending(); }); }),
      settingsWatch(settings.path(), descriptors, log, [this] { settings.fileChanged(); }),
      files(log),
      sounds(bundle.folder() + "/sounds", std::string(bundle.string("CFBundleDisplayName")), log),
      alerts(runLoop, application, bundle.folder() + "/icon.svg"),
      images({lnx::imagesFolder(), bundle.folder() + "/images"}),
      menuIcons(images),
      statusItem(runLoop, application,
                 [this](const std::string& name) { return menuIcons.icon(name); }),
      notifications(std::string(bundle.string("CFBundleDisplayName")),
                    std::string(bundle.string("CFBundleIdentifier")), log),
      pictures(lnx::imagesFolder(), log),
      quitSignals(descriptors, [this] { quit(); }) {
    x11.emplace(connection, runLoop, log, std::string(bundle.string("CFBundleDisplayName")),
                [this](const std::string& name, int width, int height) {
                    return pictures.picture(name, width, height);
                });
    delegate.emplace(platform::Platform{log, runLoop, application, bundle, settings, files, system,
                                        x11->displays, x11->pointer, x11->cursor, x11->input,
                                        x11->keyboard, x11->windows, x11->workspace, statusItem,
                                        alerts, notifications, sounds});

    statusItem.setTray(trayOn(log, bundle, connection));
    application.onQuitRequest([this] { quit(); });
    application.atExit([this, &connection] {
        delegate.reset();
        tray.reset();
        x11.reset();
        connection.flush();
    });
    application.atExit([this] { notifications.flush(); });
    // Runs first: saving needs nothing of the rest.
    application.atExit([this] { settings.flush(); });
}

platform::qt::QtStatusItem::Tray
Desktop::trayOn(platform::Log& log, const lnx::ProductBundle& bundle, x::Connection& connection) {
    const platform::qt::TrayIcon::Identity identity{
        std::string(bundle.string("CFBundleIdentifier")),
        std::string(bundle.string("CFBundleDisplayName"))};
    return {.create =
                [this, &log, &connection, identity] {
                    tray.emplace(connection, images, identity, log);
                    tray->onClick([this](int button, int, int) { statusItem.clicked(button); });
                },
            .showImage =
                [this](std::string_view name, bool isTemplate) {
                    tray->setImage({std::string(name), isTemplate});
                }};
}

void Desktop::launch() {
    delegate->applicationDidFinishLaunching();
}

void Desktop::activate() {
    // The caller waits for an answer, and the menu stays open as long as the user likes.
    application.afterEvent([this] { statusItem.activate(); });
}

void Desktop::quit() {
    // A signal may come before the application object is there.
    if (delegate)
        delegate->quit();
    else
        application.exit(0);
}
