#include "app/AppDelegate.h"
#include "util/Format.h"

// Keeping the displays awake.

namespace palisor {

namespace {

constexpr std::uint32_t assertionOn = 255;

} // namespace

void AppDelegate::noSleep() {
    services.log.write("noSleep");
    const int result = services.power.createAssertion("NoDisplaySleepAssertion", assertionOn,
                                                      "Describe Activity Type", assertionID);
    if (result != platform::Power::success)
        services.log.write(formatted("sometimes wrong on NO SLEEP success:%d", result));
    else
        services.log.write("kIOReturnSuccess");
}

/// The message on success, and none on failure, is intended.
void AppDelegate::readyToSleep() {
    services.log.write("readyToSleep");
    const int result = services.power.releaseAssertion(assertionID);
    if (result == platform::Power::success)
        services.log.write(formatted("sometimes wrong ON READY FOR SLEEP success:%d", result));
}

} // namespace palisor
