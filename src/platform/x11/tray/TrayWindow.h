#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform::x11 {

class Connection;

struct TrayColour {
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// In pixels of the root window, from its top left.
struct RootPoint {
    int x = 0, y = 0;
};

/// The program's icon window in the tray of the X screen (XEMBED). It docks when there is a host,
/// as often as one comes; without one it does not exist. Main thread.
class TrayWindow {
  public:
    struct Handlers {
        /// The picture: `size` rows of `size` pixels, premultiplied ARGB; empty for none. The
        /// colour is the text's on the panel, and none where that cannot be told. Asked for at
        /// each repaint, not after the destructor.
        std::function<std::vector<std::uint32_t>(int size, std::optional<TrayColour> foreground)>
            draw;
        /// A button (0 left, 1 right, 2 middle) was pressed and released on the icon. May run a
        /// modal loop: the server holds no grab any more.
        std::function<void(int button, RootPoint cursor)> clicked;
        /// `hasHost` answers otherwise than before. Not called by the constructor.
        std::function<void()> hostChanged;
    };

    /// `name` and `title` (UTF-8) tell the window apart for hosts. The connection must outlive it.
    TrayWindow(Connection& connection, std::string name, std::string title, Handlers handlers);
    ~TrayWindow();
    TrayWindow(const TrayWindow&) = delete;
    TrayWindow& operator=(const TrayWindow&) = delete;

    bool hasHost() const;

    /// The picture is asked for again and painted.
    void repaint();

  private:
    class Icon;
    std::unique_ptr<Icon> icon;
};

/// Where the cursor is; a round trip.
RootPoint cursorOnRoot(Connection& connection);

} // namespace platform::x11
