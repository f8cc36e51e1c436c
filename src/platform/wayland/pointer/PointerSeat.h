#pragma once

#include "platform/wayland/connection/Connection.h"
#include "platform/wayland/connection/Layer.h"
#include "platform/wayland/keys/KeyboardSeat.h"

#include <optional>

namespace platform::wayland {

/// The seat's pointer, as far as a client is told of it: while it is over one of the program's
/// layers. A seat may get its first mouse later, and lose it.
class PointerSeat {
  public:
    /// Told while the connection is read: not the place to ask the compositor anything.
    class Listener {
      public:
        /// It has come onto a layer, or moved there; layout coordinates.
        virtual void moved(Point place) = 0;
        virtual void left() = 0;
        /// A motion as the hand meant it, also where the cursor stays; it comes before `moved`.
        /// Pixels and seconds.
        virtual void meant(Point step, double time) = 0;
        /// The kernel's code of the button.
        virtual void button(std::uint32_t code, bool down) = 0;
        virtual void scrolled() = 0;

      protected:
        ~Listener() = default;
    };

    /// It also tells the keyboard whether there is one.
    PointerSeat(Connection& connection, KeyboardSeat& keyboard);
    ~PointerSeat();
    PointerSeat(const PointerSeat&) = delete;
    PointerSeat& operator=(const PointerSeat&) = delete;

    void setListener(Listener* wanted) { listener = wanted; }

    bool isThere() const { return pointer != nullptr; }
    /// Of the program's own, the one that the pointer is over; null for none.
    const Layer* focus() const { return Layer::of(entered); }
    /// Where it is while it is over a layer, layout coordinates.
    std::optional<Point> place() const { return focus() ? last : std::nullopt; }
    /// A layer that is about to go is nobody's focus.
    void forget(const Layer& layer);
    /// Whether the listener is told what the hand means; at first it is not. A compositor that need
    /// not tell of a motion at a screen's edge, where the cursor stays, wakes nobody.
    void tellSteps(bool on);
    /// From now on the cursor is not drawn over the program's layers, or is drawn from the next one
    /// on that it comes to.
    void hideCursor(bool on);

  private:
    void find(bool there);
    void listenToSteps();
    void at(wl_fixed_t x, wl_fixed_t y);

    Connection& connection;
    KeyboardSeat& keyboard;
    Listener* listener = nullptr;
    Handle<wl_pointer> pointer;
    Handle<zwp_relative_pointer_v1> relative;
    wl_surface* entered = nullptr;
    std::uint32_t enterSerial = 0;
    bool tellsSteps = false;
    bool hides = false; ///< the cursor
    std::optional<Point> last;
};

} // namespace platform::wayland
