#pragma once

#include "platform/Descriptors.h"
#include "platform/Log.h"
#include "platform/session/Pace.h"
#include "platform/sway/connection/Ipc.h"
#include "platform/sway/connection/UserConfiguration.h"

#include <map>

namespace platform::sway {

/// The running compositor: its commands over one kept socket, its events over another. Main thread.
class Compositor {
  public:
    /// Null where no compositor answers on that socket. What is lent must outlive the object.
    static std::unique_ptr<Compositor> open(const std::string& socketPath, Descriptors& descriptors,
                                            Log& log);
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    const std::string& socket() const { return path; }
    /// What it calls itself, and its version: "sway 1.10.1".
    const std::string& name() const { return ownName; }
    /// Whether the compositor is at least this version of its first major one.
    bool isAtLeast(int minor) const { return version >= minor; }
    const UserConfiguration& configuration() const { return users; }

    /// Several commands with "; " between them. Does not wait; a failure is logged, each text once.
    /// Bindings are those of the mode that is in force at first, whatever it is now.
    void run(const std::string& commands);
    /// The same, and has been carried out when it returns; false where the compositor has not
    /// answered within a second.
    bool runNow(const std::string& commands);
    /// Asks for the workspaces; the answer comes later, from the run loop. A failure comes never.
    void askWorkspaces(std::function<void(const JsonValue&)> answered);

    /// Called when a binding ran whose command is "nop " and this name.
    void onBinding(const std::string& name, std::function<void()> pressed);
    void forgetBinding(const std::string& name) { bindings.erase(name); }
    /// After the user has had the configuration read anew, which takes back all that was run; the
    /// new one is known by then. In the order in which they came; an empty handler ends it.
    void onReload(const void* owner, std::function<void()> reloaded);
    /// Called when all that was run has been carried out. One handler.
    void onSettled(std::function<void()> handler) { settled = std::move(handler); }
    bool isSettled() const { return !commands->isWaiting(); }

  private:
    Compositor(std::string socketPath, Descriptors& descriptors, Log& log);
    bool introduce();
    void readReplies();
    void readEvents();
    void handle(const Message& event);
    void take(const JsonValue& configuration);
    void take(const Message& reply);
    void send(Ipc::Type type, std::string_view payload);
    void tellFailure(const JsonValue& reply);

    std::string path;
    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<Ipc> commands, events;
    int version = 0;
    std::string ownName;
    std::string configurationFile;
    UserConfiguration users;
    std::string mode; ///< of bindings, that is in force
    std::function<void(const JsonValue&)> workspacesAnswered;
    std::map<std::string, std::function<void()>> bindings;
    std::vector<std::pair<const void*, std::function<void()>>> reloadHandlers;
    std::function<void()> settled;
    std::map<std::string, bool> told;
    session::Pace patience; ///< for the next reply
    bool isSilent = false;
};

} // namespace platform::sway
