#pragma once

#include <ext-workspace-v1-client-protocol.h>
#include <idle-inhibit-unstable-v1-client-protocol.h>
#include <relative-pointer-unstable-v1-client-protocol.h>
#include <viewporter-client-protocol.h>
#include <wlr-layer-shell-unstable-v1-client-protocol.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>
#include <xdg-output-unstable-v1-client-protocol.h>

#include <memory>
#include <wayland-client.h>

namespace platform::wayland {

// The request that destroys an object goes with its type.
inline void destroy(wl_display* one) {
    wl_display_disconnect(one);
}
inline void destroy(wl_registry* one) {
    wl_registry_destroy(one);
}
inline void destroy(wl_callback* one) {
    wl_callback_destroy(one);
}
inline void destroy(wl_compositor* one) {
    wl_compositor_destroy(one);
}
inline void destroy(wl_subcompositor* one) {
    wl_subcompositor_destroy(one);
}
inline void destroy(wl_subsurface* one) {
    wl_subsurface_destroy(one);
}
inline void destroy(wl_shm* one) {
    wl_shm_destroy(one);
}
inline void destroy(wl_seat* one) {
    wl_seat_destroy(one);
}
inline void destroy(wl_output* one) {
    wl_output_release(one);
}
inline void destroy(wl_surface* one) {
    wl_surface_destroy(one);
}
inline void destroy(wl_pointer* one) {
    wl_pointer_release(one);
}
inline void destroy(wl_keyboard* one) {
    wl_keyboard_release(one);
}
inline void destroy(wp_viewporter* one) {
    wp_viewporter_destroy(one);
}
inline void destroy(wp_viewport* one) {
    wp_viewport_destroy(one);
}
inline void destroy(zwlr_layer_shell_v1* one) {
    zwlr_layer_shell_v1_destroy(one);
}
inline void destroy(zwlr_layer_surface_v1* one) {
    zwlr_layer_surface_v1_destroy(one);
}
inline void destroy(zwlr_virtual_pointer_manager_v1* one) {
    zwlr_virtual_pointer_manager_v1_destroy(one);
}
inline void destroy(zwlr_virtual_pointer_v1* one) {
    zwlr_virtual_pointer_v1_destroy(one);
}
inline void destroy(zxdg_output_manager_v1* one) {
    zxdg_output_manager_v1_destroy(one);
}
inline void destroy(zxdg_output_v1* one) {
    zxdg_output_v1_destroy(one);
}
inline void destroy(zwp_relative_pointer_manager_v1* one) {
    zwp_relative_pointer_manager_v1_destroy(one);
}
inline void destroy(zwp_relative_pointer_v1* one) {
    zwp_relative_pointer_v1_destroy(one);
}
inline void destroy(zwp_idle_inhibit_manager_v1* one) {
    zwp_idle_inhibit_manager_v1_destroy(one);
}
inline void destroy(zwp_idle_inhibitor_v1* one) {
    zwp_idle_inhibitor_v1_destroy(one);
}
inline void destroy(ext_workspace_manager_v1* one) {
    ext_workspace_manager_v1_destroy(one);
}
inline void destroy(ext_workspace_group_handle_v1* one) {
    ext_workspace_group_handle_v1_destroy(one);
}
inline void destroy(ext_workspace_handle_v1* one) {
    ext_workspace_handle_v1_destroy(one);
}

struct Destroy {
    template <typename Proxy>
    void operator()(Proxy* proxy) const {
        destroy(proxy);
    }
};

/// Owns an object of a protocol. All must go before the connection does.
template <typename Proxy>
using Handle = std::unique_ptr<Proxy, Destroy>;

} // namespace platform::wayland
