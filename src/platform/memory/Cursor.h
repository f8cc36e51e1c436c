#pragma once

#include "platform/Cursor.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class Cursor final : public platform::Cursor {
  public:
    explicit Cursor(Effects& stream) : effects(stream) {}

    void hide() override;
    void show() override;
    bool isVisible() const override { return hidden == 0; }
    /// Only remembered: scenarios tell of the requests.
    void setHidingInForce(bool on) override { inForce = on; }
    bool isHidingInForce() const { return inForce; }
    bool hidesAtRest() const override { return restHides; }
    /// Only remembered.
    void hideAfterRest(std::optional<double> seconds) override { rest = seconds; }
    std::optional<double> hiddenAfter() const { return rest; }
    /// Whether the desktop hides a cursor that rests, as it does not at first.
    void setHidesAtRest(bool able) { restHides = able; }
    void setConnectionProperty(std::string_view name, bool value) override;

  private:
    Effects& effects;
    unsigned hidden = 0; ///< hides without their show
    bool inForce = true;
    std::optional<double> rest;
    bool restHides = false;
};

} // namespace platform::memory
