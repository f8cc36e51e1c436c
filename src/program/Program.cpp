#include "program/Program.h"

#include "app/Keys.h"
#include "app/Variants.h"
#include "platform/linux/files/Installation.h"
#include "platform/linux/system/StartAgain.h"
#include "platform/qt/alerts/ShortcutRecorder.h"
#include "program/Limits.h"
#include "program/helper/LoginEntry.h"

#include <cstdlib>
#include <filesystem>

namespace {

namespace lnx = platform::linux;

constexpr int failure = 1;

/// Where the user has no folder for it, where it would be: no absolute path.
std::string settingsPath(const std::string& name) {
    return lnx::configurationFolder().value_or("$HOME/.config") + "/" + name;
}

/// Empty where the user has no folder for it.
std::string inConfigurationFolder(const std::string& name) {
    const auto folder = lnx::configurationFolder();
    return folder ? *folder + "/" + name : std::string();
}

/// The folder of .ics files that is used, empty for the desktop's own calendars.
std::string calendarFolder(const lnx::ProductBundle& bundle, const std::string& wished) {
    std::string named(wished.empty() ? bundle.string("CalendarFolder") : wished);
    const char* const home = std::getenv("HOME");
    if (named.starts_with("~/")) named = (home == nullptr ? "" : home) + named.substr(1);
    std::error_code none;
    return named.empty() ? named : std::filesystem::absolute(named, none).string();
}

/// A folder that was named on the command line is named again at login.
std::string calendarFolderAtLogin(const lnx::ProductBundle& bundle, const Options& options) {
    return options.calendarFolder.empty() ? "" : calendarFolder(bundle, options.calendarFolder);
}

/// The texts of platform::calendar::Refusal, in its order.
constexpr const char* refusals[] = {"", "CALENDAR_NO_MODULE", "CALENDAR_NO_SERVER", "CALENDAR_NONE",
                                    "CALENDAR_NO_FOLDER"};

} // namespace

Program::Program(const Product& product, lnx::ProductBundle& productBundle, Session& joined,
                 bus::Link& link, platform::Descriptors& descriptors, platform::Log& logger,
                 const Options& options)
    : log(logger),
      coreLog(options.product, options.verbose),
      bundle(productBundle),
      session(joined),
      settings(
          settingsPath(product.identifier + ".plist"), log,
          [this] { application.afterEvent([this] { settings.savePending(); }); },
          [this] { application.afterMoment([this] { settings.lookAgain(); }); }),
      settingsWatch(settings.path(), descriptors, log, [this] { settings.fileChanged(); }),
      files(log),
      system(product.identifier),
      sounds(lnx::soundsFolder(), product.name, log),
      loginItems(inConfigurationFolder("autostart"),
                 helper::loginEntry(bundle, calendarFolderAtLogin(bundle, options)), log),
      workspace(product.identifier, log, lnx::asksNobody),
      pictures({lnx::imagesFolder(), bundle.folder()}, log),
      desk(session.start(
          {.product = product,
           .runLoop = runLoop,
           .settings = settings,
           .pictures = pictures,
           .folder = lnx::runtimeFolder().value_or(""),
           .data = lnx::dataFolder(),
           .helper = lnx::helperPath,
           .ownWindowActive = platform::qt::QtApplication::hasActiveWindow,
           .onOwnWindowActive =
               [this](auto changed) { application.onActiveWindowChange(std::move(changed)); },
           .later = [this](auto deed) { application.afterEvent(std::move(deed)); },
           .darkWished = [this](auto dark) { colourScheme.windowSystemWishes(dark); },
           .capabilitiesChanged = [this] { productObject.capabilitiesChanged(); },
           .lost = [this] { exit(failure); }})),
      tray(std::in_place, desk.tray, pictures,
           platform::qt::TrayIcon::Identity{product.identifier, product.name}, log),
      statusItem(runLoop, application, &pictures, &*tray, desk.popups),
      alerts(runLoop, application, product.name, pictures, product.icon,
             [this](const std::string& name, QWidget* parent) { return accessory(name, parent); }),
      notifications(product.name, product.identifier, log),
      notices(notifications, bundle),
      sessionInhibitor(product.name, log),
      power({&desk.wakeLock, &sessionInhibitor}, log),
      infoWindows(
          pictures, product.icon, [this](const std::string& url) { workspace.openURL(url); },
          lnx::asksNobody),
      firstMenu(statusItem, infoWindows, runLoop,
                settings.stringForKey(palisor::keys::PRIMOACCESSO) != "1"),
      http(log),
      web(lnx::helperPath("web-engine.so"), log),
      calendar({.module = lnx::modulePath("calendar.so"),
                .folder = calendarFolder(bundle, options.calendarFolder),
                .journal = inConfigurationFolder(product.identifier + ".cuts")},
               runLoop, log, [this](auto why) { tellWhyNoCalendar(why); }),
      atLogin(options.atLogin),
      loginWait(runLoop, desk.displays, coreLog),
      doctor(lnx::executablePath("palisor-doctor"), bundle.name(), descriptors),
      productObject(onBus(product), link),
      quitSignals(
          descriptors, [this] { quit(); }, [this] { startAgain(); }) {
    if (options.again) infoWindows.keepFirstAway();
    if (!options.record.empty()) startRecording(options.record);
    if (recording)
        delegate.emplace(services(recording->displays, recording->input, recording->statusItem));
    else
        delegate.emplace(services(desk.displays, desk.input, firstMenu));
    productObject.watch(&*delegate);
    if (options.verbose) {
        decisionLog.emplace([this](std::string_view line) { coreLog.write(line); },
                            [this] { return runLoop.now(); });
        delegate->explainTo(&*decisionLog);
    }
    for (const auto key : {palisor::keys::customShortcut, palisor::keys::customShortcutEnabled})
        settings.observe(key, platform::qt::ShortcutRecorder::refreshAll);
    settings.onOutsideEdit([this](const auto& keys) {
        if (delegate) delegate->settingsEdited(keys);
    });
    desk.hotKeys.onLabelsChange([this] {
        platform::qt::ShortcutRecorder::refreshAll();
        // By a timer, since those wait for the end of an open menu.
        runLoop.schedule(0, false, "updateMenuItems", [this] {
            if (delegate) delegate->updateMenuItems();
        });
    });
    application.onQuitRequest([this] { quit(); });
    tellFailures();
    undoAtExit();
}

