#pragma once

#include "testing/SessionBus.h"
#include "testing/TempFolder.h"
#include "testing/sway/PrivateSway.h"

namespace support {

/// A headless compositor of the test's own that has layers and is not sway, with two outputs, a
/// home and a session bus. It uses nothing of the desktop that it runs on, and everything ends with
/// the object. One thread, which must outlive the object.
class PrivateCompositor {
  public:
    /// The left output, and the one to its right, whose tops are level.
    static constexpr int leftWidth = 1920, leftHeight = 1080, rightWidth = 1280, rightHeight = 1024;

    /// "labwc" or "wayfire".
    static std::optional<std::string> missing(const std::string& name);
    /// Throws std::runtime_error where it does not start.
    explicit PrivateCompositor(const std::string& name);
    ~PrivateCompositor();
    PrivateCompositor(const PrivateCompositor&) = delete;
    PrivateCompositor& operator=(const PrivateCompositor&) = delete;

    /// For clients: the path of the compositor's socket.
    const std::string& socket() const { return displaySocket; }
    std::string configFolder() const { return folder.path("home/.config"); }
    pid_t process() const { return server.process->pid(); }

    /// A picture of an output, numbered from 1 on from the left: its mean brightness, from 0 to
    /// 255.
    double brightness(int output) const;

    std::unique_ptr<ChildProcess> spawn(const std::string& command,
                                        const std::vector<std::string>& arguments = {}) const;

  private:
    std::vector<std::string> labwc();
    std::vector<std::string> wayfire();

    testing_support::TempFolder folder;
    Environment variables;
    std::unique_ptr<SessionBus> bus;
    Announced server;
    std::string displaySocket;
};

} // namespace support
