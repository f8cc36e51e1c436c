#pragma once

#include "platform/Log.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Log final : public platform::Log {
  public:
    explicit Log(Effects& stream) : effects(stream) {}

    void write(std::string_view text) override { effects.emit("log", Member{"text", text}); }

  private:
    Effects& effects;
};

} // namespace platform::memory
