#pragma once

#include "platform/sway/undo/Changes.h"
#include "platform/wayland/pointer/CursorControl.h"

namespace platform::sway {

/// Maps the mice and touchpads to one output, which clamps their motion too, also while a button is
/// held: those too that the user has mapped by their own names, until they are put back there.
class CursorControl final : public wayland::CursorControl {
  public:
    CursorControl(Compositor& compositor, Changes& changes, wayland::Outputs& outputs);
    ~CursorControl() override;
    CursorControl(const CursorControl&) = delete;
    CursorControl& operator=(const CursorControl&) = delete;

    void confine(const wayland::Outputs::Place* place) override;
    void warp(Point layout) override;
    void cross(const wayland::Outputs::Place& place, Point layout) override;
    void stir() override;

  private:
    void confine(const std::string& kind, const wayland::Outputs::Place* place);
    std::string mapped(const std::string& kind, const wayland::Outputs::Place& place) const;
    std::string unmapped(const std::string& kind) const;

    Compositor& compositor;
    Changes& changes;
    wayland::Outputs& outputs;
};

} // namespace platform::sway
