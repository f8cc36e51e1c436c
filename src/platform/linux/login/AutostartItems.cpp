#include "platform/linux/login/AutostartItems.h"

#include "platform/linux/files/AtomicFile.h"

#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace platform::linux {

namespace {

constexpr std::string_view ending = ".desktop";
constexpr const char* checksumKey = "X-LoginItem-Checksum";
constexpr const char* helperKey = "X-LoginItem-Helper";
constexpr const char* hiddenKey = "Hidden";
constexpr const char* noDisplayKey = "NoDisplay";
/// What the settings of GNOME, Cinnamon and MATE write instead of Hidden.
constexpr std::array<const char*, 2> enabledKeys = {"X-GNOME-Autostart-enabled",
                                                    "X-MATE-Autostart-enabled"};

bool isSwitch(std::string_view line) {
    const auto key = line.substr(0, line.find('='));
    return key == hiddenKey || std::ranges::find(enabledKeys, key) != enabledKeys.end();
}

bool isOff(const DesktopEntry& entry) {
    return entry.isTrue(hiddenKey) || std::ranges::any_of(enabledKeys, [&entry](const char* key) {
               return entry.isFalse(key);
           });
}

void switchOn(DesktopEntry& entry) {
    entry.erase(hiddenKey);
    for (const char* key : enabledKeys)
        if (entry.isFalse(key)) {
            entry.erase(key);
            entry.setRaw(key, "true");
        }
}

void keepSwitches(const DesktopEntry& before, DesktopEntry& fresh) {
    const auto keep = [&](const char* key) {
        if (const auto value = before.raw(key)) fresh.setRaw(key, *value);
    };
    keep(hiddenKey);
    std::ranges::for_each(enabledKeys, keep);
}

// Of everything but the switches, and whatever the order: a desktop's settings write the lines of
// an entry anew.
std::string checksum(const DesktopEntry& entry) {
    auto lines = entry.lines();
    std::erase_if(lines, [](const std::string& line) {
        return isSwitch(line) || line.starts_with(checksumKey);
    });
    std::ranges::sort(lines);
    std::uint64_t sum = 0xcbf29ce484222325; // FNV-1a
    for (const std::string& line : lines)
        for (const char letter : line + '\n')
            sum = (sum ^ static_cast<unsigned char>(letter)) * 0x100000001b3;
    return QString("%1").arg(qulonglong{sum}, 16, 16, QChar('0')).toStdString();
}

bool isAsWritten(const DesktopEntry& entry) {
    return entry.raw(checksumKey) == checksum(entry);
}

// GLib looks for the program before it makes one % of two, so a path with one is found only by
// another program. This one changes nothing, and unlike a shell's its command has no character
// that systemd, which starts the entries of some desktops, reads otherwise.
const std::vector<std::string> indirect = {"nice", "-n", "0"};

std::vector<std::string> startable(std::vector<std::string> command) {
    if (command.front().find('%') != std::string::npos)
        command.insert(command.begin(), indirect.begin(), indirect.end());
    return command;
}

std::optional<std::string> executableOf(const DesktopEntry& entry) {
    const auto command = execArguments(entry.string("Exec"));
    if (!command) return std::nullopt;
    const auto differ = std::ranges::mismatch(*command, indirect);
    const auto program = differ.in2 == indirect.end() ? differ.in1 : command->begin();
    if (program == command->end() || program->empty()) return std::nullopt;
    const std::string& first = *program;
    if (first.starts_with('/')) return first;
    if (first.find('/') != std::string::npos) return std::nullopt;
    const QString found = QStandardPaths::findExecutable(QString::fromStdString(first));
    return found.isEmpty() ? std::nullopt : std::optional(found.toStdString());
}

bool isThere(const std::string& program) {
    return ::access(program.c_str(), X_OK) == 0;
}

bool isInSessionList(const DesktopEntry& entry) {
    return entry.hasGroup() && entry.raw("Type") == "Application" && !isOff(entry) &&
           !entry.isTrue(helperKey);
}

// Not every desktop resolves the escapes of TryExec.
bool isPlain(std::string_view path) {
    return path.find_first_of("\\\n\t\r") == std::string_view::npos && !path.starts_with(' ') &&
           !path.ends_with(' ');
}

/// Before the ending: "a" is before "a-2", and that before "a-10".
bool isBefore(const std::string& left, const std::string& right) {
    const auto stem = [](const std::string& file) {
        return file.substr(0, file.size() - ending.size());
    };
    return ::strverscmp(stem(left).c_str(), stem(right).c_str()) < 0;
}

} // namespace

