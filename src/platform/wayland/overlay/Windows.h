#pragma once

#include "platform/Log.h"
#include "platform/Windows.h"
#include "platform/wayland/pointer/PointerSeat.h"

#include <set>

namespace platform::wayland {

class Overlay;

/// Overlays as layers of one colour. What has a picture, or spans several outputs, is not seen,
/// which is logged once.
class Windows final : public platform::Windows {
  public:
    Windows(Connection& connection, Outputs& outputs, PointerSeat& seat, Log& log);
    ~Windows() override;

    std::unique_ptr<Window> create(const WindowStyle& style) override;
    void letMarkersBeSeen(bool seen) override;

  private:
    friend class Overlay;

    Connection& connection;
    Outputs& outputs;
    PointerSeat& seat;
    Log& log;
    std::set<Overlay*> all;
    WindowId lastId = 0;
    bool markersSeen = true;
    bool told = false;
};

} // namespace platform::wayland
