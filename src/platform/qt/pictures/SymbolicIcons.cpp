#include "platform/qt/pictures/SymbolicIcons.h"

#include <QDir>
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

// lxqt looks for PNG files only, in every folder two levels below "hicolor", and shows nothing
// where it finds a name without one. Hosts that tint read only the folders of the theme's own
// index, so that these names, which no theme has, hide the files from them.
QString SymbolicIcons::publish(const std::string& name, const QList<QImage>& pictures) const {
    if (path.isEmpty() || pictures.isEmpty()) return {};
    const QString iconName = QString::fromStdString(name + ending);
    for (const QImage& picture : pictures) {
        const QDir plain(QString("%1/hicolor/plain%2/status").arg(path).arg(picture.width()));
        plain.mkpath(".");
        picture.save(plain.filePath(iconName + ".png"));
    }
    return iconName;
}

} // namespace platform::qt
