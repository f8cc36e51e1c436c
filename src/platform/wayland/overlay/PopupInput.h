#pragma once

#include "platform/PopupLayer.h"
#include "platform/wayland/connection/Connection.h"

#include <map>
#include <optional>
#include <variant>
#include <vector>
#include <wayland-cursor.h>
#include <xkbcommon/xkbcommon.h>

namespace platform::wayland {

/// The pointer and the keyboard over the layers of popups, as long as it lives. What comes is noted
/// while the connection is read, and delivered from the run loop. Main thread.
class PopupInput {
  public:
    /// Calls an operation from the run loop, also while a modal alert runs.
    using Later = std::function<void(std::function<void()>)>;

    PopupInput(Connection& connection, platform::PopupLayer::Listener listener, Later later);
    ~PopupInput();
    PopupInput(const PopupInput&) = delete;
    PopupInput& operator=(const PopupInput&) = delete;

    /// Whose upper left corner is there, layout coordinates. Before the surface is on screen.
    void hear(wl_surface* surface, Point corner) { corners[surface] = corner; }
    /// Where the pointer is, once that it has come onto one of them; layout coordinates.
    std::optional<Point> place() const { return over ? std::optional(last) : std::nullopt; }
    bool hasPointer() const { return pointer != nullptr; }

    /// The layout of the outputs has changed.
    void disturb();

  private:
    struct Entered {
        std::uint32_t serial;
    };
    struct Moved {
        Point place;
    };
    struct Clicked {
        int button;
        bool isDown;
    };
    struct Scrolled {
        double notches;
    };
    struct Pressed {
        platform::PopupLayer::Key key;
    };
    struct Released {};
    struct Disturbed {};
    using Event = std::variant<Entered, Moved, Clicked, Scrolled, Pressed, Released, Disturbed>;

    void listenToPointer();
    void listenToKeyboard();
    void at(wl_fixed_t x, wl_fixed_t y);
    void showArrow(std::uint32_t serial);
    void readKeymap(int file, std::uint32_t size);
    void key(std::uint32_t keycode, bool isDown);
    void note(Event event);
    void deliver();
    void tell(const platform::PopupLayer::Listener& hears, const Event& event);

    struct Free {
        void operator()(xkb_context* one) const { xkb_context_unref(one); }
        void operator()(xkb_keymap* one) const { xkb_keymap_unref(one); }
        void operator()(xkb_state* one) const { xkb_state_unref(one); }
        void operator()(wl_cursor_theme* one) const { wl_cursor_theme_destroy(one); }
    };

    Connection& connection;
    std::shared_ptr<const platform::PopupLayer::Listener> listener; ///< also while it is called
    Later later;
    std::map<wl_surface*, Point> corners;
    wl_surface* over = nullptr;
    Point last;
    std::vector<Event> noted;
    std::shared_ptr<int> alive = std::make_shared<int>();
    std::unique_ptr<wl_cursor_theme, Free> theme;
    Handle<wl_surface> arrow;
    Handle<wl_pointer> pointer;
    Handle<wl_keyboard> keyboard;
    std::unique_ptr<xkb_context, Free> context;
    std::unique_ptr<xkb_keymap, Free> keymap;
    std::unique_ptr<xkb_state, Free> state;
};

} // namespace platform::wayland
