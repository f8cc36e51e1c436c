#pragma once

#include "platform/x11/connection/Connection.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace platform::x11 {

/// The settings of a desktop that are numbers or texts, by name.
using Settings = std::map<std::string, std::variant<std::int32_t, std::string>, std::less<>>;

/// What a settings manager (XSETTINGS) has written; nothing where that is not whole. It comes from
/// another program and may be anything.
std::optional<Settings> parseSettings(std::span<const std::uint8_t> bytes);

/// Whether windows are wished to be dark; nothing where the settings say nothing of it.
std::optional<bool> wishForDark(const Settings& settings);

/// Follows the settings manager of the screen. Main thread.
class XSettings final : private Listener {
  public:
    /// `told` is called with the wish for dark windows, or that there is none, whenever it is
    /// another one, from the constructor on; it begins as none.
    XSettings(Connection& connection, std::function<void(std::optional<bool>)> told);
    ~XSettings();
    XSettings(const XSettings&) = delete;
    XSettings& operator=(const XSettings&) = delete;

  private:
    void handle(const xcb_generic_event_t& event) override;
    void findManager();
    void read();

    Connection& connection;
    std::function<void(std::optional<bool>)> tell;
    xcb_atom_t selection, property;
    xcb_window_t manager = XCB_NONE;
    std::optional<bool> wish;
};

} // namespace platform::x11
