#pragma once

#include "platform/Workspace.h"
#include "platform/memory/Effects.h"

#include <algorithm>

namespace platform::memory {

class Workspace final : public platform::Workspace {
  public:
    explicit Workspace(Effects& stream) : effects(stream) {}

    void openURL(const std::string& url) override { effects.emit("openURL", Member{"url", url}); }

    bool leadsSomewhere(const std::string& url) const override {
        return std::ranges::find(dead, url) == dead.end();
    }

    std::vector<std::string> runningApplications() override { return running; }

    void postDistributedNotification(const std::string& name, const std::string& object) override {
        effects.emit("distributed", Member{"name", name}, Member{"object", object});
    }

    /// The other applications from now on.
    void setRunningApplications(std::vector<std::string> identifiers) {
        running = std::move(identifiers);
    }

    /// Addresses that lead nowhere from now on; none at first.
    void setDead(std::vector<std::string> urls) { dead = std::move(urls); }

  private:
    Effects& effects;
    std::vector<std::string> dead;
    std::vector<std::string> running;
};

} // namespace platform::memory
