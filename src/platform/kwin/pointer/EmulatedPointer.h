#pragma once

#include "bus/Link.h"
#include "platform/Geometry.h"
#include "platform/Log.h"

#include <memory>

struct ei;
struct ei_device;
struct ei_event;

namespace platform::kwin {

/// A pointer of the program's own in the compositor, by the socket for emulated input that it hands
/// to any client of the session bus. It goes with the program. Nothing here waits. Main thread.
class EmulatedPointer final : public bus::Link::User {
  public:
    /// What is lent must outlive the object.
    EmulatedPointer(bus::Link& link, Descriptors& descriptors, Log& log);
    ~EmulatedPointer() override;
    EmulatedPointer(const EmulatedPointer&) = delete;
    EmulatedPointer& operator=(const EmulatedPointer&) = delete;

    /// A motion of no length, upon which the compositor forgets what was pushed against a barrier.
    void rest();
    /// Layout coordinates.
    void moveTo(Point layout);

  private:
    void attach(sd_bus& bus) override;
    void up() override { connect(); }

    static int connected(sd_bus_message* reply, void* own, sd_bus_error* error);
    static int ownerChanged(sd_bus_message* message, void* own, sd_bus_error* error);
    void connect();
    void disconnect();
    void begin(int socket);
    void read();
    void handle(ei_event& event);

    struct Release {
        void operator()(ei* context) const;
        void operator()(ei_device* device) const;
    };

    bus::Link& link;
    Descriptors& descriptors;
    Log& log;
    bus::Slot call, watch;
    std::unique_ptr<ei, Release> context;
    std::unique_ptr<ei_device, Release> relative, absolute; ///< null until they may be used
    unsigned sequence = 0;
};

} // namespace platform::kwin
