#pragma once

#include "platform/kwin/hiding/HidingEffect.h"
#include "platform/session/CountedCursor.h"
#include "platform/session/Pace.h"
#include "platform/wayland/pointer/PointerSeat.h"

namespace platform::kwin {

/// What is asked to be hidden is hidden over the program's own layers, and elsewhere by the
/// compositor's effect, a second after the last motion.
class Cursor final : public session::CountedCursor {
  public:
    Cursor(wayland::PointerSeat& seat, HidingEffect& effect, Descriptors& descriptors);
    ~Cursor() override;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    bool hidesAtRest() const override { return true; }
    void hideAfterRest(std::optional<double> seconds) override;

  private:
    void setHidden(bool on) override;
    void update();

    wayland::PointerSeat& seat;
    HidingEffect& effect;
    std::optional<int> rest; ///< seconds
    session::Pace settle;    ///< who hides at a border shows again soon
};

} // namespace platform::kwin
