#pragma once

#include "platform/Geometry.h"
#include "platform/x11/connection/Connection.h"

#include <optional>
#include <vector>
#include <xcb/xinput.h>

namespace platform::x11 {

/// The first two values: how far the device moved the cursor, accelerated, or where it points.
/// Nothing for a wheel in the smooth scrolling form, which moves only the third valuator and those
/// after it; the server adds that up to presses of the buttons that stand for notches.
std::optional<Point> valuesOf(const xcb_input_raw_motion_event_t& event);

/// What has to be known of the devices to read their events: who tells steps and who places, and
/// on which of them a finger touches what it points at.
class Devices {
  public:
    explicit Devices(Connection& x) : connection(x) {}

    /// Asks the server; two round trips.
    void read();
    /// The size of the root window, which `read` asks for and which may change.
    void setRoot(std::uint16_t width, std::uint16_t height);

    /// Of a pen, or the pointer of a virtual machine.
    bool tellsPlaces(std::uint16_t device) const;
    /// A touch pad is none: its fingers move the cursor by steps.
    bool isTouchScreen(std::uint16_t device) const;
    /// The root pixel that such a device means by its first two values.
    xcb_point_t toRoot(std::uint16_t device, Point values) const;

    /// Remote desktops put the cursor somewhere through a device of the server's (XTEST) that calls
    /// the place a step. It was a place if the cursor is there afterwards.
    struct Motion {
        std::uint16_t device = 0; ///< 0 for none
        Point values;
        std::uint32_t sequence = 0; ///< in the server's stream
    };
    /// The last one of those before the question about the cursor's place, or the last one after
    /// it.
    void moved(const Motion& motion, bool afterQuestion);
    /// The answer, root coordinates, and when the program has moved the cursor itself. Whether the
    /// motion before the question was to a place; nothing where that cannot be told.
    std::optional<bool> placed(xcb_point_t root, std::uint32_t lastPutSequence);
    /// A barrier has stopped a motion, and so it was a step.
    void stopped() { placing = 0; }
    bool seemsToTellPlaces(std::uint16_t device) const { return device == placing; }

    /// The master keyboard that belongs to the master pointer; 0 where there is none.
    std::uint16_t keyboardOf(std::uint16_t pointer) const;

  private:
    /// As many values as the axis has, and the first of them.
    struct Axis {
        double first = 0, count = 0;
    };
    struct Device {
        std::uint16_t id = 0;
        std::uint16_t attachment = 0; ///< of a master, the other half
        bool places = false;
        bool touchScreen = false;
        Axis x, y;
    };

    static Device describe(xcb_input_xi_device_info_t& info);
    const Device* find(std::uint16_t device) const;

    Connection& connection;
    std::vector<Device> list;
    double rootWidth = 0, rootHeight = 0;
    Motion last, afterQuestion;
    std::uint16_t placing = 0; ///< the device that seems to tell places, 0 for none
};

} // namespace platform::x11
