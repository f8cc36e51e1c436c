#include "platform/linux/files/XdgFiles.h"

#include "platform/linux/files/AtomicFile.h"
#include "platform/linux/files/FileHandle.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::linux {

namespace {

/// As the user's file of folders has it, or by its usual name.
std::optional<std::string> userFolder(QStandardPaths::StandardLocation which) {
    if (qEnvironmentVariableIsEmpty("HOME")) return std::nullopt;
    return QStandardPaths::writableLocation(which).toStdString();
}

/// Anybody can make names among the temporary files, so what is there already must be the user's
/// own folder, and closed to others.
bool isForTheUserAlone(const std::string& folder) {
    if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return false;
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

} // namespace

std::optional<std::string> configurationFolder() {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    if (folder != nullptr && folder[0] == '/') return folder;
    if (qEnvironmentVariableIsEmpty("HOME")) return std::nullopt;
    return qgetenv("HOME").toStdString() + "/.config";
}

std::optional<std::string> runtimeFolder() {
    const char* session = std::getenv("XDG_RUNTIME_DIR");
    if (session != nullptr && session[0] == '/') {
        const std::string folder = std::string(session) + "/" PROGRAM_FOLDER;
        if (isForTheUserAlone(folder)) return folder;
    }
    std::error_code error;
    const auto temporary = std::filesystem::temp_directory_path(error);
    if (error) return std::nullopt;
    const std::string folder =
        (temporary / (PROGRAM_FOLDER "-" + std::to_string(::geteuid()))).string();
    return isForTheUserAlone(folder) ? std::optional(folder) : std::nullopt;
}

std::optional<std::string> XdgFiles::preferencesFolder() const {
    return configurationFolder();
}

bool XdgFiles::exists(const std::string& path) const {
    return QFileInfo::exists(QString::fromStdString(path));
}

std::optional<std::string> XdgFiles::documentsFolder() const {
    return userFolder(QStandardPaths::DocumentsLocation);
}

std::optional<std::string> XdgFiles::downloadsFolder() const {
    return userFolder(QStandardPaths::DownloadLocation);
}

std::optional<std::string> XdgFiles::desktopFolder() const {
    return userFolder(QStandardPaths::DesktopLocation);
}

bool XdgFiles::makeFolder(const std::string& path) {
    return makeFolders(path) == 0 && QFileInfo(QString::fromStdString(path)).isDir();
}

bool XdgFiles::write(const std::string& path, std::string_view bytes) {
    return !replaceFile(path, bytes).failure;
}

void XdgFiles::createEmpty(const std::string& path) {
    const FileHandle file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file) log.write("cannot make the file " + path + ": " + std::strerror(errno));
}

} // namespace platform::linux
