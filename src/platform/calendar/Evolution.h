#pragma once

#include "platform/calendar/Backend.h"
#include "platform/calendar/CutJournal.h"
#include "platform/calendar/Events.h"

#include <map>

namespace platform::calendar {

/// Whoever is invited need not hear of an alarm.
inline constexpr auto quietly = E_CAL_OPERATION_FLAG_DISABLE_ITIP_MESSAGE;

/// The calendars of Evolution Data Server, which GNOME, Xfce, Cinnamon and Budgie keep theirs in.
/// Every enabled one that can be written; the server is started by the bus, and again when it has
/// gone.
class Evolution final : public Backend {
  public:
    /// The journal of cuts is kept in that file, which is nobody else's.
    explicit Evolution(Now now, std::string journal = {});
    ~Evolution() override;
    Evolution(const Evolution&) = delete;
    Evolution& operator=(const Evolution&) = delete;

    Opened open() override;
    Found find(double seconds) override;
    std::vector<SaveResult> save(const std::vector<CalendarEvent>& events) override;
    void interrupt() override;

  private:
    /// When a recurring event is again.
    struct Look {
        std::time_t from = 0, to = 0; ///< the span that was looked at; from is 0 before the first
        std::time_t next = 0;         ///< the first time in it, or its end
        Oddity oddity = Oddity::none;
    };
    struct Place {
        std::string name; ///< as the user knows it
        Ref<ECalClient> client;
        std::map<std::string, Series> series; ///< of the last answer, by UID
        std::map<std::size_t, Look> looks;    ///< at what recurs, by a sum of its text
    };

    void turn();
    bool openRegistry(Failure& failure);
    std::optional<std::string> openPlace(ESource* source, Place& place);
    template <class Visit>
    bool ask(Place& place, const std::string& question, Failure& failure, Visit&& visit);
    std::optional<std::string> query(Place& place, std::vector<std::string>& remarks);
    Look lookAt(const Place& place, ICalComponent* event, const Look& known) const;
    static std::string nameIn(const Place& place, ICalComponent* event);
    void addEvents(const Place& place, const std::string& id, const Series& series, Found& found);
    bool fetchAll(Place& place, const std::string& uid, Series& series, Failure& failure);
    /// Changed components that go to the server together.
    struct Batch {
        struct Item {
            Component changed;
            Series* series; ///< null for an occurrence that stands for itself
            SaveResult* result;
        };
        Place* place = nullptr;
        std::vector<Item> items;
    };

    /// What goes with the batch is told `later`, where the server refuses it.
    SaveResult saveOne(const CalendarEvent& event, Batch& batch, SaveResult& later);
    SaveResult checkUnchanged(Place& place, const CalendarEvent& event, const Series& series);
    void send(Batch& batch);
    bool modify(Place& place, ICalComponent* event, Failure& failure);
    SaveResult saveHalf(Place& place, const Series& series, const Occurrence& occurrence,
                        const CalendarEvent& wanted);
    void settleCuts();
    bool settle(Place& place, const Cut& cut);
    bool removeMoved(Place& place, const Cut& cut, Failure& failure);
    SaveResult cutOnServer(Place& place, const Halves& halves, const Cut& cut);
    static std::string failed(Place& place, const Failure& failure);
    Zones zonesOf(const Place& place) const;

    Now now;
    CutJournal journal;
    GMainContext* context; ///< what the library tells later is told here, not in the main loop
    Ref<GCancellable> stop{g_cancellable_new()};
    Ref<ESourceRegistry> registry;
    std::map<std::string, Place> places; ///< by the calendar's id
    ICalTimezone* local = nullptr;
    std::time_t from = 0, to = 0; ///< the span that was asked for last
};

} // namespace platform::calendar
