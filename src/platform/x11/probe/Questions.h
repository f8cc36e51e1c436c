#pragma once

#include "platform/x11/connection/Reply.h"
#include "platform/x11/probe/ServerFacts.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>
#include <xcb/randr.h>
#include <xcb/xcb.h>

namespace platform::x11 {

/// A plain connection to the server of $DISPLAY for questions alone. Everything
/// waits for the server.
class Questions {
  public:
    Questions();
    ~Questions() { xcb_disconnect(connection); }
    Questions(const Questions&) = delete;
    Questions& operator=(const Questions&) = delete;

    /// Without it nothing but `xcb` may be called.
    bool isReached() const { return screen != nullptr; }
    bool hasRandr() const { return randr; }
    xcb_connection_t* xcb() const { return connection; }
    xcb_window_t root() const { return screen->root; }
    std::string screenNumber() const { return std::to_string(number); }

    /// Null where the request failed.
    template <class Cookie, class T>
    Reply<T> reply(Cookie cookie,
                   T* (*take)(xcb_connection_t*, Cookie, xcb_generic_error_t**)) const {
        xcb_generic_error_t* error = nullptr;
        Reply<T> answer(take(connection, cookie, &error));
        const Reply<xcb_generic_error_t> owned(error);
        return answer;
    }

    std::string vendor() const;
    std::string release() const; ///< "21.1.7" of X.Org, else a number
    std::vector<ExtensionFacts> extensions() const;

    std::string atomName(xcb_atom_t atom) const;
    /// `XCB_NONE` where nobody owns it.
    xcb_window_t ownerOf(const std::string& selection) const;
    std::optional<std::uint32_t> cardinal(xcb_window_t window, const std::string& property) const;
    std::string text(xcb_window_t window, const std::string& property) const;

  private:
    xcb_atom_t atom(const std::string& name) const;
    Reply<xcb_get_property_reply_t> property(xcb_window_t window, const std::string& name) const;

    xcb_connection_t* connection;
    int number = 0;
    const xcb_screen_t* screen = nullptr;
    bool randr = false;
};

} // namespace platform::x11
