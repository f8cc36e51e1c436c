#pragma once

#include <memory>
#include <systemd/sd-bus.h>

// Owners of what the bus's library hands out; each is one reference.

namespace bus {

struct Release {
    void operator()(sd_bus* connection) const { (void)sd_bus_close_unref(connection); }
    void operator()(sd_bus_message* message) const { (void)sd_bus_message_unref(message); }
    void operator()(sd_bus_slot* slot) const { (void)sd_bus_slot_unref(slot); }
};

using Connection = std::unique_ptr<sd_bus, Release>; ///< closed with it
using Message = std::unique_ptr<sd_bus_message, Release>;
using Slot = std::unique_ptr<sd_bus_slot, Release>; ///< what was registered goes with it

/// A further reference.
inline Message keep(sd_bus_message* message) {
    return Message(sd_bus_message_ref(message));
}

/// An error as the library fills it.
class Error {
  public:
    Error() = default;
    ~Error() { sd_bus_error_free(&error); }
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;

    sd_bus_error* get() { return &error; }
    bool is(const char* name) const { return sd_bus_error_has_name(&error, name) > 0; }
    const char* name() const { return error.name ? error.name : ""; }
    const char* text() const { return error.message ? error.message : name(); }

  private:
    sd_bus_error error = SD_BUS_ERROR_NULL;
};

} // namespace bus
