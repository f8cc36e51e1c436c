#pragma once

#include "platform/session/CountedCursor.h"
#include "platform/sway/undo/Changes.h"

namespace platform::sway {

/// The compositor can hide the cursor of a seat that rests, and shows it when it moves: what is
/// asked to be hidden is hidden a tenth of a second after the last motion.
class Cursor final : public session::CountedCursor {
  public:
    Cursor(const Compositor& target, Changes& all) : compositor(target), changes(all) {}
    ~Cursor() override;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    bool hidesAtRest() const override { return true; }
    void hideAfterRest(std::optional<double> seconds) override;

  private:
    void setHidden(bool on) override;
    void apply(std::optional<long> milliseconds);

    const Compositor& compositor;
    Changes& changes;
    std::optional<double> rest;
    std::optional<long> applied; ///< nothing while it is as the user has it
};

} // namespace platform::sway
