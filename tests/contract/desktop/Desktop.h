#pragma once

#include "platform/Displays.h"
#include "platform/HotKeys.h"
#include "platform/InputEvents.h"
#include "platform/Pointer.h"
#include "platform/Settings.h"
#include "platform/Windows.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace contract {

/// Two monitors side by side, 1920x1080 and to the right of it 1280x1024, the services of a program
/// on them, and somebody's hand. Points are top-left coordinates.
class Desktop {
  public:
    virtual ~Desktop() = default;

    virtual platform::Displays& displays() = 0;
    virtual platform::Pointer& pointer() = 0;
    virtual platform::InputEvents& input() = 0;
    virtual platform::Windows& windows() = 0;
    virtual platform::HotKeys& hotKeys() = 0;
    virtual platform::Settings& settings() = 0;

    virtual void moveTo(int x, int y) = 0;
    /// Steps of a mouse to the right, until `reached`; false where that does not come.
    virtual bool push(int step, const std::function<bool()>& reached) = 0;
    virtual void click() = 0;
    /// Presses and releases a function key with Alt held.
    virtual void pressAltAnd(int functionKey) = 0;
    virtual void setOwnWindowActive(bool active) = 0;
    /// False where no monitor can be unplugged: the headless outputs of sway 1.7.
    virtual bool unplugSecond() = 0;
    virtual void plugSecond() = 0;
    /// So many pixels lower than the first.
    virtual void lowerSecond(int pixels) = 0;

    /// Lets the program run until `reached`; false where that does not come.
    virtual bool until(const std::function<bool()>& reached) = 0;
};

struct Kind {
    const char* name;
    std::unique_ptr<Desktop> (*make)();
    std::optional<std::string> (*missing)(); ///< why there can be none on this machine
};

extern const Kind memoryDesktop, x11Desktop, swayDesktop;

} // namespace contract
