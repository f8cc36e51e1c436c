#pragma once

#include "testing/Child.h"
#include "testing/TempFolder.h"

#include <memory>
#include <string>

namespace support {

/// An authority of the test's own, and a certificate that it signed for "localhost". Both are made
/// anew each time.
class TestAuthority {
  public:
    struct Options {
        std::string name = "localhost"; ///< the host that the certificate is for
        bool hasExpired = false;
    };

    TestAuthority() : TestAuthority(Options{}) {}
    /// Throws std::runtime_error when a certificate cannot be made.
    explicit TestAuthority(const Options& options);

    /// Of the authority's own certificate.
    std::string file() const { return folder.path("authority.pem"); }
    std::string certificate() const { return folder.path("server.pem"); }
    std::string key() const { return folder.path("server.key"); }

  private:
    void sign(const std::string& until) const;
    void openssl(const std::vector<std::string>& arguments) const;

    testing_support::TempFolder folder;
};

/// The program "https-server" beside this file, on a free port of the loopback address.
class HttpsServer {
  public:
    /// `behaviour` is one of the program's words; `body` what it sends. Throws std::runtime_error
    /// when it does not start.
    HttpsServer(const TestAuthority& authority, const std::string& behaviour,
                const std::string& body = {});

    /// What it sends from now on.
    void setBody(const std::string& body) const { folder.write("body", body); }

    /// "localhost:12345"
    std::string host() const { return "localhost:" + port; }

    /// What has happened to it so far, a line each: "got " and a line of a request, whose last is
    /// empty.
    std::string happened() const { return process->output(); }
    /// Waits until that has happened.
    bool waitFor(const std::string& text) const { return process->waitForText(text); }
    /// The lines of the first request, when all of them are there.
    std::string request() const { return waitFor(endOfRequest) ? happened() : ""; }

  private:
    static constexpr const char* endOfRequest = "got \n";

    testing_support::TempFolder folder;
    std::unique_ptr<ChildProcess> process;
    std::string port;
};

} // namespace support
