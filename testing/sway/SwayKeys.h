#pragma once

#include "testing/sway/PrivateSway.h"

struct xkb_context;
struct xkb_keymap;
struct xkb_state;
struct wl_proxy;

namespace support {

/// A keyboard of the private compositor's, with the default layout. Keys are the kernel's codes.
/// Every call returns when the compositor has taken it in.
class SwayKeys {
  public:
    /// Throws std::runtime_error where the compositor takes no keyboard.
    explicit SwayKeys(const std::string& socketPath);
    explicit SwayKeys(const PrivateSway& sway) : SwayKeys(sway.socket()) {}
    ~SwayKeys();
    SwayKeys(const SwayKeys&) = delete;
    SwayKeys& operator=(const SwayKeys&) = delete;

    void press(std::uint32_t key) { send(key, true); }
    void release(std::uint32_t key) { send(key, false); }

  private:
    void send(std::uint32_t key, bool down);

    WaylandClient client;
    xkb_context* context;
    xkb_keymap* keymap;
    xkb_state* state;
    wl_proxy* manager = nullptr;
    wl_proxy* keyboard = nullptr;
};

} // namespace support
