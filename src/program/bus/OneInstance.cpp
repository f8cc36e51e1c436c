#include "program/bus/OneInstance.h"

#include "platform/linux/files/AtomicFile.h"

#include <utility>

namespace {

namespace lnx = platform::linux;
using State = lnx::LockFile::State;

std::optional<lnx::LockFile> lockFor(const std::string& name, const std::string& display) {
    auto path = lnx::lockPath(name, display);
    if (!path) return std::nullopt;
    return lnx::LockFile(std::move(*path));
}

} // namespace

OneInstance::OneInstance(const std::string& name, const std::string& display, bus::Link& link,
                         platform::Descriptors& descriptorService, platform::Log& logger)
    : descriptors(descriptorService),
      log(logger),
      lock(lockFor(name, display)),
      onBus(name, link, log, display) {}

bool OneInstance::claim(bool atLogin) {
    if (lock && lock->state() == State::isElsewhere) {
        if (!atLogin) lock->knock();
        return false;
    }
    if (!lock || lock->state() == State::impossible)
        log.write("no lock can be had in a runtime folder: without a session bus a second start "
                  "is not noticed");
    return onBus.claim(!atLogin);
}

void OneInstance::onActivate(const std::function<void()>& handler) {
    onBus.onActivate(handler);
    if (!lock || lock->state() != State::held) return;
    // Should the file be taken away, nobody has knocked.
    knocks.emplace(lock->path(), descriptors, log, [this, handler] {
        if (lnx::identityOf(lock->path())) handler();
    });
}
