#pragma once

#include "platform/gnome/connection/Hand.h"
#include "platform/session/CountedCursor.h"

namespace platform::gnome {

class Cursor final : public session::CountedCursor {
  public:
    explicit Cursor(Hand& extension) : hand(extension) {
        hand.onFresh(this, [this](bool again) {
            if (again && isHidden()) hand.hideCursor(true);
        });
    }
    ~Cursor() override {
        hand.onFresh(this, {});
        if (isHidden()) hand.hideCursor(false);
    }
    Cursor(const Cursor&) = delete;
    Cursor& operator=(const Cursor&) = delete;

  private:
    void setHidden(bool on) override { hand.hideCursor(on); }

    Hand& hand;
};

} // namespace platform::gnome
