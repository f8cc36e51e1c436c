#pragma once

#include "bus/ProductObject.h"

namespace bus {

/// The members of the interface. Each handler is called while its message is handled, and puts off
/// what changes anything. `own` is the object.
struct ProductMembers {
    using Value = int(sd_bus*, const char*, const char*, const char*, sd_bus_message*, void*,
                      sd_bus_error*);
    using Call = int(sd_bus_message*, void* own, sd_bus_error*);

    static Value active, setActive, held, freed, monitors, shortcut, capabilities, version;
    static Call toggle, free, crossTo, showMenu, quit, listSettings, getSetting, setSetting,
        resetSetting, report;

    static constexpr std::uint64_t method = SD_BUS_VTABLE_UNPRIVILEGED;
    static constexpr std::uint64_t told = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;

    static constexpr sd_bus_vtable table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_WRITABLE_PROPERTY("Active", "b", active, setActive, 0, told | method),
        SD_BUS_PROPERTY("Held", "s", held, 0, told),
        SD_BUS_PROPERTY("Freed", "u", freed, 0, told),
        SD_BUS_PROPERTY("Monitors", "a(s(iiii)dbbb)", monitors, 0, told),
        SD_BUS_PROPERTY("Shortcut", "s", shortcut, 0, told),
        SD_BUS_PROPERTY("Capabilities", "a(sbs)", capabilities, 0, told),
        SD_BUS_PROPERTY("Version", "s", version, 0, SD_BUS_VTABLE_PROPERTY_CONST),
        SD_BUS_METHOD_WITH_NAMES("Toggle", "", "", "b", SD_BUS_PARAM(active), toggle, method),
        SD_BUS_METHOD_WITH_NAMES("Free", "u", SD_BUS_PARAM(seconds), "", "", free, method),
        SD_BUS_METHOD_WITH_NAMES("CrossTo", "s", SD_BUS_PARAM(monitor), "", "", crossTo, method),
        SD_BUS_METHOD_WITH_NAMES("ShowMenu", "", "", "", "", showMenu, method),
        SD_BUS_METHOD_WITH_NAMES("Quit", "", "", "", "", quit, method),
        SD_BUS_METHOD_WITH_NAMES("ListSettings", "", "", "a(ssssbs)", SD_BUS_PARAM(settings),
                                 listSettings, method),
        SD_BUS_METHOD_WITH_NAMES("GetSetting", "s", SD_BUS_PARAM(setting), "s", SD_BUS_PARAM(value),
                                 getSetting, method),
        SD_BUS_METHOD_WITH_NAMES("SetSetting", "ss", SD_BUS_PARAM(setting) SD_BUS_PARAM(value), "",
                                 "", setSetting, method),
        SD_BUS_METHOD_WITH_NAMES("ResetSetting", "s", SD_BUS_PARAM(setting), "", "", resetSetting,
                                 method),
        SD_BUS_METHOD_WITH_NAMES("Report", "", "", "s", SD_BUS_PARAM(report), report, method),
        SD_BUS_SIGNAL_WITH_NAMES("Crossed", "ss", SD_BUS_PARAM(from) SD_BUS_PARAM(to), 0),
        SD_BUS_VTABLE_END};
};

} // namespace bus
