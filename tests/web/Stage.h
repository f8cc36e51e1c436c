#pragma once

#include "platform/Web.h"
#include "platform/qt/web/WebModule.h"
#include "testing/KeptLog.h"
#include "testing/desktop/PrivateDesktop.h"

#include <QTcpServer>
#include <functional>
#include <map>
#include <string>
#include <vector>

class QTcpSocket;

namespace webtests {

/// The desktop that this process runs on.
support::PrivateDesktop& desktop();

/// Runs the event loop until the condition holds; false when that takes far too long.
bool waitUntil(const std::function<bool()>& condition);

/// All cookies of an engine.
std::vector<platform::Cookie> cookiesOf(platform::Web& web);

/// A web server on the loopback interface, in this thread's event loop.
class Server {
  public:
    struct Page {
        std::string body;
        std::vector<std::string> cookies{}; ///< Set-Cookie headers
    };
    struct Request {
        std::string path;
        std::string cookie; ///< the header, empty for none
    };

    Server();

    /// What is answered from now on; other paths are not found.
    std::map<std::string, Page> pages;
    /// In the order of arrival; what browsers ask for of their own accord is left out.
    std::vector<Request> requests;

    std::string url(const std::string& path) const;
    /// Waits for the next request and takes it; an empty path when none comes.
    Request next();

  private:
    void answer(QTcpSocket& socket);

    QTcpServer server;
};

/// The engine as the program has it.
struct Engine {
    testing_support::KeptLog log;
    platform::qt::WebModule web{WEB_ENGINE, log};
};

} // namespace webtests
