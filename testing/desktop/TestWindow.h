#pragma once

#include "testing/desktop/XConnection.h"
#include "testing/eye/Picture.h"

namespace support {

/// A plain window of one colour that counts the button presses it receives. Without a window
/// manager it is simply shown. One thread.
class TestWindow {
  public:
    /// Shown, and placed at `area` (without decoration), when the constructor returns. Throws
    /// std::runtime_error when it is not shown.
    TestWindow(const std::string& display, const Area& area, Colour colour,
               const std::string& title = "test window");
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;

    xcb_window_t id() const { return window; }
    Area area() const; ///< X root coordinates, asked from the server

    /// Presses so far. A press whose delivery the server has finished is counted; one that a
    /// window manager holds back for raising the window may still be under way.
    int presses();
    bool waitForPresses(int count, milliseconds limit = generous);

    /// Through the window manager; returns when it has resized the window.
    void makeFullScreen();
    void leaveFullScreen();

  private:
    void requestFullScreen(bool on);
    void note(const xcb_generic_event_t& event);

    XConnection x;
    xcb_window_t window;
    int pressCount = 0;
    bool shown = false;
};

} // namespace support
