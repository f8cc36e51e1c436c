#pragma once

#include "platform/x11/tray/PixelFormat.h"
#include "platform/x11/tray/TrayHost.h"

#include <string>

namespace platform::x11 {

/// The icon window in the tray of the X screen (XEMBED); without a host it does not exist.
///
/// Where the depth is the root's the window shows its parent's background, which is read back and
/// blended with; a deeper one is blended by the compositor or the host. A host that tells no colour
/// has the icon black or white, by what is seen behind it.
class TrayWindow final : public platform::TrayWindow, private Listener {
  public:
    /// `name` and `title` (UTF-8) tell the window apart for hosts. The connection must outlive it.
    TrayWindow(Connection& x, std::string className, std::string text)
        : connection(x), name(std::move(className)), title(std::move(text)) {}
    ~TrayWindow() override;
    TrayWindow(const TrayWindow&) = delete;
    TrayWindow& operator=(const TrayWindow&) = delete;

    void show(Handlers handlers) override;
    bool hasHost() const override;
    std::optional<TrayColour> panelText() override;
    std::optional<Place> place() override;
    std::vector<PixelArea> panels() override;
    void setTitle(const std::string& text) override;
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
    void writeTitle() const;
    void askForLength(int length);
    void askForSquare();
    bool isUnseen(xcb_window_t parent);
    void leaveProxy();
    std::optional<TrayColour> contrastOnScreen(int side, int left, int top);
    xcb_connection_t* xcb() const { return connection.xcb(); }

    Connection& connection;
    std::string name, title;
    Handlers handlers;
    std::optional<TrayHost> host; ///< none before `show`
    xcb_window_t window = XCB_NONE;
    xcb_window_t proxy = XCB_NONE; ///< a host that only passes the icon on
    xcb_gcontext_t context = XCB_NONE;
    xcb_colormap_t colormap = XCB_NONE;
    std::optional<PixelFormat> format, rootFormat; ///< the window's, and the screen's
    std::vector<std::uint32_t> shown;              ///< the last picture
    std::optional<TrayColour> contrast;            ///< to what was last seen behind it
    std::uint16_t width = usualSize, height = usualSize;
    int asked = usualSize; ///< the length along the panel
    xcb_button_t pressed = 0;
};

} // namespace platform::x11
