#pragma once

#include "platform/Descriptors.h"
#include "platform/Log.h"
#include "platform/sway/connection/Ipc.h"

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
    /// Whether the compositor is at least this version of its first major one.
    bool isAtLeast(int minor) const { return version >= minor; }
    /// The text of the user's configuration, without the files that it includes.
    const std::string& configuration() const { return configurationText; }

    /// Several commands with "; " between them. Does not wait; a failure is logged, each text once.
    void run(std::string_view commands);
    /// Asks for the workspaces; the answer comes later, from the run loop. A failure comes never.
    void askWorkspaces(std::function<void(const JsonValue&)> answered);
    /// The same as `run`, and has been carried out when it returns, which takes a second at most.
    void runNow(std::string_view commands);

    /// Called when a binding ran whose command is "nop " and this name.
    void onBinding(const std::string& name, std::function<void()> pressed);
    void forgetBinding(const std::string& name) { bindings.erase(name); }
    /// Called when a window of this process has come, with its number and title. One handler.
    void onOwnWindow(std::function<void(std::int64_t id, const std::string& title)> came) {
        ownWindowCame = std::move(came);
    }
    /// After the user has had the configuration read anew, which takes back all that was run.
    void onReload(const void* owner, std::function<void()> reloaded);

  private:
    Compositor(std::string socketPath, Descriptors& descriptors, Log& log);
    bool introduce();
    void readReplies();
    void readEvents();
    void handle(const JsonValue& event);
    void tellFailure(const JsonValue& reply);

    std::string path;
    Descriptors& descriptors;
    Log& log;
    std::unique_ptr<Ipc> commands, events;
    int version = 0;
    std::string configurationText;
    std::function<void(const JsonValue&)> workspacesAnswered;
    std::map<std::string, std::function<void()>> bindings;
    std::function<void(std::int64_t, const std::string&)> ownWindowCame;
    std::map<const void*, std::function<void()>> reloadHandlers;
    std::map<std::string, bool> told;
};

} // namespace platform::sway
