#pragma once

#include "platform/Alerts.h"
#include "platform/memory/Effects.h"
#include "platform/memory/RunLoop.h"

#include <deque>
#include <functional>
#include <utility>

namespace platform::memory {

/// Alerts that are answered at once.
class Alerts final : public platform::Alerts {
  public:
    Alerts(Effects& stream, RunLoop& loop) : effects(stream), runLoop(loop) {}

    /// The codes of the alerts to come, in order; 1 for each one after these.
    void setAnswers(std::deque<int> codes) { answers = std::move(codes); }

    /// Called while each alert is open, with no timer firing; an empty function for nothing.
    void setWhileOpen(std::function<void(const Alert&)> happens) { whileOpen = std::move(happens); }

    int runModal(const Alert& alert) override {
        const int code = answers.empty() ? defaultButton : answers.front();
        if (!answers.empty()) answers.pop_front();
        effects.emit("alert", Member{"message", alert.message},
                     Member{"informative", alert.informative}, Member{"buttons", alert.buttons},
                     Member{"accessory", orNull(alert.accessory)}, Member{"code", code});
        const RunLoop::Modal modal(runLoop);
        if (whileOpen) whileOpen(alert);
        return code;
    }

  private:
    Effects& effects;
    RunLoop& runLoop;
    std::deque<int> answers;
    std::function<void(const Alert&)> whileOpen;
};

} // namespace platform::memory
