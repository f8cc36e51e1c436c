#pragma once

#include "testing/Child.h"
#include "testing/TempFolder.h"

#include <cstdlib>
#include <stdexcept>

namespace support {

/// A Wayland session of the test's own, without a display of its own or anything in it.
struct WaylandSession {
    WaylandSession() {
        compositor = std::make_unique<ChildProcess>(ChildProcess::Start{
            .command = {"weston", "--backend=headless-backend.so", "--socket=wayland-test",
                        "--idle-time=0", "--no-config"},
            .environment = environment});
        if (!waitUntil([&] { return std::filesystem::exists(folder.path("wayland-test")); }))
            throw std::runtime_error("no Wayland session: " + compositor->errors());
        environment["WAYLAND_DISPLAY"] = "wayland-test";
    }

    /// The display that Xwayland shows X clients on.
    std::string startXwayland() {
        server = startServer({"Xwayland", "-displayfd", "3", "-nolisten", "tcp"}, environment);
        return ":" + server.line;
    }

    testing_support::TempFolder folder;
    Environment environment{{"PATH", std::getenv("PATH")},
                            {"HOME", folder.path()},
                            {"XDG_RUNTIME_DIR", folder.path()},
                            {"XDG_CONFIG_HOME", folder.path()}};
    std::unique_ptr<ChildProcess> compositor;
    Announced server;
};

} // namespace support
