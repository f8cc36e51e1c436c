#pragma once

#include "platform/Application.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

/// Thrown by `Application::exit` through the core, to whoever called it: the program has ended.
struct ProgramEnded {
    int status = 0;
};

class Application final : public platform::Application {
  public:
    explicit Application(Effects& stream) : effects(stream) {}

    CurrentEvent currentEvent() const override { return current; }

    /// What the program reads while it handles an event of its own windows.
    void setCurrentEvent(CurrentEvent event) { current = event; }

    void activateIgnoringOtherApps() override { effects.emit("applicationActivated"); }

    void terminate() override { effects.emit("terminate"); }

    [[noreturn]] void exit(int status) override {
        effects.emit("exit", Member{"status", status});
        throw ProgramEnded{status};
    }

  private:
    Effects& effects;
    CurrentEvent current;
};

} // namespace platform::memory
