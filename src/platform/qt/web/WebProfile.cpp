#include "platform/qt/web/WebProfile.h"

#include <QDir>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>

namespace platform::qt {

namespace {

QString folderIn(QStandardPaths::StandardLocation location) {
    return QStandardPaths::writableLocation(location) + "/web";
}

QString dataFolder() {
    return folderIn(QStandardPaths::AppLocalDataLocation);
}

QString cacheFolder() {
    return folderIn(QStandardPaths::CacheLocation);
}

/// The newest storage, from 1; what a killed program left of older ones is removed.
int newestNumber() {
    int newest = 1;
    QDir folder(dataFolder());
    const QStringList names = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : names)
        newest = std::max(newest, name.toInt());
    for (const QString& name : names)
        if (const int number = name.toInt(); number > 0 && number < newest)
            QDir(folder.filePath(name)).removeRecursively();
    return newest;
}

} // namespace

WebProfile::WebProfile() : WebProfile(newestNumber()) {}

WebProfile::Folders::Folders(int number)
    : data(dataFolder() + '/' + QString::number(number)),
      cache(cacheFolder() + '/' + QString::number(number)) {}

// The engine's threads may be at work for a moment yet: what they leave goes at the next start.
WebProfile::Folders::~Folders() {
    if (!retired) return;
    QDir(data).removeRecursively();
    QDir(cache).removeRecursively();
}

WebProfile::WebProfile(int ownNumber)
    : number(ownNumber), engine("web" + QString::number(ownNumber)) {
    engine.setPersistentStoragePath(folders.data);
    engine.setCachePath(folders.cache);
    // The engine never tells the cookies that it stored itself, so it stores none: whoever wants
    // them back saves and sets them.
    engine.setPersistentCookiesPolicy(QWebEngineProfile::NoPersistentCookies);
}

std::shared_ptr<WebProfile> WebProfile::retire() {
    folders.retired = true;
    std::shared_ptr<WebProfile> next(new WebProfile(number + 1));
    // The newest folder is the one that the next start uses, also if nothing is ever stored in it.
    QDir().mkpath(next->folders.data);
    return next;
}

} // namespace platform::qt
