#include "platform/qt/session/QtWorkspace.h"

#include "platform/qt/session/DistributedNotifications.h"

#include <QDesktopServices>
#include <QUrl>
#include <utility>

namespace platform::qt {

namespace {

constexpr int longestShown = 80;

// A file or a program of the user's must not be reached by what may have come over the network.
bool mayBeOpened(const QUrl& url) {
    if (!url.isValid()) return false;
    const QString scheme = url.scheme();
    if (scheme == "mailto") return !url.path().isEmpty();
    return (scheme == "http" || scheme == "https") && !url.host().isEmpty();
}

// What was refused may hold line ends, and be of any length.
std::string forLog(const std::string& url) {
    QString text = QString::fromStdString(url).left(longestShown);
    for (QChar& letter : text)
        if (!letter.isPrint()) letter = '?';
    return text.toStdString();
}

} // namespace

void QtWorkspace::openURL(const std::string& url) {
    const QUrl address = QUrl::fromEncoded(QByteArray::fromStdString(url), QUrl::TolerantMode);
    if (!mayBeOpened(address)) {
        log.write("the address \"" + forLog(url) +
                  "\" is not opened: it is none of http, https and mailto");
        return;
    }
    if (QDesktopServices::openUrl(address)) return;
    if (noOpener) noOpener();
    if (std::exchange(toldMissing, true)) return;
    log.write("no address can be opened: install xdg-utils and a browser");
}

void QtWorkspace::postDistributedNotification(const std::string& name, const std::string& object) {
    DistributedNotifications::post(name, object, log);
}

} // namespace platform::qt
