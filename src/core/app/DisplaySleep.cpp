#include "app/AppDelegate.h"

#include <array>
#include <cstdio>

// Keeping the displays awake.

namespace palisor {

namespace {

constexpr std::uint32_t assertionOn = 255;

std::string withCode(const char* format, int code) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), format, code);
    return text.data();
}

} // namespace

void AppDelegate::noSleep() {
    services.log.write("noSleep");
    const int result = services.power.createAssertion("NoDisplaySleepAssertion", assertionOn,
                                                      "Describe Activity Type", assertionID);
    if (result != platform::Power::success)
        services.log.write(withCode("sometimes wrong on NO SLEEP success:%d", result));
    else
        services.log.write("kIOReturnSuccess");
}

/// The message on success, and none on failure, is intended.
void AppDelegate::readyToSleep() {
    services.log.write("readyToSleep");
    const int result = services.power.releaseAssertion(assertionID);
    if (result == platform::Power::success)
        services.log.write(withCode("sometimes wrong ON READY FOR SLEEP success:%d", result));
}

} // namespace palisor
