#include "platform/wayland/keys/Workspaces.h"

#include <algorithm>
#include <set>

namespace platform::wayland {

namespace {

// Whether a step along a row leads from the one to the other, however far.
bool isBeside(const WorkspacePlace& from, const WorkspacePlace& to, int direction) {
    const auto &a = from.coordinates, &b = to.coordinates;
    return a.size() == b.size() && !a.empty() &&
           std::equal(a.begin() + 1, a.end(), b.begin() + 1) &&
           (direction > 0 ? b[0] > a[0] : b[0] < a[0]);
}

} // namespace

std::optional<std::size_t> neighbour(std::span<const WorkspacePlace> all, int direction) {
    const auto shown = std::ranges::find_if(all, &WorkspacePlace::isShown);
    if (shown == all.end()) return std::nullopt;
    const auto from = shown - all.begin();
    std::optional<std::size_t> nearest;
    for (auto at = from + direction; shown->coordinates.empty() && at >= 0 && at < std::ssize(all);
         at += direction)
        if (!all[static_cast<std::size_t>(at)].isHidden) return static_cast<std::size_t>(at);
    for (std::size_t at = 0; at < all.size(); ++at)
        if (!all[at].isHidden && isBeside(*shown, all[at], direction) &&
            (!nearest || isBeside(all[at], all[*nearest], direction)))
            nearest = at;
    return nearest;
}

struct Workspaces::Group {
    Workspaces& owner;
    Handle<ext_workspace_group_handle_v1> handle;
    std::set<const wl_output*> outputs{};
    std::set<const ext_workspace_handle_v1*> workspaces{};
};

struct Workspaces::Workspace {
    Workspaces& owner;
    Handle<ext_workspace_handle_v1> handle;
    WorkspacePlace place{};
};

Workspaces::Workspaces(Connection& x)
    : connection(x),
      manager(reinterpret_cast<ext_workspace_manager_v1*>(
          x.bind(ext_workspace_manager_v1_interface, 1))) {
    if (!manager) return;
    static constexpr ext_workspace_manager_v1_listener listener{
        .workspace_group =
            [](void* self, ext_workspace_manager_v1*, ext_workspace_group_handle_v1* told) {
                static_cast<Workspaces*>(self)->add(told);
            },
        .workspace =
            [](void* self, ext_workspace_manager_v1*, ext_workspace_handle_v1* told) {
                static_cast<Workspaces*>(self)->add(told);
            },
        .done = [](void*, ext_workspace_manager_v1*) {},
        .finished = [](void* self,
                       ext_workspace_manager_v1*) { static_cast<Workspaces*>(self)->forget(); }};
    ext_workspace_manager_v1_add_listener(manager.get(), &listener, this);
    connection.flush();
}

Workspaces::~Workspaces() {
    forget();
}

void Workspaces::forget() {
    all.clear();
    groups.clear();
    manager.reset();
}

void Workspaces::add(ext_workspace_group_handle_v1* told) {
    auto& made =
        *groups.emplace_back(new Group{*this, Handle<ext_workspace_group_handle_v1>(told)});
    static constexpr ext_workspace_group_handle_v1_listener listener{
        .capabilities = [](void*, ext_workspace_group_handle_v1*, std::uint32_t) {},
        .output_enter =
            [](void* self, ext_workspace_group_handle_v1*, wl_output* output) {
                static_cast<Group*>(self)->outputs.insert(output);
            },
        .output_leave = [](void* self, ext_workspace_group_handle_v1*,
                           wl_output* output) { static_cast<Group*>(self)->outputs.erase(output); },
        .workspace_enter =
            [](void* self, ext_workspace_group_handle_v1*, ext_workspace_handle_v1* one) {
                static_cast<Group*>(self)->workspaces.insert(one);
            },
        .workspace_leave =
            [](void* self, ext_workspace_group_handle_v1*, ext_workspace_handle_v1* one) {
                static_cast<Group*>(self)->workspaces.erase(one);
            },
        .removed =
            [](void* self, ext_workspace_group_handle_v1*) {
                auto& list = static_cast<Group*>(self)->owner.groups;
                std::erase_if(list, [self](const auto& one) { return one.get() == self; });
            }};
    ext_workspace_group_handle_v1_add_listener(told, &listener, &made);
}

void Workspaces::add(ext_workspace_handle_v1* told) {
    auto& made = *all.emplace_back(new Workspace{*this, Handle<ext_workspace_handle_v1>(told)});
    static constexpr ext_workspace_handle_v1_listener listener{
        .id = [](void*, ext_workspace_handle_v1*, const char*) {},
        .name = [](void*, ext_workspace_handle_v1*, const char*) {},
        .coordinates =
            [](void* self, ext_workspace_handle_v1*, wl_array* array) {
                const std::span numbers(static_cast<const std::uint32_t*>(array->data),
                                        array->size / sizeof(std::uint32_t));
                static_cast<Workspace*>(self)->place.coordinates.assign(numbers.begin(),
                                                                        numbers.end());
            },
        .state =
            [](void* self, ext_workspace_handle_v1*, std::uint32_t state) {
                auto& place = static_cast<Workspace*>(self)->place;
                place.isShown = (state & EXT_WORKSPACE_HANDLE_V1_STATE_ACTIVE) != 0;
                place.isHidden = (state & EXT_WORKSPACE_HANDLE_V1_STATE_HIDDEN) != 0;
            },
        .capabilities = [](void*, ext_workspace_handle_v1*, std::uint32_t) {},
        .removed =
            [](void* self, ext_workspace_handle_v1*) {
                auto& list = static_cast<Workspace*>(self)->owner.all;
                std::erase_if(list, [self](const auto& one) { return one.get() == self; });
            }};
    ext_workspace_handle_v1_add_listener(told, &listener, &made);
}

// What the compositor tells comes in steps that belong together, and a step is over when the run
// loop calls.
void Workspaces::go(int direction, const wl_output* output) {
    const auto group = std::ranges::find_if(
        groups, [&](const auto& one) { return one->outputs.contains(output); });
    if (group == groups.end()) return;
    std::vector<const Workspace*> there;
    std::vector<WorkspacePlace> places;
    for (const auto& one : all)
        if ((*group)->workspaces.contains(one->handle.get())) {
            there.push_back(one.get());
            places.push_back(one->place);
        }
    const auto wanted = neighbour(places, direction);
    if (!wanted) return;
    ext_workspace_handle_v1_activate(there[*wanted]->handle.get());
    ext_workspace_manager_v1_commit(manager.get());
    connection.flush();
}

} // namespace platform::wayland
