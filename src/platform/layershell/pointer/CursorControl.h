#pragma once

#include "platform/wayland/pointer/CursorControl.h"

namespace platform::layershell {

/// Moves the cursor as a mouse of the program's own that tells places. Nothing keeps the hand's
/// mouse on an output.
class CursorControl final : public wayland::CursorControl {
  public:
    CursorControl(wayland::Connection& connection, const wayland::Outputs& outputs);
    CursorControl(const CursorControl&) = delete;
    CursorControl& operator=(const CursorControl&) = delete;

    void confine(const wayland::Outputs::Place*) override {}
    bool clamps() const override { return false; }
    void warp(Point layout) override;

  private:
    wayland::Connection& connection;
    const wayland::Outputs& outputs;
    wayland::Handle<zwlr_virtual_pointer_v1> mouse;
};

} // namespace platform::layershell