platform::Platform Program::services(platform::Displays& displays, platform::InputEvents& input,
                                     platform::StatusItem& item) {
    return {coreLog,       runLoop,      application,     bundle,      settings,  files,
            system,        displays,     desk.pointer,    desk.cursor, input,     desk.keyboard,
            desk.hotKeys,  desk.windows, desk.focus,      workspace,   item,      alerts,
            notifications, sounds,       loginItems,      power,       textCodec, infoWindows,
            http,          json,         imageOperations, web,         calendar};
}

// The last one runs first: saving needs nothing of the rest.
void Program::undoAtExit() {
    application.atExit([this] {
        if (startsAgain) lnx::startAgain(std::string(againOption));
    });
    application.atExit([this] {
        session.aboutToEnd();
        productObject.watch(nullptr);
        delegate.reset();
        recording.reset();
        web.close();
        tray.reset();
        session.end();
    });
    // The time that both take together is a second at most, since what was delivered last has its
    // own to be answered.
    application.atExit([this] {
        sessionInhibitor.releaseAll();
        notifications.flush();
    });
    // The settings get all the time that the disk takes. After that nobody is worth more of the
    // user's: what is left undone then is undone as after a kill.
    application.atExit([this] {
        lnx::endAfter(lnx::never);
        settings.onOutsideEdit(nullptr); // what it tells now would only be undone
        settings.flush();
        lnx::endAfter(4);
    });
}

Program::Recording::Recording(const std::string& path, Program& program)
    : writer(path),
      input(program.desk.input, writer),
      displays(program.desk.displays, writer),
      statusItem(program.firstMenu, writer,
                 [&program] { return program.application.currentEvent(); }) {}

void Program::startRecording(const std::string& path) {
    recording.emplace(path, *this);
    if (recording->writer.good()) return;
    log.write("the scenario file " + path + " cannot be written; nothing is recorded");
    recording.reset();
}

platform::qt::Accessory* Program::accessory(const std::string& name, QWidget* parent) {
    namespace keys = palisor::keys;
    if (name != palisor::accessories::shortcutRecorder) return nullptr;
    return new platform::qt::ShortcutRecorder(
        {.empty = bundle.localizedString("RECORDER_EMPTY"),
         .recording = bundle.localizedString("RECORDER_RECORDING"),
         .hint = bundle.localizedString("RECORDER_HINT"),
         .clear = bundle.localizedString("RECORDER_CLEAR"),
         .modifiers = bundle.localizedString("RECORDER_MODIFIERS"),
         .shift = bundle.localizedString("RECORDER_SHIFT"),
         .unknownKey = bundle.localizedString("RECORDER_UNKNOWN_KEY"),
         .fixed = bundle.localizedString("RECORDER_FIXED"),
         .taken = bundle.localizedString("RECORDER_TAKEN"),
         .keyboard = bundle.localizedString("RECORDER_KEYBOARD"),
         .needed = bundle.localizedString("RECORDER_NEEDED"),
         .disabled = bundle.localizedString("RECORDER_DISABLED")},
        {.shortcut = std::string(keys::customShortcut),
         .enabled = std::string(keys::customShortcutEnabled)},
        settings, desk.hotKeys,
        [this] { return bundle.integer(palisor::dictionary::IDApp) == palisor::variants::barrier; },
        parent);
}

