#pragma once

#include "platform/kwin/pointer/EmulatedPointer.h"
#include "platform/kwin/script/Script.h"
#include "platform/wayland/pointer/CursorControl.h"

namespace platform::kwin {

/// The compositor's own barrier between outputs, which a script closes around the held one, also
/// while a button is held.
class CursorControl final : public wayland::CursorControl {
  public:
    CursorControl(Script& script, EmulatedPointer& pointer);
    ~CursorControl() override;
    CursorControl(const CursorControl&) = delete;
    CursorControl& operator=(const CursorControl&) = delete;

    void confine(const wayland::Outputs::Place* place) override;
    void warp(Point layout) override;
    void cross(const wayland::Outputs::Place& place, Point layout) override;

    /// A script was loaded.
    void again();
    /// A locked screen is held on no output, and then on the same one as before.
    void setLocked(bool isLocked);

  private:
    Script& script;
    EmulatedPointer& pointer;
    std::optional<Rect> held; ///< layout coordinates
    bool isLocked = false;
    unsigned long warps = 0;
};

} // namespace platform::kwin
