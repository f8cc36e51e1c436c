#include "platform/x11/tray/Panels.h"

#include <algorithm>

namespace platform::x11 {

namespace {

constexpr std::uint32_t mostWindows = 4096, mostTypes = 16;

std::vector<std::uint32_t> list(Connection& connection, xcb_window_t of, xcb_atom_t property,
                                xcb_atom_t type, std::uint32_t most) {
    const auto reply = connection.wait(
        xcb_get_property(connection.xcb(), 0, of, property, type, 0, most), xcb_get_property_reply);
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

} // namespace

std::optional<PixelArea> areaOnScreen(Connection& connection, xcb_window_t window) {
    const auto size =
        connection.wait(xcb_get_geometry(connection.xcb(), window), xcb_get_geometry_reply);
    const auto place = connection.wait(
        xcb_translate_coordinates(connection.xcb(), window, connection.root(), 0, 0),
        xcb_translate_coordinates_reply);
    if (!size || !place) return {};
    const auto screen = connection.wait(xcb_get_geometry(connection.xcb(), connection.root()),
                                        xcb_get_geometry_reply);
    if (!screen) return {};
    const int left = std::max<int>(place->dst_x, 0), top = std::max<int>(place->dst_y, 0);
    const int right = std::min<int>(place->dst_x + size->width, screen->width);
    const int bottom = std::min<int>(place->dst_y + size->height, screen->height);
    if (right <= left || bottom <= top) return {};
    return PixelArea{left, top, right - left, bottom - top};
}

xcb_window_t topLevelOf(Connection& connection, xcb_window_t window) {
    for (;;) {
        const auto tree =
            connection.wait(xcb_query_tree(connection.xcb(), window), xcb_query_tree_reply);
        if (!tree || tree->parent == XCB_NONE) return XCB_NONE;
        if (tree->parent == tree->root) return window;
        window = tree->parent;
    }
}

std::vector<PixelArea> panelsOnScreen(Connection& connection) {
    const xcb_atom_t dock = connection.intern("_NET_WM_WINDOW_TYPE_DOCK");
    std::vector<PixelArea> areas;
    for (const xcb_window_t window :
         list(connection, connection.root(), connection.intern("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW,
              mostWindows)) {
        const auto types = list(connection, window, connection.atom(AtomName::netWmWindowType),
                                XCB_ATOM_ATOM, mostTypes);
        if (std::ranges::find(types, dock) == types.end()) continue;
        if (const auto area = areaOnScreen(connection, window)) areas.push_back(*area);
    }
    return areas;
}

} // namespace platform::x11
