#pragma once

#include "platform/Log.h"
#include "platform/Windows.h"
#include "platform/gnome/connection/Hand.h"
#include "platform/wayland/connection/Outputs.h"

#include <set>

namespace platform::gnome {

class Overlay;

/// Overlays as veils of the shell, of one colour. What has a picture is not seen, which is logged
/// once.
class Windows final : public platform::Windows {
  public:
    Windows(Hand& hand, wayland::Outputs& outputs, Log& log);
    ~Windows() override;

    std::unique_ptr<Window> create(const WindowStyle& style) override;
    void letMarkersBeSeen(bool seen) override;

  private:
    friend class Overlay;

    Hand& hand;
    wayland::Outputs& outputs;
    Log& log;
    std::set<Overlay*> all;
    std::uint32_t lastNumber = 0; ///< of the shell's
    WindowId lastId = 0;
    bool markersSeen = true;
    bool told = false;
};

} // namespace platform::gnome
