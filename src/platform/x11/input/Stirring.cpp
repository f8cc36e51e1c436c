#include "platform/x11/input/Stirring.h"

#include <cstdlib>
#include <xcb/sync.h>

namespace platform::x11 {

namespace {

// What stirs sooner than that after the last time is looked for by those who follow the pointer.
constexpr std::uint32_t restMilliseconds = 30;

/// As it is sent: the library takes the padding of its own structure for a part of the name.
std::string_view nameOf(const xcb_sync_systemcounter_t& counter) {
    return {reinterpret_cast<const char*>(&counter.name_len + 1), counter.name_len};
}

} // namespace

std::uint32_t Stirring::idleCounter() const {
    xcb_connection_t* c = connection.xcb();
    const auto counters =
        connection.wait(xcb_sync_list_system_counters(c), xcb_sync_list_system_counters_reply);
    if (!counters) return XCB_NONE;
    const std::string wanted = "DEVICEIDLETIME " + std::to_string(device);
    for (auto at = xcb_sync_list_system_counters_counters_iterator(counters.get()); at.rem > 0;
         xcb_sync_systemcounter_next(&at))
        if (nameOf(*at.data) == wanted) return at.data->counter;
    return XCB_NONE;
}

void Stirring::watch() {
    if (device == connection.masterPointer()) return;
    device = connection.masterPointer();
    xcb_connection_t* c = connection.xcb();
    const auto* extension = xcb_get_extension_data(c, &xcb_sync_id);
    if (!extension || !extension->present) return;
    if (!connection.wait(xcb_sync_initialize(c, 3, 1), xcb_sync_initialize_reply)) return;
    if (alarm != XCB_NONE) xcb_sync_destroy_alarm(c, alarm);
    alarm = XCB_NONE;
    const std::uint32_t counter = idleCounter();
    if (counter == XCB_NONE) return;
    alarm = xcb_generate_id(c);
    const std::uint32_t values[] = {counter,
                                    XCB_SYNC_VALUETYPE_ABSOLUTE,
                                    0,
                                    restMilliseconds,
                                    XCB_SYNC_TESTTYPE_NEGATIVE_TRANSITION,
                                    0,
                                    0 /* it stays armed */,
                                    1};
    xcb_sync_create_alarm(c, alarm,
                          XCB_SYNC_CA_COUNTER | XCB_SYNC_CA_VALUE_TYPE | XCB_SYNC_CA_VALUE |
                              XCB_SYNC_CA_TEST_TYPE | XCB_SYNC_CA_DELTA | XCB_SYNC_CA_EVENTS,
                          values);
    type = static_cast<std::uint8_t>(extension->first_event + XCB_SYNC_ALARM_NOTIFY);
}

bool Stirring::isUnexplained(const xcb_generic_event_t& event, std::uint32_t toldTime) {
    const auto& notify = reinterpret_cast<const xcb_sync_alarm_notify_event_t&>(event);
    const auto since = static_cast<std::int32_t>(notify.timestamp - toldTime);
    return std::abs(since) > static_cast<std::int32_t>(restMilliseconds);
}

} // namespace platform::x11
