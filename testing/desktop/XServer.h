#pragma once

#include "testing/Child.h"
#include "testing/desktop/Layout.h"

#include <filesystem>
#include <memory>

namespace support {

enum class ServerKind {
    xorg,  ///< Xorg with the dummy driver: real outputs, gamma, the cursor kept on the monitors
    xvfb,  ///< Xvfb: monitors are regions of one output, no gamma
    xephyr ///< a window on the desktop of `hostDisplay`; monitors as with Xvfb
};

/// A running X server on a display number that it found free itself.
struct XServer {
    ServerKind kind;
    std::string display; ///< ":3"
    std::unique_ptr<ChildProcess> process;
};

/// Starts a server and waits until it accepts connections. Its files go into `folder`. Throws
/// std::runtime_error with the server's log when it does not start.
XServer startXServer(ServerKind kind, const std::filesystem::path& folder,
                     const Environment& environment, const Layout& layout,
                     const std::string& hostDisplay = {},
                     const std::vector<std::string>& arguments = {});

} // namespace support
