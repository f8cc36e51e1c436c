#include "platform/wayland/overlay/IdleInhibitor.h"

namespace platform::wayland {

bool IdleInhibitor::keep(AssertionId id, const std::string&) {
    const auto places = outputs.places();
    if (!connection.idle() || places.empty()) return false;
    const Rect& whole = places[0].area;
    auto layer = std::make_unique<Layer>(
        connection, Layer::Look{places[0], {whole.x, whole.y, 1, 1}, 0, false});
    layer->setCatches(false);
    // sway 1.12 heeds one only whose surface is on screen when it is made.
    connection.synchronize();
    Kept one{std::move(layer), {}};
    one.inhibitor.reset(
        zwp_idle_inhibit_manager_v1_create_inhibitor(connection.idle(), one.layer->surface()));
    connection.flush();
    kept[id] = std::move(one);
    return true;
}

} // namespace platform::wayland
