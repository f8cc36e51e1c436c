#include "testing/SessionBus.h"

namespace support {

SessionBus::SessionBus(const Environment& surroundings, const std::string& configuration)
    : server(startServer({"dbus-daemon",
                          configuration.empty() ? "--session" : "--config-file=" + configuration,
                          "--nofork", "--nopidfile", "--print-address=3"},
                         surroundings)) {}

} // namespace support
