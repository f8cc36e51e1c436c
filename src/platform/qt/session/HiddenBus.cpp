#include "platform/qt/session/HiddenBus.h"

#include <QDBusConnection>
#include <cstdlib>

namespace platform::qt {

namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* nowhere = "disabled:"; // no kind of address that any library knows

} // namespace

HiddenBus::HiddenBus(bool isSilent) : isHidden(isSilent) {
    if (!isHidden) return;
    const char* const told = std::getenv(variable);
    address = told ? told : "";
    ::setenv(variable, nowhere, 1);
}

void HiddenBus::showAgain() {
    if (!isHidden) return;
    (void)QDBusConnection::sessionBus(); // the library keeps what it has found
    if (address.empty())
        ::unsetenv(variable);
    else
        ::setenv(variable, address.c_str(), 1);
}

} // namespace platform::qt