AutostartItems::AutostartItems(std::string autostartFolder, Product served, Log& logger)
    : folder(std::move(autostartFolder)), product(std::move(served)), log(logger) {}

void AutostartItems::setEnabled(const std::string& helperIdentifier, bool enabled) {
    const std::string file = helperIdentifier + std::string(ending);
    if (!enabled) {
        disable(file);
        return;
    }
    enable(file, helperEntry());
}

std::vector<LoginItems::ListItem> AutostartItems::sessionList() {
    std::vector<ListItem> items;
    for (const std::string& file : files()) {
        // What cannot be read is no item: a link to /dev/null is a way to switch one off.
        const FileRead found = readFile(pathOf(file));
        const DesktopEntry entry(found.text);
        if (isInSessionList(entry)) items.push_back({idOf(file), executableOf(entry)});
    }
    return items;
}

void AutostartItems::insertLast(const std::string& path) {
    std::string file = product.identifier + std::string(ending);
    const auto present = files();
    for (int number = 2; std::ranges::find(present, file) != present.end(); ++number) {
        std::string text;
        if (read(file, text)) {
            const DesktopEntry entry(text);
            if (isOff(entry) && executableOf(entry) == path) break;
        }
        file = product.identifier + "-" + std::to_string(number) + std::string(ending);
    }
    enable(file, itemEntry(path));
}

void AutostartItems::remove(const ListItem& item) {
    if (item.id > 0 && item.id <= known.size()) disable(known[item.id - 1]);
}

void AutostartItems::bringUpToDate() {
    for (const std::string& file : files()) {
        std::string text;
        if (!file.starts_with(product.identifier) || !read(file, text)) continue;
        const DesktopEntry entry(text);
        const auto path = executableOf(entry);
        if (!path || !isAsWritten(entry)) continue;
        const bool isGone = !isThere(*path);
        DesktopEntry fresh;
        if (entry.isTrue(helperKey))
            fresh = isGone || entry.isTrue(noDisplayKey) != hasOwnItem() ? helperEntry() : entry;
        else
            fresh = itemEntry(isGone && isThere(product.program) ? product.program : *path);
        keepSwitches(entry, fresh);
        if (fresh.text() != text) write(file, fresh.text());
    }
}

std::vector<AutostartItems::Entry> AutostartItems::entries() const {
    std::vector<Entry> found;
    for (const std::string& file : files()) {
        if (!file.starts_with(product.identifier)) continue;
        const DesktopEntry entry(readFile(pathOf(file)).text);
        const auto program = executableOf(entry);
        std::vector<std::string> command;
        if (program) {
            command = execArguments(entry.string("Exec")).value_or(command);
            const auto differ = std::ranges::mismatch(command, indirect);
            if (differ.in2 == indirect.end()) command.erase(command.begin(), differ.in1);
        }
        found.push_back({.path = pathOf(file),
                         .command = std::move(command),
                         .isThere = program && isThere(*program),
                         .isOff = isOff(entry),
                         .isEdited = !isAsWritten(entry)});
    }
    return found;
}

bool AutostartItems::isSwitchedOff() const {
    bool any = false;
    for (const std::string& file : files()) {
        if (!isOwnItem(file)) continue;
        const DesktopEntry entry(readFile(pathOf(file)).text);
        if (isInSessionList(entry)) return false;
        any |= entry.hasGroup();
    }
    return any;
}

bool AutostartItems::hasOwnItem() const {
    return std::ranges::any_of(files(), [this](const std::string& file) {
        return isOwnItem(file) && DesktopEntry(readFile(pathOf(file)).text).hasGroup();
    });
}

/// Of the files that `insertLast` makes.
bool AutostartItems::isOwnItem(const std::string& file) const {
    if (!file.starts_with(product.identifier)) return false;
    const auto rest = std::string_view(file).substr(product.identifier.size());
    return rest == ending || rest.starts_with('-');
}

DesktopEntry AutostartItems::itemEntry(const std::string& path) const {
    std::vector<std::string> command{path};
    command.insert(command.end(), product.options.begin(), product.options.end());
    DesktopEntry entry = entryFor(command);
    entry.setRaw(checksumKey, checksum(entry));
    return entry;
}

