#pragma once

#include "platform/Descriptors.h"

#include <functional>
#include <map>
#include <poll.h>

namespace testing_support {

/// Descriptors without a loop: the kernel has queued a folder's events when the call that made them
/// returns.
class PolledDescriptors final : public platform::Descriptors {
  public:
    void watchReadable(int fd, std::function<void()> ready) override { watches[fd] = ready; }
    void unwatch(int fd) override { watches.erase(fd); }

    void poll() {
        for (const auto& [fd, ready] : std::map(watches)) {
            pollfd ask{fd, POLLIN, 0};
            if (::poll(&ask, 1, 0) == 1) ready();
        }
    }
    std::map<int, std::function<void()>> watches;
};

} // namespace testing_support
