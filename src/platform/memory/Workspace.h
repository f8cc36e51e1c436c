#pragma once

#include "platform/Workspace.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Workspace final : public platform::Workspace {
  public:
    explicit Workspace(Effects& stream) : effects(stream) {}

    void activateFrontmostApplication() override { effects.emit("frontmostActivated"); }

    void openFile(const std::string& path, const std::string& application) override {
        effects.emit("openFile", Member{"path", path}, Member{"application", application});
    }

  private:
    Effects& effects;
};

} // namespace platform::memory
