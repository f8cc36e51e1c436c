#pragma once

#include "platform/Workspace.h"
#include "platform/qt/session/SessionApplications.h"

namespace platform::qt {

/// The session by its bus and by the desktop's own opener, which knows the user's browser and mail
/// program, whatever draws the windows.
class QtWorkspace final : public Workspace {
  public:
    /// `ownName` is the program's name on the bus. The log must outlive the object. An address of
    /// which `leadsNowhere` is true is not offered.
    QtWorkspace(std::string ownName, Log& writer,
                std::function<bool(const std::string& url)> leadsNowhere = {})
        : log(writer), applications(std::move(ownName), writer), isDead(std::move(leadsNowhere)) {}

    /// Returns at once, and involves no shell. A page must have a host. A desktop that has no
    /// opener is logged once.
    void openURL(const std::string& url) override;
    bool leadsSomewhere(const std::string& url) const override;
    /// Called for each address that there is no opener for.
    void onNoOpener(std::function<void()> handler) { noOpener = std::move(handler); }

    std::vector<std::string> runningApplications() override { return applications.others(); }
    void postDistributedNotification(const std::string& name, const std::string& object) override;

  private:
    Log& log;
    SessionApplications applications;
    std::function<bool(const std::string& url)> isDead;
    std::function<void()> noOpener;
    bool toldMissing = false;
};

} // namespace platform::qt
