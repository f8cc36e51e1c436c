#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace platform {

struct HttpRequest {
    /// Characters that no address may hold are escaped on the way; nothing else is changed.
    std::string url{};
    double timeout = 0;      ///< seconds, for the whole exchange
    int cachePolicy = 0;     ///< one of the policies below
    std::string authority{}; ///< a file of certificates to trust besides the system's; or empty
};

struct HttpReply {
    std::optional<std::string> error{}; ///< what went wrong; then there is no body
    std::string body{};                 ///< the bytes as they came, whatever the status
};

/// Addresses of the web. Any thread.
class Http {
  public:
    /// No cache may answer, neither one of this machine's nor one on the way.
    static constexpr int reloadIgnoringLocalAndRemoteCacheData = 4;

    /// The longest body; one that goes on is an error.
    static constexpr std::size_t longestBody = 1048576;

    virtual ~Http() = default;

    /// Gets an https address and waits for it: the name is looked up, the peer verified, and
    /// redirections are followed to https addresses. Whatever takes longer than the time-out is
    /// given up then. Nothing is logged of an exchange that fails.
    virtual HttpReply get(const HttpRequest& request) = 0;
};

} // namespace platform
