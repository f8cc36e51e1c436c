#include "program/Desktop.h"

#include "app/Keys.h"
#include "app/LoginHelper.h"
#include "platform/linux/files/Installation.h"
#include "program/Accessories.h"

#include <cstdlib>
#include <unistd.h>
#include <utility>

namespace {

namespace lnx = platform::linux;
namespace x = platform::x11;
using platform::qt::QtApplication;

constexpr const char* productIcon = "icon"; ///< of the product's folder

std::string settingsPath(const lnx::ProductBundle& bundle) {
    const auto folder = lnx::configurationFolder();
    if (!folder) return {};
    return *folder + "/" + std::string(bundle.string("CFBundleIdentifier")) + ".plist";
}

std::string autostartFolder() {
    const auto folder = lnx::configurationFolder();
    return folder ? *folder + "/autostart" : std::string{};
}

lnx::AutostartItems::Product autostartProduct(const lnx::ProductBundle& bundle) {
    return {
        .identifier = std::string(bundle.string("CFBundleIdentifier")),
        .name = std::string(bundle.string("CFBundleDisplayName")),
        .comment = bundle.localizedString("AVVIA_AL_LOGIN"),
        .icon = bundle.folder() + "/" + productIcon + ".svg",
        .helper = {lnx::executablePath(palisor::loginHelper::command), "--product", bundle.name()}};
}

/// The folder of .ics files that is used, empty for the desktop's own calendars.
std::string calendarFolder(const lnx::ProductBundle& bundle, const std::string& wished) {
    std::string named(wished.empty() ? bundle.string("CalendarFolder") : wished);
    if (!named.starts_with("~/")) return named;
    const char* const home = std::getenv("HOME");
    return (home == nullptr ? "" : home) + named.substr(1);
}

const char* textFor(platform::calendar::Refusal why) {
    using platform::calendar::Refusal;
    switch (why) {
    case Refusal::noModule:
        return "CALENDAR_NO_MODULE";
    case Refusal::noServer:
        return "CALENDAR_NO_SERVER";
    case Refusal::noCalendar:
        return "CALENDAR_NONE";
    case Refusal::noFolder:
        return "CALENDAR_NO_FOLDER";
    case Refusal::none:
        break;
    }
    return "";
}

} // namespace

Desktop::X11Services::X11Services(const Connections& x, platform::Descriptors& descriptors,
                                  platform::RunLoop& runLoop, platform::Settings& settings,
                                  platform::Log& log, const std::string& name,
                                  platform::PictureSource pictures, x::HotKeys::Later later,
                                  x::Workspace::Session session, bool serverHolds)
    : displays(x.general),
      pointer(x.input, displays, runLoop, serverHolds),
      cursor(x.general),
      input(x.input, descriptors, displays, pointer, QtApplication::hasActiveWindow),
      keyboard(x.general, log),
      hotKeys(x.general, settings, log, std::move(later)),
      windows(x.general, displays, log, name, lnx::helperPath("gamma-guard"), std::move(pictures)),
      workspace(x.general, static_cast<std::uint32_t>(::getpid()), std::move(session)),
      screenSaver(x.general) {}

Desktop::Recording::Recording(const std::string& path, Desktop& desktop)
    : writer(path),
      input(desktop.x11->input, writer),
      displays(desktop.x11->displays, writer),
      statusItem(desktop.statusItem, writer,
                 [&desktop] { return desktop.application.currentEvent(); }) {}

