#pragma once

#include "platform/Descriptors.h"

#include <map>
#include <memory>

class QSocketNotifier;

namespace platform::qt {

/// Watches through the toolkit's loop, of which all descriptors together are one: a loop that waits
/// looks at each of its own at every wake-up. Descriptors may be given before there is an
/// application object, which a notifier needs; `start` is called once there is one.
class QtDescriptors final : public Descriptors {
  public:
    /// Throws std::system_error where the system has no descriptor left.
    QtDescriptors();
    ~QtDescriptors() override;
    QtDescriptors(const QtDescriptors&) = delete;
    QtDescriptors& operator=(const QtDescriptors&) = delete;

    void watchReadable(int fd, std::function<void()> ready) override;
    void unwatch(int fd) override;

    void start();

  private:
    void callReady();

    std::map<int, std::function<void()>> watches;
    int together;
    std::unique_ptr<QSocketNotifier> notifier;
};

} // namespace platform::qt
