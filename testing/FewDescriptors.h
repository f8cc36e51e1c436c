#pragma once

#include "platform/Descriptors.h"

#include <array>
#include <functional>
#include <poll.h>
#include <stdexcept>

namespace testing_support {

/// Sockets and clocks in a table that allocates nothing.
class FewDescriptors final : public platform::Descriptors {
  public:
    void watchReadable(int watched, std::function<void()> call) override {
        for (Watch& one : watches)
            if (one.fd < 0) {
                one = {watched, std::move(call)};
                return;
            }
        throw std::length_error("too many descriptors");
    }
    void unwatch(int watched) override {
        for (Watch& one : watches)
            if (one.fd == watched) one.fd = -1;
    }
    /// Waits until one can be read, and calls its handler.
    void turn() {
        std::array<pollfd, count> polled{};
        for (std::size_t i = 0; i < count; ++i)
            polled[i] = {watches[i].fd, POLLIN, 0};
        poll(polled.data(), count, 20000);
        for (std::size_t i = 0; i < count; ++i)
            if (polled[i].revents != 0 && watches[i].fd == polled[i].fd) {
                const auto ready = watches[i].ready; // which may end its own watch
                ready();
            }
    }

  private:
    struct Watch {
        int fd = -1;
        std::function<void()> ready{};
    };
    static constexpr std::size_t count = 16;
    std::array<Watch, count> watches;
};

} // namespace testing_support
