#pragma once

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

    /// Answered from memory.
    virtual bool isVisible() const = 0;

    /// Sets a property of the program's connection to the window server, such as the leave to hide
    /// the cursor while another application is active. Unknown names are ignored.
    virtual void setConnectionProperty(std::string_view name, bool value) = 0;
};

} // namespace platform
