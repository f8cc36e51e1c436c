#include "platform/qt/web/PageOfWindow.h"

#include "platform/qt/session/Addresses.h"

#include <QDesktopServices>
#include <QWebEngineSettings>
#include <algorithm>
#include <array>

namespace platform::qt {

namespace {

// What the engine shows itself.
constexpr std::array<QStringView, 5> ownSchemes = {u"http", u"https", u"about", u"data", u"blob"};

} // namespace

PageOfWindow::PageOfWindow(QWebEngineProfile* profile) : QWebEnginePage(profile) {
    // Otherwise a page could ask for them of its own accord. It is asked below before one is
    // opened.
    settings()->setUnknownUrlSchemePolicy(
        QWebEngineSettings::AllowUnknownUrlSchemesFromUserInteraction);
}

bool PageOfWindow::acceptNavigationRequest(const QUrl& url, NavigationType type, bool) {
    if (std::ranges::find(ownSchemes, url.scheme()) != ownSchemes.end()) return true;
    if (type == NavigationTypeLinkClicked)
        if (const auto address = openableAddress(url.toEncoded().toStdString()))
            QDesktopServices::openUrl(*address);
    return false;
}

} // namespace platform::qt
