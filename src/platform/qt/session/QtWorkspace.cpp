#include "platform/qt/session/QtWorkspace.h"

#include "platform/qt/session/Addresses.h"
#include "platform/qt/session/DistributedNotifications.h"

#include <QDesktopServices>
#include <utility>

namespace platform::qt {

namespace {

constexpr int longestShown = 80;

// What was refused may hold line ends, and be of any length.
std::string forLog(const std::string& url) {
    QString text = QString::fromStdString(url).left(longestShown);
    for (QChar& letter : text)
        if (!letter.isPrint()) letter = '?';
    return text.toStdString();
}

} // namespace

void QtWorkspace::openURL(const std::string& url) {
    const auto address = openableAddress(url);
    if (!address) {
        log.write("the address \"" + forLog(url) +
                  "\" is not opened: it is too long, or none of http, https and mailto");
        return;
    }
    if (QDesktopServices::openUrl(*address)) return;
    if (noOpener) noOpener();
    if (std::exchange(toldMissing, true)) return;
    log.write("no address can be opened: install xdg-utils and a browser");
}

bool QtWorkspace::leadsSomewhere(const std::string& url) const {
    return openableAddress(url).has_value() && (!isDead || !isDead(url));
}

void QtWorkspace::postDistributedNotification(const std::string& name, const std::string& object) {
    DistributedNotifications::post(name, object, log);
}

} // namespace platform::qt
