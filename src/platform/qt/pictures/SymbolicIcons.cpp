#include "platform/qt/pictures/SymbolicIcons.h"

#include <QFile>
#include <QStandardPaths>
#include <filesystem>

namespace platform::qt {

namespace {

namespace fs = std::filesystem;

constexpr const char* ending = "-symbolic";

} // namespace

// All at once: hosts list the folder when they first see it, and maybe never again.
SymbolicIcons::SymbolicIcons(const Pictures& images, const std::string& id) {
    const QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty()) return;
    const fs::path folder = fs::path(runtime.toStdString()) / id / "icons";
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure) return;
    for (const auto& [name, file] : images.files()) {
        const fs::path link = folder / (name + ending + ".svg");
        fs::remove(link, failure);
        fs::create_symlink(fs::absolute(file), link, failure);
        if (failure) return;
    }
    path = QString::fromStdString(folder.string());
}

QString SymbolicIcons::nameOf(const std::string& picture) const {
    const std::string name = picture + ending;
    const bool isThere = QFile::exists(path + "/" + QString::fromStdString(name) + ".svg");
    return isThere && !path.isEmpty() ? QString::fromStdString(name) : QString();
}

} // namespace platform::qt
