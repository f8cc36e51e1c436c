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
    void setConnectionProperty(std::string_view name, bool value) override;

  private:
    Effects& effects;
    unsigned hidden = 0; ///< hides without their show
    bool inForce = true;
};

} // namespace platform::memory