Desktop::Desktop(platform::Log& logger, lnx::ProductBundle& productBundle,
                 platform::Descriptors& descriptors, const Connections& connections,
                 const Options& options)
    : log(logger),
      bundle(productBundle),
      settings(settingsPath(bundle), log,
               [this] { application.afterEvent([this] { settings.savePending(); }); }),
      settingsWatch(settings.path(), descriptors, log, [this] { settings.fileChanged(); }),
      files(log),
      system(std::string(bundle.string("CFBundleIdentifier"))),
      sounds(lnx::soundsFolder(), std::string(bundle.string("CFBundleDisplayName")), log),
      loginItems(autostartFolder(), autostartProduct(bundle), log),
      applications(std::string(bundle.string("CFBundleIdentifier")), log),
      pictures({lnx::imagesFolder(), bundle.folder()}, log),
      alerts(runLoop, application, std::string(bundle.string("CFBundleDisplayName")), pictures,
             productIcon,
             [this](const std::string& name, QWidget* parent) {
                 return makeAccessory(name, settings, bundle, x11->hotKeys, parent);
             }),
      statusItem(runLoop, application,
                 [this](const std::string& name, bool isTemplate) {
                     return pictures.menuIcon(name, isTemplate);
                 }),
      notifications(std::string(bundle.string("CFBundleDisplayName")),
                    std::string(bundle.string("CFBundleIdentifier")), log),
      urlOpener(log),
      sessionInhibitor(std::string(bundle.string("CFBundleDisplayName")), log),
      power(waysToStayAwake(), log),
      infoWindows(pictures, productIcon,
                  [this](const std::string& url) { x11->workspace.openURL(url); }),
      http(log),
      web(lnx::helperPath("web-engine.so"), log),
      calendar({.module = lnx::modulePath("calendar.so"),
                .folder = calendarFolder(bundle, options.calendarFolder)},
               runLoop, log, [this](auto why) { tellWhyNoCalendar(why); }),
      quitSignals(descriptors, [this] { quit(); }) {
    x11.emplace(
        connections, descriptors, runLoop, settings, log,
        std::string(bundle.string("CFBundleDisplayName")),
        [this](const std::string& name, int width, int height) {
            return pictures.picture(name, width, height);
        },
        [this](std::function<void()> operation) { application.afterEvent(std::move(operation)); },
        x::Workspace::Session{.openFile = QtApplication::openFile,
                              .openURL = [this](const std::string& url) { urlOpener.open(url); },
                              .runningApplications = [this] { return applications.others(); },
                              .postNotification =
                                  [this](const std::string& name, const std::string& object) {
                                      platform::qt::DistributedNotifications::post(name, object,
                                                                                   log);
                                  }},
        options.hold);
    application.onActiveWindowChange([this] {
        if (x11) x11->input.ownWindowChanged();
    });
    if (!options.record.empty()) startRecording(options.record);
    delegate.emplace(services());

    for (const auto key : {palisor::keys::customShortcut, palisor::keys::customShortcutEnabled})
        settings.observe(key, platform::qt::ShortcutRecorder::refreshAll);
    statusItem.setTray(trayOn(connections.general));
    application.onQuitRequest([this] { quit(); });
    application.atExit([this, connections] {
        delegate.reset();
        recording.reset();
        web.close();
        tray.reset();
        x11.reset();
        // The process leaves without disconnecting, which would drop what is not carried out yet.
        connections.general.flush();
        connections.input.flush();
    });
    application.atExit([this] {
        notifications.flush();
        sessionInhibitor.releaseAll();
    });
    // Runs first: saving needs nothing of the rest.
    application.atExit([this] { settings.flush(); });
}

void Desktop::startRecording(const std::string& path) {
    recording.emplace(path, *this);
    if (recording->writer.good()) return;
    log.write("the scenario file " + path + " cannot be written; nothing is recorded");
    recording.reset();
}

platform::Platform Desktop::services() {
    platform::Displays& displays =
        recording ? static_cast<platform::Displays&>(recording->displays) : x11->displays;
    platform::InputEvents& input =
        recording ? static_cast<platform::InputEvents&>(recording->input) : x11->input;
    platform::StatusItem& item =
        recording ? static_cast<platform::StatusItem&>(recording->statusItem) : statusItem;
    return {log,          runLoop,         application,
            bundle,       settings,        files,
            system,       displays,        x11->pointer,
            x11->cursor,  input,           x11->keyboard,
            x11->hotKeys, x11->windows,    x11->workspace,
            item,         alerts,          notifications,
            sounds,       loginItems,      power,
            textCodec,    infoWindows,     http,
            json,         imageOperations, web,
            calendar};
}

platform::qt::QtStatusItem::Tray Desktop::trayOn(x::Connection& connection) {
    const platform::qt::TrayIcon::Identity identity{
        std::string(bundle.string("CFBundleIdentifier")),
        std::string(bundle.string("CFBundleDisplayName"))};
    return {.create =
                [this, &connection, identity] {
                    tray.emplace(connection, pictures, identity, log);
                    tray->onClick([this](int button, int, int) { statusItem.clicked(button); });
                },
            .showImage =
                [this](std::string_view name, bool isTemplate) {
                    tray->setImage({std::string(name), isTemplate});
                }};
}

// The services of X11 have gone when the program has nothing more to release.
std::vector<lnx::DisplayPower::Way> Desktop::waysToStayAwake() {
    return {
        {.keep = [this](auto, const std::string&) { return x11->screenSaver.suspend(); },
         .release = [this](auto) { x11->screenSaver.resume(); },
         .missing = "the X server's screen saver cannot be held off: it lacks the extension "
                    "MIT-SCREEN-SAVER"},
        {.keep = [this](platform::AssertionId id,
                        const std::string& reason) { return sessionInhibitor.inhibit(id, reason); },
         .release = [this](platform::AssertionId id) { sessionInhibitor.release(id); },
         .missing = "no program of the session can be asked to keep the displays on; one that "
                    "switches them off, such as the desktop's power manager, is asked when it "
                    "starts"}};
}

void Desktop::tellWhyNoCalendar(platform::calendar::Refusal why) {
    notifications.deliver({.title = bundle.localizedString("CALENDAR_UNAVAILABLE"),
                           .text = bundle.localizedString(textFor(why)),
                           .identifier = "calendar"});
}

void Desktop::launch() {
    if (recording) recording->writer.begin(bundle, settings.persistentDomain(), x11->displays);
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
