#pragma once

#include "platform/Workspace.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Workspace final : public platform::Workspace {
  public:
    explicit Workspace(Effects& stream) : effects(stream) {}

    void openURL(const std::string& url) override { effects.emit("openURL", Member{"url", url}); }

    std::vector<std::string> runningApplications() override { return running; }

    void postDistributedNotification(const std::string& name, const std::string& object) override {
        effects.emit("distributed", Member{"name", name}, Member{"object", object});
    }

    /// The other applications from now on.
    void setRunningApplications(std::vector<std::string> identifiers) {
        running = std::move(identifiers);
    }

  private:
    Effects& effects;
    std::vector<std::string> running;
};

} // namespace platform::memory
