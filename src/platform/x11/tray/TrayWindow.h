#pragma once

#include "platform/x11/tray/TrayHost.h"

#include <string>

namespace platform::x11 {

/// The icon window in the tray of the X screen (XEMBED); without a host it does not exist.
///
/// Where the depth is the root's the window shows its parent's background, which is read back and
/// blended with; a deeper one is blended by the compositor or the host.
class TrayWindow final : public platform::TrayWindow, private Listener {
  public:
    /// `name` and `title` (UTF-8) tell the window apart for hosts. The connection must outlive it.
    TrayWindow(Connection& x, std::string className, std::string text)
        : connection(x), name(std::move(className)), title(std::move(text)) {}
    ~TrayWindow() override;
    TrayWindow(const TrayWindow&) = delete;
    TrayWindow& operator=(const TrayWindow&) = delete;

    void show(Handlers handlers) override;
    bool hasHost() const override { return host && host->window() != XCB_NONE; }
    void repaint() override;

  private:
    static constexpr std::uint16_t usualSize = 22; ///< of an icon in an unscaled panel

    void handle(const xcb_generic_event_t& event) override;
    void press(const xcb_button_press_event_t& event);
    void release(const xcb_button_release_event_t& event);
    void dock();
    void undock();
    void create();
    void describe() const;
    void askForLength(int length);
    void askForSquare();
    std::vector<std::uint32_t> background(int side, int left, int top);
    xcb_connection_t* xcb() const { return connection.xcb(); }

    Connection& connection;
    std::string name, title;
    Handlers handlers;
    std::optional<TrayHost> host; ///< none before `show`
    xcb_window_t window = XCB_NONE;
    xcb_gcontext_t context = XCB_NONE;
    xcb_colormap_t colormap = XCB_NONE;
    std::uint8_t depth = 0;
    std::uint16_t width = usualSize, height = usualSize;
    int asked = usualSize; ///< the length along the panel
    xcb_button_t pressed = 0;
};

} // namespace platform::x11
