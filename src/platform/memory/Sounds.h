#pragma once

#include "platform/Sounds.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Sounds final : public platform::Sounds {
  public:
    explicit Sounds(Effects& stream) : effects(stream) {}

    void play(std::string_view name, double volume) override {
        effects.emit("sound", Member{"name", name}, Member{"volume", volume});
    }

  private:
    Effects& effects;
};

} // namespace platform::memory
