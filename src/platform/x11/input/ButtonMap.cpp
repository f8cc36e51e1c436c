#include "platform/x11/input/ButtonMap.h"

#include <algorithm>

namespace platform::x11 {

void ButtonMap::read(Connection& connection) {
    const auto order =
        connection.wait(xcb_get_pointer_mapping(connection.xcb()), xcb_get_pointer_mapping_reply);
    map.fill(0);
    if (order)
        std::copy_n(xcb_get_pointer_mapping_map(order.get()),
                    xcb_get_pointer_mapping_map_length(order.get()), map.begin() + 1);
}

unsigned ButtonMap::logical(std::uint32_t physical) const {
    const bool known = physical < map.size() && map[physical] != 0;
    return known ? map[physical] : physical;
}

} // namespace platform::x11
