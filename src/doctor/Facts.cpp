#include "doctor/Facts.h"

#include "app/Keys.h"
#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/Installation.h"
#include "platform/linux/files/LockFile.h"
#include "platform/linux/files/XdgFiles.h"
#include "platform/linux/processes/Processes.h"
#include "platform/linux/settings/PropertyList.h"
#include "platform/linux/settings/SettingsFile.h"
#include "platform/linux/system/LinuxSystemInfo.h"
#include "platform/x11/connection/Connection.h"
#include "program/helper/LoginEntry.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sys/utsname.h>
#include <thread>
#include <unistd.h>

namespace doctor {

namespace {

namespace fs = std::filesystem;
namespace lnx = platform::linux;
using Clock = std::chrono::steady_clock;

const std::vector<std::string> tools = {
    // They hide or move the cursor,
    "unclutter", "unclutter-xfixes", "xbanish", "synergy", "synergys", "synergyc", "barrier",
    "barriers", "barrierc", "input-leap", "input-leaps", "input-leapc", "deskflow", "deskflow-core",
    "deskflow-server", "deskflow-client", "imwheel",
    // or change the monitors' colours.
    "redshift", "redshift-gtk", "gammastep", "gammastep-indicator", "xsct"};

const std::vector<std::string> keyHolders = {"sxhkd",
                                             "xbindkeys",
                                             "xfsettingsd",
                                             "xfwm4",
                                             "mate-settings-daemon",
                                             "marco",
                                             "gsd-media-keys",
                                             "gnome-shell",
                                             "csd-media-keys",
                                             "cinnamon",
                                             "kglobalaccel5",
                                             "kglobalacceld",
                                             "kwin_x11",
                                             "lxqt-globalkeysd",
                                             "openbox",
                                             "fluxbox",
                                             "icewm",
                                             "i3",
                                             "awesome",
                                             "bspwm"};

class NoLog final : public platform::Log {
  public:
    void write(std::string_view) override {}
};

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string inConfigurationFolder(const std::string& name) {
    const auto folder = lnx::configurationFolder();
    return folder ? *folder + "/" + name : std::string();
}

/// Folders that are missing are made where one above them can be written.
bool canMakeFilesIn(fs::path folder) {
    std::error_code error;
    while (!fs::exists(folder, error) && folder != folder.parent_path())
        folder = folder.parent_path();
    return fs::is_directory(folder, error) && ::access(folder.c_str(), W_OK | X_OK) == 0;
}

SettingsFacts settingsOf(const std::string& identifier) {
    using File = SettingsFacts::File;
    SettingsFacts facts{.path = inConfigurationFolder(identifier + ".plist")};
    if (facts.path.empty()) return facts;
    const std::string file = lnx::linksFollowed(facts.path).back();
    facts.canWrite = canMakeFilesIn(fs::path(file).parent_path());
    const auto found = lnx::readFile(file);
    switch (found.state) {
    case lnx::FileRead::State::absent:
        return facts;
    case lnx::FileRead::State::foreign:
        facts.file = File::foreign;
        return facts;
    case lnx::FileRead::State::failed:
        facts.file = File::unreadable;
        return facts;
    case lnx::FileRead::State::read:
        break;
    }
    const auto [wholeness, list] = lnx::readPropertyList(found.text);
    constexpr File states[] = {File::whole, File::repeatsKeys, File::blank, File::damaged};
    facts.file = states[static_cast<int>(wholeness)];
    const auto value = [&list = list](palisor::keys::Key key) -> const platform::Value* {
        const auto stored = list.find(key);
        return stored != list.end() && stored->second.value ? &*stored->second.value : nullptr;
    };
    // On unless it is switched off.
    const auto* const enabled = value(palisor::keys::customShortcutEnabled);
    if (enabled == nullptr || platform::boolValue(*enabled))
        facts.shortcut = platform::Shortcut::fromValue(value(palisor::keys::customShortcut));
    return facts;
}

std::string systemName() {
    std::string name;
    std::ifstream file("/etc/os-release");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with("PRETTY_NAME=")) name = line.substr(line.find('=') + 1);
    std::erase(name, '"');
    utsname kernel{};
    if (::uname(&kernel) == 0)
        name += (name.empty() ? "" : ", ") + std::string(kernel.sysname) + " " + kernel.release;
    return name + (name.empty() ? "" : ", ") + "Qt " + lnx::toolkitVersion();
}

RunningFacts runningOne(const std::string& identifier) {
    for (const std::string& lock : locksOf(identifier))
        if (const auto holder = lnx::holderOf(lock))
            return {.process = holder, .isStopped = lnx::OtherProcess(*holder).isStopped()};
    return {};
}

} // namespace

