#pragma once

#include "platform/wayland/connection/Connection.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace platform::wayland {

/// The workspaces of a compositor that tells of them by the protocol for that. Main thread.
class Workspaces {
  public:
    static constexpr std::string_view protocol = "ext_workspace_manager_v1";

    /// Of a compositor without the protocol there are none.
    explicit Workspaces(Connection& connection);
    ~Workspaces();
    Workspaces(const Workspaces&) = delete;
    Workspaces& operator=(const Workspaces&) = delete;

    /// Shows the workspace to the right (1) or to the left (-1) of the one that an output shows; at
    /// the ends it does nothing. Does not wait.
    void go(int direction, const wl_output* output);

  private:
    struct Group;
    struct Workspace;

    void add(ext_workspace_group_handle_v1* told);
    void add(ext_workspace_handle_v1* told);
    void forget();

    Connection& connection;
    Handle<ext_workspace_manager_v1> manager;
    std::vector<std::unique_ptr<Group>> groups;
    std::vector<std::unique_ptr<Workspace>> all; ///< as they were told
};

/// Where a workspace lies among the others, by the compositor.
struct WorkspacePlace {
    std::vector<std::uint32_t> coordinates{}; ///< the first one counts to the right; may be none
    bool isShown = false;
    bool isHidden = false; ///< from the user, who is never led there
};
/// The index of the one to the right (1) or to the left (-1) of the one that is shown, in its own
/// row where there are several. Without coordinates they lie in their order. Nothing at the ends.
std::optional<std::size_t> neighbour(std::span<const WorkspacePlace> all, int direction);

} // namespace platform::wayland
