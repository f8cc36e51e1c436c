#include "platform/sway/undo/UndoFile.h"

#include "platform/sway/connection/Ipc.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

constexpr const char* prefix = "sway-undo-";
constexpr std::size_t largest = 1U << 20;

// Of a file that was damaged nothing else is run.
bool takesBack(std::string_view command) {
    return std::ranges::any_of(
               std::initializer_list<std::string_view>{"input ", "seat ", "unbindcode "},
               [command](std::string_view word) { return command.starts_with(word); }) &&
           command.find('\n') == std::string_view::npos;
}

std::string textOf(int file) {
    std::string text(largest, '\0');
    const ssize_t got = ::pread(file, text.data(), text.size(), 0);
    text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return text;
}

/// For a compositor that has not answered. One that hangs may still be connected to, or has too
/// many who wait for that.
Undone silentOrGone(const std::string& socket) {
    errno = 0;
    return Ipc::open(socket) || errno == EAGAIN ? Undone::silent : Undone::outlived;
}

Undone run(const Undoing& undoing, std::chrono::seconds patience) {
    const auto compositor = Ipc::open(undoing.socket);
    if (!compositor) return silentOrGone(undoing.socket);
    const auto deadline = Ipc::Clock::now() + patience;
    const auto state = compositor->ask(Ipc::Type::bindingState, "", deadline);
    const JsonValue* const name = state ? state->member("name") : nullptr;
    const auto* const mode = name ? std::get_if<std::string>(&name->held) : nullptr;
    // Each by itself: after one that fails the others of a list are not run.
    for (const std::string& command : undoing.commands)
        if (!compositor->ask(Ipc::Type::command, inFirstMode(command, mode ? *mode : std::string()),
                             deadline))
            return silentOrGone(undoing.socket);
    return Undone::done;
}

Undone undo(const std::string& path, bool waits, std::chrono::seconds patience) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return Undone::nothing;
    auto undone = Undone::nothing;
    if (::flock(file, waits ? LOCK_EX : LOCK_EX | LOCK_NB) == 0 &&
        ::access(path.c_str(), F_OK) == 0) {
        undone = run(undoingFrom(textOf(file)), patience);
        if (undone != Undone::silent) ::unlink(path.c_str());
    }
    ::close(file);
    return undone;
}

} // namespace

std::string toText(const Undoing& undoing) {
    std::string text = undoing.socket + "\n";
    for (const std::string& command : undoing.commands)
        if (takesBack(command)) text += command + "\n";
    return text;
}

Undoing undoingFrom(std::string_view text) {
    Undoing undoing;
    bool isFirst = true;
    // A line without an end was cut.
    for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        const std::string line(text.substr(0, end));
        text.remove_prefix(end + 1);
        if (std::exchange(isFirst, false))
            undoing.socket = line;
        else if (takesBack(line))
            undoing.commands.push_back(line);
    }
    return undoing;
}

UndoFile::UndoFile(std::string folder, std::string compositorSocket)
    : filePath(folder.empty() ? "" : folder + "/" + prefix + std::to_string(getpid())),
      socket(std::move(compositorSocket)) {}

void UndoFile::remove() {
    if (file >= 0) ::unlink(filePath.c_str());
    leave();
}

void UndoFile::leave() {
    if (file >= 0) ::close(std::exchange(file, -1));
    filePath.clear();
}

bool UndoFile::set(const std::string& key, const std::string& command) {
    if (commands[key] == command) return file >= 0 || command.empty();
    commands[key] = command;
    return write();
}

// In place, as the lock goes with the file: a kill in between leaves whole lines, since each write
// is one call.
bool UndoFile::write() {
    if (filePath.empty()) return false;
    if (file < 0) {
        constexpr mode_t usersOwn = 0600;
        file = ::open(filePath.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, usersOwn);
        if (file < 0) return false;
        if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
            ::close(std::exchange(file, -1));
            return false;
        }
    }
    Undoing undoing{socket, {}};
    for (const auto& [key, command] : commands)
        if (!command.empty()) undoing.commands.push_back(command);
    const std::string text = toText(undoing);
    return ::pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
           ::ftruncate(file, static_cast<off_t>(text.size())) == 0;
}

Undone undoWhenLeft(const std::string& file) {
    // As long as a session may last.
    return undo(file, true, std::chrono::hours(24 * 7));
}

Undone undoLeft(const std::string& folder) {
    auto all = Undone::nothing;
    std::error_code failed;
    for (const auto& entry : std::filesystem::directory_iterator(folder, failed))
        if (entry.path().filename().string().starts_with(prefix))
            all = std::max(all, undo(entry.path(), false, std::chrono::seconds(2)));
    return all;
}

} // namespace platform::sway
