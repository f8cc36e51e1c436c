#pragma once

#include "platform/wayland/connection/Connection.h"

#include <functional>
#include <memory>

struct wl_proxy;

namespace platform::kwin {

/// Which kinds of modifiers are held, by a protocol of KWin's; which key of a kind is not told. Up
/// to 6.3 KWin has it for programs alone whose installed desktop file asks for it. Main thread.
class KeyState {
  public:
    enum Kind : std::uint32_t { option = 1, control = 2, command = 4 };

    /// `changed` is told the kinds that are held, while the connection is read.
    KeyState(wayland::Connection& connection, std::function<void(std::uint32_t kinds)> changed);
    ~KeyState();
    KeyState(const KeyState&) = delete;
    KeyState& operator=(const KeyState&) = delete;

    bool isThere() const { return proxy != nullptr; }

  private:
    static int told(const void* owner, void* proxy, std::uint32_t event, const wl_message* message,
                    wl_argument* arguments);

    wl_proxy* proxy;
    std::function<void(std::uint32_t)> handler;
    std::uint32_t held = 0;
};

} // namespace platform::kwin
