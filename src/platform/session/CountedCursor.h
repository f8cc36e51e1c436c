#pragma once

#include "platform/Cursor.h"

namespace platform::session {

/// Counts who wants the cursor hidden, and asks the window system for it only when that changes
/// something. A derived class takes its own request back when it goes.
class CountedCursor : public platform::Cursor {
  public:
    void hide() final;
    /// Without a hide before it this does nothing.
    void show() final;
    bool isVisible() const final { return hidden == 0; }
    void setHidingInForce(bool on) final;
    /// Hiding is never bound to the active application here, so there is nothing to set.
    void setConnectionProperty(std::string_view, bool) final {}

    /// While it is on the cursor is drawn, whatever is asked for; then it is again as it was asked.
    void reveal(bool on);

  protected:
    bool isHidden() const { return nowHidden; }

  private:
    /// From now on the window system hides the cursor, or draws it. Each call is a change.
    virtual void setHidden(bool on) = 0;
    void update();

    long hidden = 0;
    bool inForce = true;
    bool revealed = false;
    bool nowHidden = false; ///< by the window system
};

} // namespace platform::session
