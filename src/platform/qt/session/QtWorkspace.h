#pragma once

#include "platform/Workspace.h"
#include "platform/qt/session/DistributedNotifications.h"
#include "platform/qt/session/SessionApplications.h"
#include "platform/qt/session/UrlOpener.h"

namespace platform::qt {

/// The session by its bus and the desktop's opener of addresses, whatever its window system is.
class QtWorkspace final : public Workspace {
  public:
    /// `ownName` is the program's name on the bus. The log must outlive the object.
    QtWorkspace(std::string ownName, Log& writer)
        : log(writer), applications(std::move(ownName), writer), opener(writer) {}

    void openURL(const std::string& url) override { opener.open(url); }
    std::vector<std::string> runningApplications() override { return applications.others(); }
    void postDistributedNotification(const std::string& name, const std::string& object) override {
        DistributedNotifications::post(name, object, log);
    }

  private:
    Log& log;
    SessionApplications applications;
    UrlOpener opener;
};

} // namespace platform::qt
