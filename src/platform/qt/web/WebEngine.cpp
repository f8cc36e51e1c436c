#include "platform/qt/web/WebEngine.h"

#include "platform/qt/web/EngineWindow.h"

#include <QLoggingCategory>
#include <QQuickWindow>
#include <QWebEngineCookieStore>

namespace platform::qt {

WebEngine::WebEngine() {
    // The program starts without OpenGL, which nothing else in it draws with. The engine would
    // write a page about that.
    if (QQuickWindow::sceneGraphBackend() != "software")
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QLoggingCategory::setFilterRules("qt.webenginecontext=false");
    profile = std::make_shared<WebProfile>();
}

WebEngine::~WebEngine() = default;

void WebEngine::cookies(std::function<void(const std::vector<Cookie>&)> done) {
    profile->cookieReader.read(std::move(done));
}

void WebEngine::setCookie(const Cookie& text) {
    const auto cookies = QNetworkCookie::parseCookies(QByteArray::fromStdString(text));
    if (cookies.size() != 1 || cookies.first().domain().isEmpty()) return;
    QNetworkCookie cookie = cookies.first();
    QUrl origin;
    origin.setScheme(cookie.isSecure() ? "https" : "http");
    QString host = cookie.domain();
    // The engine takes a domain that is written down for one with a dot.
    if (host.startsWith('.'))
        host.remove(0, 1);
    else
        cookie.setDomain({});
    origin.setHost(host);
    origin.setPath(cookie.path().startsWith('/') ? cookie.path() : "/");
    profile->engine.cookieStore()->setCookie(cookie, origin);
}

void WebEngine::removeAllData() {
    profile->engine.cookieStore()->deleteAllCookies();
    profile->engine.clearHttpCache();
    profile->engine.clearAllVisitedLinks();
    profile = profile->retire();
}

std::unique_ptr<WebWindow> WebEngine::open(const WebWindowDescription& description) {
    return std::make_unique<EngineWindow>(description, profile);
}

} // namespace platform::qt

platform::Web* createWebEngine() {
    return new platform::qt::WebEngine;
}
