#pragma once

#include "platform/Focus.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Focus final : public platform::Focus {
  public:
    explicit Focus(Effects& stream) : effects(stream) {}

    void activateFrontmostApplication() override { effects.emit("frontmostActivated"); }

    void openNothingWith(const std::string& application) override {
        effects.emit("openFile", Member{"path", ""}, Member{"application", application});
    }

  private:
    Effects& effects;
};

} // namespace platform::memory
