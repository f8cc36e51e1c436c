#pragma once

#include "platform/Workspace.h"
#include "platform/x11/Connection.h"

#include <functional>
#include <string>

namespace platform::x11 {

/// Remembers, from the window manager's announcements, which foreign window was active last.
class Workspace final : public platform::Workspace, private Listener {
  public:
    using OpenFile = std::function<void(const std::string& path)>;

    /// `ownPid` is the process whose windows are the program's own. `opener` is the desktop's way
    /// to open a file, which chooses the application itself.
    Workspace(Connection& connection, std::uint32_t ownPid, OpenFile opener = {});
    ~Workspace() override;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// No round trip. Nothing while no window of the program is active.
    void activateFrontmostApplication() override;

    void openFile(const std::string& path, const std::string& application) override;

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void askActiveWindow();

    Connection& connection;
    std::uint32_t pid;
    OpenFile openWithDesktop;
    unsigned activeAsked = 0; ///< sequence of the question in flight, 0 for none
    unsigned pidAsked = 0;
    xcb_window_t asked = XCB_NONE; ///< the window whose process is asked for
    xcb_window_t foreign = XCB_NONE;
    bool ownIsActive = false;
};

} // namespace platform::x11
