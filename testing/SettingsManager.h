#pragma once

#include "testing/desktop/XConnection.h"

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace support {

/// A settings manager of the private desktop (XSETTINGS), until the object goes.
class SettingsManager {
  public:
    using Settings = std::map<std::string, std::variant<std::int32_t, std::string>>;

    SettingsManager(const std::string& display, const Settings& settings) : x(display) {
        window = xcb_generate_id(x.get());
        xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(x.get(), window, x.atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
        write(settings);
    }

    /// Returns when the server has them.
    void write(const Settings& settings) const {
        const auto bytes = written(settings);
        const xcb_atom_t name = x.atom("_XSETTINGS_SETTINGS");
        xcb_change_property(x.get(), XCB_PROP_MODE_REPLACE, window, name, name, 8,
                            static_cast<std::uint32_t>(bytes.size()), bytes.data());
        x.sync();
    }

    /// As they are written by a server of the lower byte first, or of the higher one.
    static std::vector<std::uint8_t> written(const Settings& settings, bool highFirst = false) {
        std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(highFirst ? 1 : 0), 0, 0, 0};
        const auto number = [&](std::uint32_t value, int length) {
            for (int i = 0; i < length; ++i)
                bytes.push_back(
                    static_cast<std::uint8_t>(value >> 8 * (highFirst ? length - 1 - i : i)));
        };
        const auto text = [&](const std::string& value) {
            bytes.insert(bytes.end(), value.begin(), value.end());
            bytes.resize((bytes.size() + 3) / 4 * 4);
        };
        number(1, 4); // the serial number
        number(static_cast<std::uint32_t>(settings.size()), 4);
        for (const auto& [name, value] : settings) {
            const auto* string = std::get_if<std::string>(&value);
            number(string != nullptr ? 1 : 0, 1);
            number(0, 1);
            number(static_cast<std::uint32_t>(name.size()), 2);
            text(name);
            number(1, 4);
            number(string != nullptr ? static_cast<std::uint32_t>(string->size())
                                     : static_cast<std::uint32_t>(std::get<std::int32_t>(value)),
                   4);
            if (string != nullptr) text(*string);
        }
        return bytes;
    }

  private:
    XConnection x;
    xcb_window_t window;
};

} // namespace support
