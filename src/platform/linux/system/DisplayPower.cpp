#include "platform/linux/system/DisplayPower.h"

#include <utility>

namespace platform::linux {

DisplayPower::DisplayPower(std::vector<WakeLock*> all, Log& logger)
    : ways(std::move(all)), log(logger) {}

int DisplayPower::createAssertion(std::string_view type, std::uint32_t level, std::string_view name,
                                  AssertionId& id) {
    if (type != "NoDisplaySleepAssertion" || level == 0) return notSupported;
    const AssertionId wanted = made + 1;
    bool any = false;
    for (WakeLock* const way : ways) {
        if (way->keep(wanted, std::string(name)))
            any = true;
        else if (told.insert(way).second)
            log.write(way->missing());
    }
    if (!any) {
        end(wanted);
        if (nothingWorks) nothingWorks();
        return nothingInhibited;
    }
    id = made = wanted;
    held.insert(id);
    return success;
}

int DisplayPower::releaseAssertion(AssertionId id) {
    if (held.erase(id) == 0) return noSuchAssertion;
    end(id);
    return success;
}

void DisplayPower::end(AssertionId id) {
    for (WakeLock* const way : ways)
        way->release(id);
}

} // namespace platform::linux