void Program::tellFailures() {
    tray->onMissing([this] { notices.tell("NO_TRAY", "NO_TRAY_TEXT", bundle.displayName()); });
    tray->onPlaceChange([this] { productObject.capabilitiesChanged(); });
    settings.onSetAside([this](const std::string& file) {
        notices.tell("NOTICE_SETTINGS_ASIDE", "NOTICE_SETTINGS_ASIDE_TEXT", file);
    });
    // The fixed one does nothing, and so nobody misses it: only the chosen one is worth a notice.
    desk.hotKeys.onTaken([this](const platform::Shortcut& shortcut) {
        if (chosenShortcut() == shortcut)
            notices.tell("NOTICE_SHORTCUT_TAKEN", "NOTICE_SHORTCUT_TAKEN_TEXT",
                         desk.hotKeys.modifierFlagsString(shortcut) +
                             desk.hotKeys.keyCodeString(shortcut));
        productObject.capabilitiesChanged();
    });
    workspace.onNoOpener([this] { notices.tell("NOTICE_NO_OPENER", "NOTICE_NO_OPENER_TEXT"); });
    power.onNothingInhibited([this] { notices.tell("NOTICE_NOT_AWAKE", "NOTICE_NOT_AWAKE_TEXT"); });
}

void Program::tellWhyNoCalendar(platform::calendar::Refusal why) {
    notifications.deliver({.title = bundle.localizedString("CALENDAR_UNAVAILABLE"),
                           .text = bundle.localizedString(refusals[static_cast<int>(why)]),
                           .identifier = "calendar"});
}

void Program::launch() {
    application.afterEvent([this] {
        if (atLogin)
            loginWait.start([this] { begin(); });
        else
            begin();
    });
}

void Program::begin() {
    loginItems.bringUpToDate();
    if (recording) recording->writer.begin(bundle, settings.persistentDomain(), desk.displays);
    tellLimits();
    delegate->applicationDidFinishLaunching();
    // At login the shell may still be on its way.
    constexpr double timeForASlowLogin = 10;
    runLoop.schedule(timeForASlowLogin, false, "tellWhatIsMissing", [this] {
        if (const std::string reason = session.missing(); !reason.empty())
            notices.tell("NOTICE_NOT_HELD", "NOTICE_NOT_HELD_TEXT", reason);
    });
}

void Program::tellLimits() {
    const int variant = bundle.integer(palisor::dictionary::IDApp);
    for (const std::string& reason : limitsOf(variant, session.capabilities())) {
        log.write(reason);
        notices.tell("NOTICE_LIMITED", "NOTICE_LIMITED_TEXT", reason);
    }
}

bus::ProductObject::Program Program::onBus(const Product& product) {
    return {.name = product.identifier,
            .version = std::string(bundle.string("CFBundleShortVersionString")),
            // Its menu is made at the end of its start.
            .delegate = [this] { return delegate && delegate->mainMenu ? &*delegate : nullptr; },
            .capabilities = [this] { return capabilities(); },
            .showMenu = [this] { activate(); },
            .quit = [this] { application.afterEvent([this] { quit(); }); },
            .report = [this](DoctorReport::Done done) { doctor.ask(std::move(done)); }};
}

std::optional<platform::Shortcut> Program::chosenShortcut() const {
    return platform::Shortcut::fromValue(settings.object(palisor::keys::customShortcut));
}

platform::Capabilities Program::capabilities() const {
    platform::Capabilities all = session.capabilities();
    const int variant = bundle.integer(palisor::dictionary::IDApp);
    std::erase_if(all, [variant](const auto& one) { return !concerns(variant, one); });
    const bool isInTray = tray && tray->isInTray();
    all.push_back(
        {"tray", isInTray,
         isInTray ? "" : "The desktop has no tray: the command line does what it would."});
    const auto shortcut = chosenShortcut();
    const bool isTaken = shortcut && desk.hotKeys.isTaken(*shortcut);
    all.push_back({"shortcut", !isTaken,
                   isTaken ? "Another program holds the shortcut, which does nothing here." : ""});
    return all;
}

void Program::activate() {
    // The caller waits for an answer, and the menu stays open as long as the user likes.
    application.afterEvent([this] { statusItem.activate(); });
}

// By a timer, since those wait for the end of an open menu or alert.
void Program::startAgain() {
    runLoop.schedule(0, false, "startAgain", [this] {
        startsAgain = true;
        quit();
    });
}

void Program::quit() {
    // A signal may come before the application object is there.
    if (delegate)
        delegate->quit();
    else
        exit(0);
}
