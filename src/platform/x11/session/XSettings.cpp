#include "platform/x11/session/XSettings.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <string_view>
#include <utility>
#include <xcb/xfixes.h>

namespace platform::x11 {

namespace {

constexpr std::uint32_t longestProperty = 1 << 16; // in units of four bytes
constexpr std::size_t colourLength = 8;

enum Kind : std::uint8_t { integer, text, colour };

/// Reads from the front; once something is missing it gives zeros and is not good any more.
class Reader {
  public:
    explicit Reader(std::span<const std::uint8_t> all) : rest(all) {
        isSwapped = byte() != (std::endian::native == std::endian::big ? 1 : 0);
        skip(3);
    }

    bool good() const { return !isShort; }

    std::span<const std::uint8_t> take(std::size_t length) {
        if (length > rest.size()) isShort = true;
        if (isShort) return {};
        const auto taken = rest.first(length);
        rest = rest.subspan(length);
        return taken;
    }

    void skip(std::size_t length) { take(length); }

    std::uint8_t byte() {
        const auto one = take(1);
        return one.empty() ? std::uint8_t{0} : one[0];
    }

    std::uint32_t number(std::size_t length) {
        const auto bytes = take(length);
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const bool isBigEndian = (std::endian::native == std::endian::big) != isSwapped;
            value |= std::uint32_t{bytes[i]} << 8 * (isBigEndian ? length - 1 - i : i);
        }
        return value;
    }

    /// With what fills it up to four bytes.
    std::string string(std::size_t length) {
        const auto bytes = take(length);
        std::string result(bytes.begin(), bytes.end());
        skip((4 - length % 4) % 4);
        return result;
    }

  private:
    std::span<const std::uint8_t> rest;
    bool isSwapped = false, isShort = false;
};

/// "Adwaita-dark", and "Adwaita:dark" of GTK's own theme.
bool isDarkTheme(std::string name) {
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name.ends_with("-dark") || name.ends_with(":dark");
}

} // namespace

std::optional<Settings> parseSettings(std::span<const std::uint8_t> bytes) {
    Reader reader(bytes);
    reader.skip(4); // the serial number
    const std::uint32_t count = reader.number(4);
    Settings settings;
    for (std::uint32_t i = 0; i < count && reader.good(); ++i) {
        const std::uint8_t kind = reader.byte();
        reader.skip(1);
        std::string name = reader.string(reader.number(2));
        reader.skip(4); // of the last change
        if (kind == integer)
            settings[name] = static_cast<std::int32_t>(reader.number(4));
        else if (kind == text)
            settings[name] = reader.string(reader.number(4));
        else if (kind == colour)
            reader.skip(colourLength);
        else
            return {}; // nobody knows how long it is
    }
    return reader.good() ? std::optional(std::move(settings)) : std::nullopt;
}

std::optional<bool> wishForDark(const Settings& settings) {
    std::optional<bool> wish;
    if (const auto theme = settings.find("Net/ThemeName"); theme != settings.end())
        if (const auto* name = std::get_if<std::string>(&theme->second)) wish = isDarkTheme(*name);
    if (const auto prefers = settings.find("Gtk/ApplicationPreferDarkTheme");
        prefers != settings.end())
        if (const auto* flag = std::get_if<std::int32_t>(&prefers->second))
            wish = wish.value_or(false) || *flag != 0;
    return wish;
}

XSettings::XSettings(Connection& x, std::function<void(std::optional<bool>)> told)
    : connection(x),
      tell(std::move(told)),
      selection(x.intern("_XSETTINGS_S" + std::to_string(x.screenNumber()))),
      property(x.intern("_XSETTINGS_SETTINGS")) {
    connection.listen(
        *this, {XCB_PROPERTY_NOTIFY, static_cast<std::uint8_t>(connection.xfixesEvents() +
                                                               XCB_XFIXES_SELECTION_NOTIFY)});
    xcb_xfixes_select_selection_input(connection.xcb(), connection.root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    findManager();
}

XSettings::~XSettings() {
    connection.forget(*this);
}

void XSettings::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (manager != XCB_NONE && notify.window == manager && notify.atom == property) read();
        return;
    }
    const auto& notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notify.selection == selection) findManager();
}

// A new manager owns the selection before it writes its settings, which is told by their change.
void XSettings::findManager() {
    const auto reply = connection.wait(xcb_get_selection_owner(connection.xcb(), selection),
                                       xcb_get_selection_owner_reply);
    manager = reply ? reply->owner : XCB_NONE;
    if (manager != XCB_NONE) {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        // It may have gone again.
        xcb_discard_reply(connection.xcb(), xcb_change_window_attributes_checked(
                                                connection.xcb(), manager, XCB_CW_EVENT_MASK, &mask)
                                                .sequence);
    }
    read();
}

void XSettings::read() {
    std::optional<bool> now;
    if (manager != XCB_NONE) {
        const auto reply = connection.wait(
            xcb_get_property(connection.xcb(), 0, manager, property, property, 0, longestProperty),
            xcb_get_property_reply);
        if (reply && reply->format == 8) {
            const auto* first =
                static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
            const auto settings = parseSettings({first, reply->value_len});
            if (settings) now = wishForDark(*settings);
        }
    }
    if (std::exchange(wish, now) != now) tell(now);
}

} // namespace platform::x11
