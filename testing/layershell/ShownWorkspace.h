#pragma once

#include "testing/sway/WaylandClient.h"

#include <vector>

struct ext_workspace_manager_v1;

namespace support {

/// Tells which workspace a private compositor shows, by the protocol for that.
class ShownWorkspace {
  public:
    /// Throws std::runtime_error where the compositor does not tell.
    explicit ShownWorkspace(const std::string& socketPath);
    ~ShownWorkspace();
    ShownWorkspace(const ShownWorkspace&) = delete;
    ShownWorkspace& operator=(const ShownWorkspace&) = delete;

    /// The name that it has now; empty where none is shown. Waits for the compositor.
    std::string name() const;

  private:
    struct Workspace {
        std::string name;
        bool isShown = false;
    };

    WaylandClient client;
    ext_workspace_manager_v1* manager = nullptr;
    std::vector<std::unique_ptr<Workspace>> all;
};

} // namespace support
