#include "platform/session/UnixSocket.h"

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform::session {

int connectTo(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) return -1;
    std::memcpy(address.sun_path, path.data(), path.size());
    const int made = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (made < 0) return -1;
    if (::connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return made;
    ::close(made);
    return -1;
}

} // namespace platform::session
