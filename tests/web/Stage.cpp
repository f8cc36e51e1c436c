#include "web/Stage.h"

#include <QEventLoop>
#include <QTcpSocket>
#include <QTimer>

namespace webtests {

bool waitUntil(const std::function<bool()>& condition) {
    return support::waitUntil(condition, support::generous, [](auto) {
        QEventLoop loop;
        QTimer::singleShot(10, &loop, &QEventLoop::quit);
        loop.exec();
    });
}

std::vector<platform::Cookie> cookiesOf(platform::Web& web) {
    bool told = false;
    std::vector<platform::Cookie> all;
    web.cookies([&](const auto& cookies) {
        all = cookies;
        told = true;
    });
    if (!waitUntil([&told] { return told; })) throw std::runtime_error("no cookies were told");
    return all;
}

Server::Server() {
    if (!server.listen(QHostAddress::LocalHost)) throw std::runtime_error("no port is free");
    QObject::connect(&server, &QTcpServer::newConnection, &server, [this] {
        while (QTcpSocket* socket = server.nextPendingConnection())
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, socket] { answer(*socket); });
    });
}

std::string Server::url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(server.serverPort()) + path;
}

void Server::answer(QTcpSocket& socket) {
    if (!socket.peek(0x10000).contains("\r\n\r\n")) return;
    const auto lines = socket.readAll().split('\n');
    Request request{lines.first().split(' ').value(1).toStdString(), {}};
    for (const QByteArray& line : lines)
        if (line.toLower().startsWith("cookie:"))
            request.cookie = line.mid(7).trimmed().toStdString();
    std::string reply = "HTTP/1.1 404 Not Found\r\n";
    std::string body;
    const std::string path = request.path.substr(0, request.path.find('?'));
    if (const auto page = pages.find(path); page != pages.end()) {
        reply = "HTTP/1.1 200 OK\r\nContent-Type: text/html; charset=utf-8\r\n";
        for (const std::string& cookie : page->second.cookies)
            reply += "Set-Cookie: " + cookie + "\r\n";
        body = page->second.body;
    }
    reply += "Cache-Control: no-store\r\nConnection: close\r\nContent-Length: " +
             std::to_string(body.size()) + "\r\n\r\n" + body;
    socket.write(QByteArray::fromStdString(reply));
    socket.disconnectFromHost();
    if (path != "/favicon.ico") requests.push_back(request);
}

Server::Request Server::next() {
    if (!waitUntil([this] { return !requests.empty(); })) return {};
    Request first = requests.front();
    requests.erase(requests.begin());
    return first;
}

} // namespace webtests