// Not std::async, whose future waits for the end.
std::future<void> apart(std::function<void()> work) {
    std::promise<void> done;
    auto future = done.get_future();
    std::thread([done = std::move(done), work = std::move(work)]() mutable {
        work();
        done.set_value();
    }).detach();
    return future;
}

ProductFacts factsOf(const lnx::ProductBundle& bundle) {
    return {.name = bundle.name(),
            .title = bundle.displayName(),
            .identifier = bundle.identifier(),
            .version = bundle.version(),
            .variant = bundle.integer(palisor::dictionary::IDApp)};
}

// On a console, where a person goes whose desktop hangs, no display is named.
std::vector<std::string> locksOf(const std::string& identifier) {
    std::vector<std::string> locks;
    const auto folder = lnx::runtimeFolder();
    if (!folder) return locks;
    for (const std::string& display :
         {variable("WAYLAND_DISPLAY"), platform::x11::plainDisplayName(variable("DISPLAY"))})
        if (!display.empty()) locks.push_back(lnx::lockPath(identifier, display).value());
    if (!locks.empty()) return locks;
    std::error_code error;
    for (fs::directory_iterator at(*folder, error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename();
        const bool isOurs =
            name.starts_with(identifier + ":") || name.starts_with(identifier + "wayland-");
        if (isOurs && name.ends_with(".lock")) locks.push_back(at->path());
    }
    std::ranges::sort(locks);
    return locks;
}

lnx::AutostartItems autostartItems(const lnx::ProductBundle& bundle,
                                   const std::string& calendarFolder, platform::Log& log) {
    return {inConfigurationFolder("autostart"), helper::loginEntry(bundle, calendarFolder), log};
}

Facts gather(const lnx::ProductBundle& bundle, platform::Log& log) {
    const auto deadline = Clock::now() + patience;
    Facts facts{.product = factsOf(bundle),
                .display = variable("DISPLAY"),
                .waylandDisplay = variable("WAYLAND_DISPLAY"),
                .sessionType = variable("XDG_SESSION_TYPE"),
                .desktop = variable("XDG_CURRENT_DESKTOP")};
    facts.settings = settingsOf(facts.product.identifier);
    facts.running = runningOne(facts.product.identifier);

    // The server is asked while the bus is.
    auto server = std::make_shared<platform::x11::ServerFacts>();
    platform::x11::ServerQuestion question{.shortcut = facts.settings.shortcut,
                                           .triesShortcut = !facts.running.process,
                                           .rampFolder = lnx::runtimeFolder().value_or("")};
    const auto answered = apart([server, question = std::move(question)] {
        NoLog quiet;
        lnx::SettingsFile none("", quiet, nullptr);
        *server = platform::x11::askServer(question, none, quiet);
    });
    auto wayland = std::make_shared<WaylandFacts>();
    const auto joined = apart([wayland] { *wayland = askCompositor(); });
    facts.bus = askBus(facts.product.identifier, deadline);
    facts.serverAnswers = answered.wait_until(deadline) == std::future_status::ready;
    if (facts.serverAnswers) facts.server = std::move(*server);

    facts.compositorAnswers = joined.wait_until(deadline) == std::future_status::ready;
    if (facts.compositorAnswers) facts.wayland = std::move(*wayland);

    facts.autostart = autostartItems(bundle, {}, log).entries();
    const auto isHere = [own = platform::x11::plainDisplayName(facts.display)](auto& display) {
        return platform::x11::plainDisplayName(display) == own;
    };
    facts.tools = lnx::runningOf(tools, isHere);
    facts.keyHolders = lnx::runningOf(keyHolders, isHere);
    std::error_code error;
    facts.hasCalendarModule = fs::exists(lnx::modulePath("calendar.so"), error);
    facts.calendarFolder = bundle.string("CalendarFolder");
    facts.system = systemName();
    return facts;
}

} // namespace doctor
