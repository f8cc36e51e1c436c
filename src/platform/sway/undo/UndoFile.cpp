#include "platform/sway/undo/UndoFile.h"

#include "platform/sway/connection/Ipc.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace platform::sway {

namespace {

constexpr const char* prefix = "sway-undo-";

} // namespace

UndoFile::UndoFile(std::string folder, std::string compositorSocket)
    : filePath(folder.empty() ? "" : folder + "/" + prefix + std::to_string(getpid())),
      socket(std::move(compositorSocket)) {}

UndoFile::~UndoFile() {
    if (file < 0) return;
    ::unlink(filePath.c_str());
    ::close(file);
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
    std::string text = socket + "\n";
    for (const auto& [key, command] : commands)
        if (!command.empty()) text += command + "\n";
    return ::pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
           ::ftruncate(file, static_cast<off_t>(text.size())) == 0;
}

void undo(const std::string& path, bool waits) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    if (::flock(file, waits ? LOCK_EX : LOCK_EX | LOCK_NB) == 0) {
        std::ifstream text(path);
        std::string line;
        std::getline(text, line);
        if (const auto compositor = Ipc::open(line)) {
            const auto deadline = Ipc::Clock::now() + std::chrono::seconds(2);
            while (std::getline(text, line))
                if (!line.empty()) compositor->ask(Ipc::Type::command, line, deadline);
        }
        ::unlink(path.c_str());
    }
    ::close(file);
}

void undoLeft(const std::string& folder) {
    std::error_code failed;
    for (const auto& entry : std::filesystem::directory_iterator(folder, failed))
        if (entry.path().filename().string().starts_with(prefix)) undo(entry.path(), false);
}

} // namespace platform::sway
