#pragma once

#include "platform/calendar/Backend.h"
#include "platform/calendar/CutJournal.h"
#include "platform/calendar/Events.h"
#include "platform/calendar/folder/IcsFile.h"
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
    struct File {
        linux::FileIdentity identity{};
        IcsFile event;

        struct Known {
            std::time_t from = 0, to = 0; ///< no span before the first look
            ICalTimezone* local = nullptr;
            Expansion expansion;
        } known; ///< goes before the event
    };

    void readAgain(const std::string& name);
    Zones zonesOf(const File& file) const { return file.event.zones(local); }
    const Expansion& expansionOf(File& file) const;
    std::optional<std::string> leftAlone(const File& file) const;
    void settleCuts();
    SaveResult saveOne(const CalendarEvent& event);
    SaveResult write(const std::string& name, const std::string& text);
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
