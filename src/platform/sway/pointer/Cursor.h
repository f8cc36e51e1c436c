#pragma once

#include "platform/Cursor.h"
#include "platform/sway/undo/Changes.h"

namespace platform::sway {

/// The compositor can hide the cursor of a seat that rests, and shows it when it moves: what is
/// asked to be hidden is hidden a tenth of a second after the last motion.
class Cursor final : public platform::Cursor {
  public:
    Cursor(const Compositor& target, Changes& all) : compositor(target), changes(all) {}
    ~Cursor() override;
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

    void hide() override;
    void show() override;
    bool isVisible() const override { return hidden == 0; }
    void setHidingInForce(bool on) override;
    void setConnectionProperty(std::string_view, bool) override {}

    /// While it is on the cursor is drawn, whatever is asked for.
    void reveal(bool on);

  private:
    void update();

    const Compositor& compositor;
    Changes& changes;
    long hidden = 0;
    bool inForce = true;
    bool revealed = false;
    bool isHidden = false;
};

} // namespace platform::sway
