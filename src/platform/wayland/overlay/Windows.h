#pragma once

#include "platform/Log.h"
#include "platform/Windows.h"
#include "platform/wayland/pointer/PointerSeat.h"

#include <set>

namespace platform::wayland {

class Overlay;

/// Overlays as layers of one colour. What has a picture is not seen, which is logged once.
class Windows final : public platform::Windows {
  public:
    Windows(Connection& connection, Outputs& outputs, PointerSeat& seat, Log& log);
    ~Windows() override;

    std::unique_ptr<Window> create(const WindowStyle& style) override;
    void letMarkersBeSeen(bool seen) override;
    /// As long as it lasts no overlay catches the pointer, which another layer has.
    void letPointerThrough(bool through);

  private:
    friend class Overlay;

    Connection& connection;
    Outputs& outputs;
    PointerSeat& seat;
    Log& log;
    std::set<Overlay*> all;
    WindowId lastId = 0;
    bool markersSeen = true;
    bool lettingThrough = false;
    bool told = false;
};

} // namespace platform::wayland
