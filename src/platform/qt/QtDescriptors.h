#pragma once

#include "platform/Descriptors.h"

#include <map>
#include <memory>

class QSocketNotifier;

namespace platform::qt {

/// Watches through the toolkit's loop. Descriptors may be given before there is an application
/// object, which a notifier needs; `start` is called once there is one.
class QtDescriptors final : public Descriptors {
  public:
    QtDescriptors();
    ~QtDescriptors() override;

    void watchReadable(int fd, std::function<void()> ready) override;
    void unwatch(int fd) override;

    void start();

  private:
    // A notifier must not be deleted while it calls.
    struct DeleteLater {
        void operator()(QSocketNotifier* notifier) const;
    };
    struct Watch {
        std::function<void()> ready;
        std::unique_ptr<QSocketNotifier, DeleteLater> notifier;
    };

    static void attach(int fd, Watch& watch);

    std::map<int, Watch> watches;
    bool started = false;
};

} // namespace platform::qt
