#include "testing/layershell/ShownWorkspace.h"

#include "ext-workspace-v1-client-protocol.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <wayland-client.h>

namespace support {

ShownWorkspace::ShownWorkspace(const std::string& socketPath) : client(socketPath) {
    wl_registry* const registry = wl_display_get_registry(client.display);
    static constexpr wl_registry_listener globals{
        [](void* data, wl_registry* from, std::uint32_t name, const char* interface,
           std::uint32_t) {
            if (std::string_view(interface) == ext_workspace_manager_v1_interface.name)
                static_cast<ShownWorkspace*>(data)->manager =
                    static_cast<ext_workspace_manager_v1*>(
                        wl_registry_bind(from, name, &ext_workspace_manager_v1_interface, 1));
        },
        [](void*, wl_registry*, std::uint32_t) {}};
    wl_registry_add_listener(registry, &globals, this);
    client.synchronize();
    wl_registry_destroy(registry);
    if (!manager) throw std::runtime_error("the compositor does not tell of its workspaces");
    static constexpr ext_workspace_handle_v1_listener workspaces{
        .id = [](void*, ext_workspace_handle_v1*, const char*) {},
        .name = [](void* data, ext_workspace_handle_v1*,
                   const char* name) { static_cast<Workspace*>(data)->name = name; },
        .coordinates = [](void*, ext_workspace_handle_v1*, wl_array*) {},
        .state =
            [](void* data, ext_workspace_handle_v1*, std::uint32_t state) {
                static_cast<Workspace*>(data)->isShown =
                    (state & EXT_WORKSPACE_HANDLE_V1_STATE_ACTIVE) != 0;
            },
        .capabilities = [](void*, ext_workspace_handle_v1*, std::uint32_t) {},
        .removed = [](void* data,
                      ext_workspace_handle_v1*) { *static_cast<Workspace*>(data) = {}; }};
    static constexpr ext_workspace_manager_v1_listener told{
        .workspace_group = [](void*, ext_workspace_manager_v1*, ext_workspace_group_handle_v1*) {},
        .workspace =
            [](void* data, ext_workspace_manager_v1*, ext_workspace_handle_v1* one) {
                auto& list = static_cast<ShownWorkspace*>(data)->all;
                ext_workspace_handle_v1_add_listener(
                    one, &workspaces, list.emplace_back(std::make_unique<Workspace>()).get());
            },
        .done = [](void*, ext_workspace_manager_v1*) {},
        .finished = [](void*, ext_workspace_manager_v1*) {}};
    ext_workspace_manager_v1_add_listener(manager, &told, this);
    client.synchronize();
}

ShownWorkspace::~ShownWorkspace() {
    ext_workspace_manager_v1_destroy(manager);
}

std::string ShownWorkspace::name() const {
    client.synchronize();
    const auto shown = std::ranges::find_if(all, [](const auto& one) { return one->isShown; });
    return shown == all.end() ? "" : (*shown)->name;
}

} // namespace support
