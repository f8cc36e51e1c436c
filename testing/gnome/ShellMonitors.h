#pragma once

#include "testing/desktop/Layout.h"
#include "testing/gnome/PrivateShell.h"

namespace support {

/// Monitors of a private shell's that show the same, which is what the shell calls one.
struct ShellMonitor {
    std::vector<int> outputs; ///< their places in the shell's options, from 0 on
    int x = 0, y = 0;         ///< of the layout
    double scale = 1;
};

/// Lays the monitors out anew, the first as the primary one; those that are in none are off.
/// Returns when the shell has them so. Throws std::runtime_error where it refuses.
void arrange(const PrivateShell& shell, const std::vector<ShellMonitor>& monitors);

/// The areas of the monitors in the shell's own order, layout coordinates.
std::vector<Area> areas(const PrivateShell& shell);

} // namespace support
