#pragma once

#include "platform/Calendar.h"
#include "platform/calendar/Occurrences.h"
#include "platform/calendar/folder/IcsText.h"

#include <memory>

namespace platform::calendar {

/// One event as the text of an .ics file has it. The text may come from anybody.
class IcsFile {
  public:
    /// Without an event.
    IcsFile() = default;
    explicit IcsFile(std::string text);
    static IcsFile withProblem(std::string problem);

    /// Why it is left alone; empty for a good one, also for one without events.
    const std::string& problem() const { return reason; }
    const std::string& text() const;
    const Series& series() const { return ownSeries; }
    void setSavedFrom(std::time_t time) { ownSeries.savedFrom = time; }

    /// Its own zones, and otherwise those that the system knows.
    Zones zones(ICalTimezone* local) const;

    /// The text with these alarms for the event, which is one of the series; every other byte is as
    /// it was.
    std::string withAlarms(ICalComponent* event, const std::vector<CalendarAlarm>& alarms) const;

    struct Halves {
        std::string before;
        std::string after; ///< under a new UID, with the alarms
        std::string afterUid;
    };
    /// Nothing where it cannot be cut at the occurrence.
    std::optional<Halves> cutAt(const Occurrence& occurrence,
                                const std::vector<CalendarAlarm>& alarms, const Zones& zones) const;

  private:
    struct FreeZones {
        void operator()(ECalClientTzlookupICalCompData* data) const {
            e_cal_client_tzlookup_icalcomp_data_free(data);
        }
    };

    void sortOut();
    std::size_t placeOf(ICalComponent* event) const;

    std::string reason;
    std::optional<IcsText> lines;
    Component calendar;
    std::vector<Component> events; ///< in the order of the text
    Series ownSeries;
    std::unique_ptr<ECalClientTzlookupICalCompData, FreeZones> ownZones;
};

} // namespace platform::calendar
