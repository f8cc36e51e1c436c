#pragma once

#include "platform/calendar/Backend.h"
#include "platform/calendar/CutJournal.h"
#include "platform/calendar/Events.h"
#include "platform/calendar/IcsText.h"
#include "platform/linux/files/AtomicFile.h"

#include <map>

namespace platform::calendar {

/// A folder with one event a file. A file is only read again when it has changed, and is replaced
/// as a whole; what it comes to in the next day is worked out once. One that makes no sense is left
/// as it is and named in the remarks.
class Folder final : public Backend {
  public:
    /// The journal of cuts is kept in that file, which is nobody else's.
    Folder(std::string path, Now now, std::string journal = {});

    Opened open() override;
    Found find(double seconds) override;
    std::vector<SaveResult> save(const std::vector<CalendarEvent>& events) override;
    /// Rules that are hard to tell take their time.
    void interrupt() override { g_cancellable_cancel(stop.get()); }

  private:
    struct FreeZones {
        void operator()(ECalClientTzlookupICalCompData* data) const {
            e_cal_client_tzlookup_icalcomp_data_free(data);
        }
    };
    struct File {
        linux::FileIdentity identity{};
        std::string problem; ///< why it is left alone; empty for a good one
        std::optional<IcsText> text;
        Component calendar;
        std::vector<Component> events; ///< in the order of the text
        Series series;
        std::unique_ptr<ECalClientTzlookupICalCompData, FreeZones> zones; ///< the file's own

        struct Known {
            std::time_t from = 0, to = 0; ///< no span before the first look
            ICalTimezone* local = nullptr;
            Expansion expansion;
        } known;
    };

    void readAgain(const std::string& name);
    static void read(File& file, std::string text);
    Zones zonesOf(const File& file) const;
    const Expansion& expansionOf(File& file) const;
    std::optional<std::string> leftAlone(const File& file) const;
    void settleCuts();
    static std::size_t placeOf(const File& file, ICalComponent* event);
    SaveResult saveOne(const CalendarEvent& event);
    SaveResult write(const std::string& name, const std::string& text);
    SaveResult saveAll(const std::string& name, const File& file, ICalComponent* event,
                       const CalendarEvent& wanted);
    SaveResult saveHalf(const std::string& name, const File& file, const Occurrence& occurrence,
                        const CalendarEvent& wanted);

    std::string path;
    Now now;
    CutJournal journal;
    Ref<GCancellable> stop{g_cancellable_new()};
    std::map<std::string, File> files;
    ICalTimezone* local = nullptr;
    std::time_t from = 0, to = 0; ///< the span that was asked for last
};

} // namespace platform::calendar
