#pragma once

#include "platform/Workspace.h"
#include "platform/x11/connection/Connection.h"

#include <functional>
#include <string>

namespace platform::x11 {

/// Remembers, from the window manager's announcements, which foreign window was active last.
/// Everything else that a session can do is lent to it.
class Workspace final : public platform::Workspace, private Listener {
  public:
    /// What X11 has no part in. One that is missing does nothing.
    struct Session {
        /// The desktop's way to open a file, which chooses the application itself.
        std::function<void(const std::string& path)> openFile;
        std::function<void(const std::string& url)> openURL;
        std::function<std::vector<std::string>()> runningApplications;
        std::function<void(const std::string& name, const std::string& object)> postNotification;
    };

    /// `ownPid` is the process whose windows are the program's own.
    Workspace(Connection& connection, std::uint32_t ownPid);
    Workspace(Connection& connection, std::uint32_t ownPid, Session session);
    ~Workspace() override;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// No round trip. Nothing while no window of the program is active. That window stays in front.
    void activateFrontmostApplication() override;

    void openFile(const std::string& path, const std::string& application) override;
    void openURL(const std::string& url) override;
    std::vector<std::string> runningApplications() override;
    void postDistributedNotification(const std::string& name, const std::string& object) override;

  private:
    void handle(const xcb_generic_event_t& event) override;
    void handleReply(unsigned sequence, const void* reply) override;
    void askActiveWindow();

    Connection& connection;
    std::uint32_t pid;
    Session session;
    unsigned activeAsked = 0; ///< sequence of the question in flight, 0 for none
    unsigned pidAsked = 0;
    xcb_window_t asked = XCB_NONE; ///< the window whose process is asked for
    xcb_window_t foreign = XCB_NONE;
    bool ownIsActive = false;
};

} // namespace platform::x11
