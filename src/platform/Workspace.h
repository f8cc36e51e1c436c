#pragma once

#include <string>
#include <vector>

namespace platform {

/// The other applications of the session, and what the desktop opens with them. Main thread.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// Has the desktop open an address with the program that the user has chosen for its kind. Only
    /// http, https and mailto are opened, and of a mail the recipients, the subject and the body;
    /// anything else, and what is longer than 2,000 characters, is logged and ignored.
    virtual void openURL(const std::string& url) = 0;

    /// Whether the address is of a kind that is opened, and could lead anywhere: what is offered of
    /// others does nothing.
    virtual bool leadsSomewhere(const std::string& url) const = 0;

    /// The bundle identifiers of the other applications that run in the session and have one.
    virtual std::vector<std::string> runningApplications() = 0;

    /// Sends a notification with that name, and an object that narrows it down, to all programs of
    /// the session that listen for it.
    virtual void postDistributedNotification(const std::string& name,
                                             const std::string& object) = 0;
};

} // namespace platform
