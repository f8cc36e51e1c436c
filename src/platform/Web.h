#pragma once

#include "platform/Geometry.h"
#include "platform/Views.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

/// A cookie as a Set-Cookie header writes it, on one line, its domain and path always included. A
/// domain with a dot before it goes for the hosts below it too.
using Cookie = std::string;

/// How a window with one web page is made. Lengths are points: pixels, more on a scaled screen.
struct WebWindowDescription {
    std::string title{}; ///< stays, whatever the page calls itself
    std::string url{};   ///< loaded at once; with one that is none the window stays empty
    double width = 0;    ///< of the contents
    double height = 0;
    double minimumWidth = 0;
    double minimumHeight = 0;
    std::uint32_t styleMask = 0; ///< bits of `style`
    bool light = false;          ///< light colours, whatever the desktop's are
};

/// A window with a web page that fills it. At first it is not on screen, and in the middle of the
/// main screen. The user's closing only takes it off the screen. Main thread.
class WebWindow : public FramedWindow {
  public:
    virtual bool isVisible() const = 0;
    virtual void makeKeyAndOrderFront() = 0;
    virtual void orderOut() = 0;

    /// Of the contents, bottom-left coordinates, points. The minimum size holds, and a frame whose
    /// upper edge has its middle on no screen is ignored: nobody could get hold of it.
    virtual Rect frame() const = 0;
    virtual void setFrame(Rect frame) = 0;

    /// Calls `changed` when the frame of the visible window has come to rest at another place or
    /// size.
    virtual void onFrameChange(std::function<void(Rect frame)> changed) = 0;
};

/// The web engine. Its cookies end with the process unless somebody keeps them. It is loaded when
/// it is first used. Where there is none, each operation does
/// nothing, and it is logged once what to install. Main thread.
class Web {
  public:
    virtual ~Web() = default;

    /// Hands over all cookies at a later turn of the run loop, those included that are set just
    /// now. Without an engine `done` is never called.
    virtual void cookies(std::function<void(const std::vector<Cookie>& cookies)> done) = 0;

    /// Sets a cookie, or replaces the one with its name, domain and path. A text that is none, or
    /// lacks the domain, is ignored.
    virtual void setCookie(const Cookie& cookie) = 0;

    /// Removes all that the engine keeps of the pages it has shown, however old: its caches on disk
    /// and in memory, offline applications, cookies, session and local storage, web SQL and indexed
    /// databases. A page that is open keeps what it stored itself as long as its window.
    virtual void removeAllData() = 0;

    /// Null without an engine. The windows must go before the engine does.
    virtual std::unique_ptr<WebWindow> open(const WebWindowDescription& description) = 0;
};

} // namespace platform
