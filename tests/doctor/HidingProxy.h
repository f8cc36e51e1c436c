#pragma once

#include "testing/Child.h"

#include <string>
#include <thread>

namespace desktop {

/// Stands before an X server and hides an extension from every client: no server can be started
/// without the one for input.
class HidingProxy {
  public:
    /// `behind` is the server's display, as ":3". Throws std::runtime_error where no socket can be
    /// made.
    HidingProxy(const std::string& behind, std::string extension);
    ~HidingProxy();
    HidingProxy(const HidingProxy&) = delete;
    HidingProxy& operator=(const HidingProxy&) = delete;

    /// The one that clients are to use, which was free.
    const std::string& display() const { return ownDisplay; }

  private:
    struct Client {
        support::Descriptor client, server;
    };

    void bindFree();
    void run();
    Client meet() const;
    bool pass(const support::Descriptor& from, const support::Descriptor& to, bool hides) const;

    std::string serverSocket;
    std::string ownDisplay;
    std::string ownSocket;
    std::string hidden;
    support::Descriptor listener;
    support::Pipe stop;
    std::thread thread;
};

} // namespace desktop
