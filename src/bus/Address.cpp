#include "bus/Address.h"

#include <cstdlib>
#include <unistd.h>

namespace bus {

std::string addressOfSessionBus() {
    const char* const told = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (told != nullptr && *told != '\0') return told;
    const char* const folder = std::getenv("XDG_RUNTIME_DIR");
    const std::string usual = folder == nullptr ? "" : std::string(folder) + "/bus";
    return folder != nullptr && ::access(usual.c_str(), F_OK) == 0 ? "unix:path=" + usual : "";
}

} // namespace bus
