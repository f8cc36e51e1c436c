#pragma once

#include "testing/desktop/Layout.h"
#include "testing/gnome/PrivateShell.h"

namespace support {

/// Inside a private shell, tells of a cursor that leaves an area: the shell looks where it is at
/// each motion. One at a time.
class ShellWitness {
  public:
    /// Layout coordinates.
    ShellWitness(const PrivateShell& shell, const Area& inside);
    ~ShellWitness();
    ShellWitness(const ShellWitness&) = delete;
    ShellWitness& operator=(const ShellWitness&) = delete;

    struct Report {
        long motions = 0, outside = 0; ///< times that the shell looked
        int depth = 0;                 ///< pixels, at most
        double seconds = 0;            ///< outside, in all, up to now
        Clock::time_point left{};      ///< when it was outside first
    };
    Report report() const;

  private:
    const PrivateShell& shell;
};

} // namespace support
