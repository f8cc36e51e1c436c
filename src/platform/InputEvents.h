#pragma once

#include "platform/Geometry.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace platform {

/// The number of a type is its bit in an event mask.
enum class EventType : std::uint8_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    mouseMoved = 5,
    leftMouseDragged = 6,
    rightMouseDragged = 7,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
    scrollWheel = 22,
    tabletPoint = 23,
    tabletProximity = 24,
    otherMouseDown = 25,
    otherMouseUp = 26,
    otherMouseDragged = 27,
};

using EventMask = std::uint64_t;

constexpr EventMask maskOf(EventType type) {
    return EventMask{1} << static_cast<unsigned>(type);
}

constexpr EventMask allEvents = ~EventMask{0};

struct InputEvent {
    EventType type = EventType::mouseMoved;
    Point location{};          ///< top-left; where the cursor was when it happened
    std::uint16_t keyCode = 0; ///< virtual key code, for keys and modifier changes
    double time = 0;           ///< seconds, monotonic, of the source's own clock
};

/// Left-hand and right-hand modifiers and the arrow keys, as virtual key codes.
namespace keyCodes {
constexpr std::uint16_t rightCommand = 54;
constexpr std::uint16_t command = 55;
constexpr std::uint16_t shift = 56;
constexpr std::uint16_t capsLock = 57;
constexpr std::uint16_t option = 58;
constexpr std::uint16_t control = 59;
constexpr std::uint16_t rightShift = 60;
constexpr std::uint16_t rightOption = 61;
constexpr std::uint16_t rightControl = 62;
constexpr std::uint16_t leftArrow = 123;
constexpr std::uint16_t rightArrow = 124;
} // namespace keyCodes

enum class TapLocation { hid = 0, session = 1 };
enum class TapPlacement { headInsert = 0, tailAppend = 1 };
enum class TapOptions { active = 0, listenOnly = 1 };

struct TapParameters {
    TapLocation location = TapLocation::session;
    TapPlacement placement = TapPlacement::tailAppend;
    TapOptions options = TapOptions::listenOnly;
    EventMask mask = 0;
};

/// What a program must be told of the pointer on a desktop that does not tell of all that happens.
struct PointerWatch {
    /// Top-left coordinates; each along a side of one screen.
    std::vector<Rect> strips{};
    /// Whether it makes a difference how hard the hand pushes: against the screen that is held, or
    /// onto a strip. The step that ends there is then the hand's of one frame, and not shorter;
    /// otherwise a push need not be told.
    bool pushes = false;
    /// Whether every motion counts, wherever it is.
    bool motion = false;
    /// The pixels that the hand must push in one frame against the screen that is held for the
    /// answer to let the cursor out; 0 where none does.
    double crossing = 0;

    bool operator==(const PointerWatch&) const = default;
};

/// Pointer and modifier events, read only: of the whole session, or where the desktop tells a
/// program no more, of what happens over its own windows, is pushed against the screen that is held
/// and lifts the hold. Handlers run on the main thread, from the run loop; they stay installed for
/// the life of the process. Holding a modifier repeats nothing: each press and each release is one
/// event.
class InputEvents {
  public:
    using Handler = std::function<void(const InputEvent&)>;

    virtual ~InputEvents() = default;

    /// Events of the types in `mask`, but what happens while a window of this program is active. A
    /// key's press and release stay a pair: its release is told where its press was, and then only.
    virtual void addGlobalMonitor(EventMask mask, Handler handler) = 0;

    /// The older mechanism: the same events, the program's own windows included.
    virtual void addTap(const TapParameters& parameters, Handler handler) = 0;

    /// What must be told from now on, in the place of what was asked for before; nothing at first.
    /// A strip tells when the cursor has come onto it, moves there or has left it. A desktop that
    /// tells of everything has nothing to do.
    virtual void watch(const PointerWatch&) {}
    /// Whether every motion can be told, and with it where the cursor is at any time.
    virtual bool tellsMotion() const { return true; }
};

} // namespace platform
