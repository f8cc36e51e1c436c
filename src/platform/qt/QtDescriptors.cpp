#include "platform/qt/QtDescriptors.h"

#include <QSocketNotifier>

namespace platform::qt {

void QtDescriptors::DeleteLater::operator()(QSocketNotifier* notifier) const {
    notifier->setEnabled(false);
    notifier->disconnect();
    notifier->deleteLater();
}

QtDescriptors::QtDescriptors() = default;
QtDescriptors::~QtDescriptors() = default;

void QtDescriptors::attach(int fd, Watch& watch) {
    watch.notifier.reset(new QSocketNotifier(fd, QSocketNotifier::Read));
    // A copy: the watch may be ended from inside the call.
    QObject::connect(watch.notifier.get(), &QSocketNotifier::activated,
                     [ready = watch.ready] { ready(); });
}

void QtDescriptors::watchReadable(int fd, std::function<void()> ready) {
    unwatch(fd);
    Watch& watch = watches[fd];
    watch.ready = std::move(ready);
    if (started) attach(fd, watch);
}

void QtDescriptors::unwatch(int fd) {
    watches.erase(fd);
}

void QtDescriptors::start() {
    if (started) return;
    started = true;
    for (auto& [fd, watch] : watches)
        attach(fd, watch);
}

} // namespace platform::qt
