#include "platform/calendar/Alarms.h"
#include "platform/calendar/folder/IcsFile.h"

#include <cstdint>
#include <cstdlib>

// A calendar file that is the input: the events that it has in one hour get an alarm, and a series
// is cut in two. What comes of it is a calendar file again, with that alarm.

namespace {

using namespace platform::calendar;

constexpr std::time_t now = 1792891800; // 2026-10-25T01:30:00Z
constexpr std::time_t anHour = 3600;

void mustHold(bool condition) {
    if (!condition) std::abort();
}

std::size_t alarmsIn(const std::string& text, const std::string& uid) {
    const IcsFile file(text);
    mustHold(file.problem().empty());
    mustHold(file.series().master && uidOf(file.series().master.get()) == uid);
    return componentsOf(file.series().master.get(), I_CAL_VALARM_COMPONENT).size();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const IcsFile file(std::string(reinterpret_cast<const char*>(data), size));
    if (!file.problem().empty()) return 0;
    const Zones zones = file.zones(i_cal_timezone_get_utc_timezone());
    const auto expansion = occurrencesBetween(file.series(), zones, now, now + anHour, nullptr);
    mustHold(expansion.oddity == Oddity::none || expansion.occurrences.empty());
    for (const Occurrence& occurrence : expansion.occurrences) {
        mustHold(hasPartIn(occurrence, now, now + anHour));
        if (occurrence.detached) continue;
        const std::vector<platform::CalendarAlarm> alarms{{.offset = -60, .sound = "Pop"}};
        const std::string uid = uidOf(occurrence.component);
        if (isWhole(occurrence, zones)) {
            mustHold(alarmsIn(file.withAlarms(occurrence.component, alarms), uid) == 1);
        } else if (const auto halves = file.cutAt(occurrence, alarms, zones)) {
            (void)alarmsIn(halves->before, uid);
            mustHold(alarmsIn(halves->after, halves->afterUid) == 1);
        }
        break;
    }
    return 0;
}
