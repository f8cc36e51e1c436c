#pragma once

#include "testing/sway/PrivateSway.h"

namespace support {

/// A headless compositor of the test's own that has layers and is not sway, with two outputs. It
/// uses nothing of the desktop that it runs on.
class PrivateCompositor : public WlrootsSession {
  public:
    /// The left output, and the one to its right, whose tops are level.
    static constexpr int leftWidth = 1920, leftHeight = 1080, rightWidth = 1280, rightHeight = 1024;

    /// "labwc" or "wayfire".
    static std::optional<std::string> missing(const std::string& name);
    /// Throws std::runtime_error where it does not start.
    explicit PrivateCompositor(const std::string& name);

  private:
    std::vector<std::string> labwc();
    std::vector<std::string> wayfire();
};

} // namespace support
