#pragma once

#include <string>
#include <vector>

namespace platform {

struct Alert {
    std::string message{};
    std::string informative{};
    std::vector<std::string> buttons{}; ///< the default one, then the alternate one if there is one
    std::string accessory{};            ///< names a control shown in it; empty for none
};

/// Modal questions. Main thread.
class Alerts {
  public:
    virtual ~Alerts() = default;

    /// Shows the alert in front of everything and returns when it has been answered: 1 for the
    /// default button, 0 for the alternate one. No timer fires meanwhile. Should the session end
    /// meanwhile, the process ends and the call does not return.
    virtual int runModal(const Alert& alert) = 0;
};

} // namespace platform
