#pragma once

#include "platform/kwin/pointer/EmulatedPointer.h"
#include "platform/kwin/script/Script.h"
#include "platform/session/Pace.h"
#include "platform/wayland/LayerServices.h"

namespace platform::kwin {

/// A push while a button is held, of which no layer is told. The script tells of a cursor at the
/// edge. Where none of the strips has it there somebody else has the pointer, and the compositor's
/// barrier becomes as high as a push is long: it lets the cursor out by itself when so much is
/// pushed within a frame, at the end of each of which it is made to forget the sum. Main thread.
class DragPush {
  public:
    DragPush(Script& script, EmulatedPointer& pointer, wayland::LayerServices& shared,
             Descriptors& descriptors);
    ~DragPush();
    DragPush(const DragPush&) = delete;
    DragPush& operator=(const DragPush&) = delete;

    /// How long a push is that crosses, pixels in a frame; 0: none does.
    void setCrossing(double pixels);
    /// A script was loaded.
    void again();

  private:
    using Clock = session::Pace::Clock;

    void cameToEdge();
    void tick();
    void forget();
    void end();
    void crossed(const JsonValue::List& words);
    bool isOnStrip() const;

    Script& script;
    EmulatedPointer& pointer;
    wayland::LayerServices& shared;
    session::Pace pace;
    double crossing = 0;
    Clock::time_point frameBegan;
};

} // namespace platform::kwin
