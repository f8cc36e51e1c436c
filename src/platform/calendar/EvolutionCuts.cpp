#include "platform/calendar/Alarms.h"
#include "platform/calendar/Evolution.h"

// A series that becomes two on the server, in several writes.

namespace platform::calendar {

/// The server can cut a series by itself, but drops the later occurrences that were changed by
/// themselves. So the later half is made here, complete, before the first half ends earlier.
SaveResult Evolution::saveHalf(Place& place, const Series& series, const Occurrence& occurrence,
                               const CalendarEvent& wanted) {
    const Halves halves = cutAt(series, occurrence, zonesOf(place));
    if (!halves.after) return cannotBeCut;
    setAlarms(halves.after.get(), wanted.alarms);
    const std::string uid = uidOf(halves.after.get());
    Cut cut{.place = wanted.calendar,
            .before = wanted.id,
            .after = uid,
            .wholeSum = checksumOf(textOf(series.master.get())),
            .partSum = checksumOf(rulesOf(halves.before.get()))};
    for (ICalComponent* const event : halves.movedDetached) {
        const auto id = own(i_cal_component_get_recurrenceid(event));
        cut.moved.push_back(take(i_cal_time_as_ical_string(id.get())));
    }
    if (!journal.add(cut)) return cannotBeJournalled;
    const auto error = cutOnServer(place, halves, cut);
    // Without the server it is not known how far the cut has come.
    if (place.client) journal.strike(cut);
    return error;
}

SaveResult Evolution::cutOnServer(Place& place, const Halves& halves, const Cut& cut) {
    ECalClient* const client = place.client.get();
    Failure failure;
    if (e_cal_client_create_object_sync(client, halves.after.get(), quietly, nullptr, stop.get(),
                                        failure.place()) == FALSE)
        return failed(place, failure);
    bool done = true;
    for (ICalComponent* const event : halves.movedDetached) {
        const Component moved = copyOf(event);
        i_cal_component_set_uid(moved.get(), cut.after.c_str());
        done =
            done && e_cal_client_modify_object_sync(client, moved.get(), E_CAL_OBJ_MOD_THIS,
                                                    quietly, stop.get(), failure.place()) != FALSE;
    }
    done = done && e_cal_client_modify_object_sync(client, halves.before.get(), E_CAL_OBJ_MOD_ALL,
                                                   quietly, stop.get(), failure.place()) != FALSE;
    if (!done) {
        Failure ignored;
        (void)e_cal_client_remove_object_sync(client, cut.after.c_str(), nullptr, E_CAL_OBJ_MOD_ALL,
                                              quietly, nullptr, ignored.place());
        return failed(place, failure);
    }
    if (!removeMoved(place, cut, failure)) return failed(place, failure);
    return std::nullopt;
}

/// What a kill has ended before the first half was shorter is undone, and finished otherwise. Where
/// somebody has changed the first half since, both stay as they are.
bool Evolution::settle(Place& place, const Cut& cut) {
    Failure failure;
    Series first;
    if (!fetchAll(place, cut.before, first, failure)) return failure.isAbsence();
    if (!first.master) return true;
    if (checksumOf(textOf(first.master.get())) == cut.wholeSum)
        return e_cal_client_remove_object_sync(place.client.get(), cut.after.c_str(), nullptr,
                                               E_CAL_OBJ_MOD_ALL, quietly, stop.get(),
                                               failure.place()) != FALSE ||
               failure.isAbsence();
    if (checksumOf(rulesOf(first.master.get())) == cut.partSum)
        return removeMoved(place, cut, failure);
    return true;
}

bool Evolution::removeMoved(Place& place, const Cut& cut, Failure& failure) {
    for (const std::string& id : cut.moved)
        if (e_cal_client_remove_object_sync(place.client.get(), cut.before.c_str(), id.c_str(),
                                            E_CAL_OBJ_MOD_ONLY_THIS, quietly, stop.get(),
                                            failure.place()) == FALSE &&
            !failure.isAbsence())
            return false;
    return true;
}

} // namespace platform::calendar
