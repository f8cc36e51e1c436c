#pragma once

#include "platform/qt/web/CookieReader.h"

#include <QWebEngineProfile>

namespace platform::qt {

/// The storage of the engine, in a folder of its own below the program's data and cache folders.
/// The pages that use it must go before it.
///
/// The engine can drop its caches and cookies, but what pages store only together with the whole
/// folder, and not while it has that open. So a storage that is to be emptied is retired: new pages
/// get the next one, and its folders go with the object.
class WebProfile {
  public:
    /// The one that was used last.
    WebProfile();
    WebProfile(const WebProfile&) = delete;
    WebProfile& operator=(const WebProfile&) = delete;

    /// Marks it as retired and gives its successor.
    std::shared_ptr<WebProfile> retire();

  private:
    explicit WebProfile(int number);

    /// Outlives the engine's use of them.
    struct Folders {
        explicit Folders(int number);
        ~Folders();
        Folders(const Folders&) = delete;
        Folders& operator=(const Folders&) = delete;

        QString data, cache;
        bool retired = false;
    };

    int number;
    Folders folders{number};

  public:
    QWebEngineProfile engine;
    CookieReader cookieReader{engine};
};

} // namespace platform::qt
