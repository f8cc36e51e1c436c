#pragma once

#include <optional>
#include <string_view>

namespace platform {

/// Whether the cursor is drawn. Requests nest: each `hide` is undone by one `show`. Whatever is
/// still hidden when the process ends, in any way, is shown again. While a window of the program is
/// active a hidden cursor is drawn all the same, or nobody could use that window. Main thread.
class Cursor {
  public:
    virtual ~Cursor() = default;

    virtual void hide() = 0;
    virtual void show() = 0;

    /// Whether every `hide` has had its `show`. Answered from memory.
    virtual bool isVisible() const = 0;

    /// Whether requests to hide have an effect, as they do at first. Those that are made meanwhile
    /// count all the same, and have it again with the rest.
    virtual void setHidingInForce(bool inForce) = 0;

    /// Whether the desktop itself is able to hide a cursor that rests, and to draw it when it
    /// moves. Otherwise the program does both, by the pointer's events.
    virtual bool hidesAtRest() const { return false; }
    /// It does so from now on whenever the cursor has rested for so many seconds; with nothing, as
    /// at first, it does not.
    virtual void hideAfterRest(std::optional<double>) {}

    /// Sets a property of the program's connection to the window server, such as the leave to hide
    /// the cursor while another application is active. Unknown names are ignored.
    virtual void setConnectionProperty(std::string_view name, bool value) = 0;
};

} // namespace platform
