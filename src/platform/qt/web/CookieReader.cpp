#include "platform/qt/web/CookieReader.h"

#include <QWebEngineCookieStore>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <utility>

namespace platform::qt {

namespace {

// No page can be there.
const QString markDomain = QStringLiteral("cookies.invalid");

bool isMark(const QNetworkCookie& cookie) {
    return cookie.domain().endsWith(markDomain);
}

} // namespace

CookieReader::CookieReader(QWebEngineProfile& owner) : profile(owner) {
    const auto* store = profile.cookieStore();
    connect(store, &QWebEngineCookieStore::cookieAdded, this, &CookieReader::added);
    connect(store, &QWebEngineCookieStore::cookieRemoved, this, &CookieReader::removed);
}

CookieReader::~CookieReader() = default;

void CookieReader::read(Done done) {
    waiting.push_back(std::move(done));
    setMark();
}

// The profile begins to work with its first page.
void CookieReader::setMark() {
    if (!connected && !firstPage) {
        firstPage = std::make_unique<QWebEnginePage>(&profile);
        firstPage->setHtml({});
    }
    QNetworkCookie mark("mark", QByteArray::number(++marks));
    mark.setDomain(markDomain);
    mark.setPath("/");
    profile.cookieStore()->setCookie(mark);
}

void CookieReader::added(const QNetworkCookie& cookie) {
    if (isMark(cookie)) {
        markCame(cookie);
        return;
    }
    removed(cookie);
    known.push_back(cookie);
}

void CookieReader::removed(const QNetworkCookie& cookie) {
    known.removeIf([&cookie](const auto& other) { return other.hasSameIdentifier(cookie); });
}

void CookieReader::markCame(const QNetworkCookie& mark) {
    connected = true;
    if (firstPage) firstPage.release()->deleteLater();
    // Whoever asked since then waits for the latest mark.
    if (mark.value().toInt() != marks) return;
    profile.cookieStore()->deleteCookie(mark);
    std::vector<Cookie> cookies;
    for (const QNetworkCookie& cookie : std::as_const(known))
        cookies.push_back(cookie.toRawForm().toStdString());
    for (const Done& done : std::exchange(waiting, {}))
        done(cookies);
}

} // namespace platform::qt
