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

struct ServerStart {
    ServerKind kind;
    std::filesystem::path folder; ///< for its files
    Layout layout;
    std::string hostDisplay{};            ///< for Xephyr
    std::vector<std::string> devices{};   ///< of Xorg alone: kinds as Device names them
    std::vector<std::string> arguments{}; ///< behind the usual ones
    int depth = 24;                       ///< bits of a pixel, of Xorg alone
};

/// Starts a server and waits until it accepts connections. Throws std::runtime_error with the
/// server's log when it does not start.
XServer startXServer(const ServerStart& start, const Environment& environment);

/// Where a server with that folder is told what its device does.
std::filesystem::path deviceSocket(const std::filesystem::path& folder, std::size_t index);

} // namespace support
