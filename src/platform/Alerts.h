#pragma once

#include <string>
#include <vector>

namespace platform {

struct Alert {
    /// The button that closing the alert presses, by Escape or the window manager. The only button
    /// is pressed in any case.
    enum class Closing { lastButton, defaultButton, none };

    std::string message{};
    std::string informative{};
    std::vector<std::string> buttons{}; ///< the default one, then the alternate one if there is one
    std::string accessory{};            ///< names a control shown in it; empty for none
    Closing closing = Closing::lastButton; ///< none: it stays open
};

/// Modal questions. Main thread.
class Alerts {
  public:
    static constexpr int defaultButton = 1;
    static constexpr int alternateButton = 0;

    virtual ~Alerts() = default;

    /// Shows the alert in front of everything and returns the button by which it was answered;
    /// texts that nobody would read to their end are cut. No timer fires meanwhile. Should the
    /// session end meanwhile, the process ends and the call does not return.
    virtual int runModal(const Alert& alert) = 0;
};

} // namespace platform
