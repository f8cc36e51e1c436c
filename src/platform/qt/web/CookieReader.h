#pragma once

#include "platform/Web.h"

#include <QNetworkCookie>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

class QWebEnginePage;
class QWebEngineProfile;

namespace platform::qt {

/// Knows all cookies of a profile that began without any. The engine tells each change later and in
/// order, so a reader first sets a cookie of its own: when that has come, all that went before it
/// has.
class CookieReader final : public QObject {
  public:
    /// The profile must be new, and outlive the object.
    explicit CookieReader(QWebEngineProfile& profile);
    ~CookieReader() override;

    using Done = std::function<void(const std::vector<Cookie>&)>;
    void read(Done done);

  private:
    void setMark();
    void added(const QNetworkCookie& cookie);
    void removed(const QNetworkCookie& cookie);
    void markCame(const QNetworkCookie& mark);

    QWebEngineProfile& profile;
    std::unique_ptr<QWebEnginePage> firstPage;
    bool connected = false;
    std::vector<Done> waiting;
    QList<QNetworkCookie> known;
    int marks = 0;
};

} // namespace platform::qt
