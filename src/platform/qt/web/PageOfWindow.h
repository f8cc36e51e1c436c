#pragma once

#include <QWebEnginePage>

namespace platform::qt {

/// A page that cannot reach the user's other programs but as the program itself can: what the
/// engine does not show itself goes to the desktop's opener through the same filter, and only when
/// it is a link that was followed.
class PageOfWindow final : public QWebEnginePage {
  public:
    explicit PageOfWindow(QWebEngineProfile* profile);

  protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
};

} // namespace platform::qt