// A person who has both looks for one entry and switches that.
DesktopEntry AutostartItems::helperEntry() const {
    DesktopEntry entry = entryFor(product.helper);
    entry.setRaw(helperKey, "true");
    // The helper may outlive the product, which is a package of its own.
    if (!product.program.empty() && isPlain(product.program))
        entry.setRaw("TryExec", product.program);
    if (hasOwnItem()) {
        entry.setString("Name", product.helperName);
        entry.setRaw(noDisplayKey, "true");
    }
    entry.setRaw(checksumKey, checksum(entry));
    return entry;
}

DesktopEntry AutostartItems::entryFor(const std::vector<std::string>& command) const {
    DesktopEntry entry;
    entry.setRaw("Type", "Application");
    entry.setString("Name", product.name);
    entry.setString("Comment", product.comment);
    entry.setString("Icon", product.icon);
    entry.setRaw("Exec", execValue(startable(command)));
    // A program that is gone is then no entry at all, instead of an error at every login.
    if (isPlain(command.front())) entry.setRaw("TryExec", command.front());
    entry.setRaw("Terminal", "false");
    entry.setRaw("StartupNotify", "false");
    entry.setRaw("X-GNOME-Autostart-enabled", "true");
    return entry;
}

void AutostartItems::enable(const std::string& file, const DesktopEntry& fresh) {
    if (folder.empty()) {
        log.write("no home folder: nothing can be started at login");
        return;
    }
    std::string text;
    if (!read(file, text)) return;
    DesktopEntry entry(text);
    if (!text.empty() && !entry.hasGroup()) {
        // No desktop can read it, and somebody's text it may be.
        const auto aside = moveAside(pathOf(file));
        if (!aside) return report(file, "moving the old file aside", errno);
        log.write("the login item " + pathOf(file) + " is damaged and now called " + *aside);
    }
    if (!entry.hasGroup() || isAsWritten(entry))
        entry = fresh;
    else
        switchOn(entry);
    if (entry.text() != text) write(file, entry.text());
}

void AutostartItems::disable(const std::string& file) {
    std::string text;
    if (folder.empty() || !read(file, text)) return;
    DesktopEntry entry(text);
    if (!entry.hasGroup()) return;
    if (isAsWritten(entry)) {
        if (::unlink(pathOf(file).c_str()) != 0) report(file, "deleting", errno);
        return;
    }
    entry.erase(hiddenKey);
    entry.setRaw(hiddenKey, "true");
    if (entry.text() != text) write(file, entry.text());
}

/// An empty text for a file that is not there; false, and logged, for one that cannot be read.
bool AutostartItems::read(const std::string& file, std::string& text) const {
    FileRead found = readFile(pathOf(file));
    const bool isForeign = found.state == FileRead::State::foreign;
    if (isForeign || found.state == FileRead::State::failed) {
        report(file, "reading", isForeign ? EINVAL : found.error);
        return false;
    }
    text = std::move(found.text);
    return true;
}

void AutostartItems::write(const std::string& file, const std::string& text) const {
    if (const int error = makeFolders(folder)) return report(file, "making the folder", error);
    // A link, as those who keep their configuration elsewhere have it, stays one.
    std::error_code none;
    const auto target = std::filesystem::canonical(pathOf(file), none);
    const auto replaced = replaceFile(none ? pathOf(file) : target.string(), text);
    if (replaced.failure) report(file, replaced.failure->step, replaced.failure->error);
}

std::vector<std::string> AutostartItems::files() const {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end;
         at.increment(error))
        if (std::string name = at->path().filename(); name.ends_with(ending))
            names.push_back(std::move(name));
    std::ranges::sort(names, isBefore);
    return names;
}

std::uint64_t AutostartItems::idOf(const std::string& file) {
    auto found = std::ranges::find(known, file);
    if (found == known.end()) found = known.insert(known.end(), file);
    return static_cast<std::uint64_t>(found - known.begin()) + 1;
}

void AutostartItems::report(const std::string& file, std::string_view step, int error) const {
    log.write("the login item " + pathOf(file) + " cannot be used: " + std::string(step) + ": " +
              std::strerror(error));
}

} // namespace platform::linux
