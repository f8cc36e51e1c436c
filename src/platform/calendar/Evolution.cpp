#include "platform/calendar/Evolution.h"

#include "platform/calendar/Alarms.h"
#include "platform/calendar/Events.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace platform::calendar {

namespace {

constexpr std::time_t aDay = 24 * 60 * 60;
constexpr const char* noServer = "the desktop's calendars cannot be reached: ";
constexpr auto doNotWaitForTheAccount = static_cast<guint32>(-1); // any other number is seconds

std::string lostDuringPass(const std::string& calendar) {
    return calendar + ": the calendar server ended during this pass";
}

std::string utcText(std::time_t time) {
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &parts);
    return {text, length};
}

// The library ends the program that does not find them.
bool hasItsSettings() {
    GSettingsSchemaSource* const all = g_settings_schema_source_get_default();
    if (all == nullptr) return false;
    for (const char* name :
         {"org.gnome.evolution-data-server", "org.gnome.evolution-data-server.calendar"}) {
        GSettingsSchema* const schema = g_settings_schema_source_lookup(all, name, TRUE);
        if (schema == nullptr) return false;
        g_settings_schema_unref(schema);
    }
    return true;
}

class ObjectList {
  public:
    ~ObjectList() { e_client_util_free_object_slist(list); }
    ObjectList() = default;
    ObjectList(const ObjectList&) = delete;
    ObjectList& operator=(const ObjectList&) = delete;

    GSList** place() { return &list; }
    template <class T, class Visit>
    void each(Visit&& visit) const {
        for (GSList* at = list; at != nullptr; at = at->next)
            visit(static_cast<T*>(at->data));
    }

  private:
    GSList* list = nullptr;
};

std::vector<Ref<ESource>> enabledCalendars(ESourceRegistry* registry) {
    std::vector<Ref<ESource>> sources;
    GList* const list = e_source_registry_list_enabled(registry, E_SOURCE_EXTENSION_CALENDAR);
    for (GList* at = list; at != nullptr; at = at->next)
        sources.push_back(own(E_SOURCE(at->data)));
    g_list_free(list);
    return sources;
}

/// The library makes a registry without anybody behind it too, but every server has sources.
bool hasServer(ESourceRegistry* registry) {
    GList* const list = e_source_registry_list_sources(registry, nullptr);
    g_list_free_full(list, g_object_unref);
    return list != nullptr;
}

} // namespace

Evolution::Evolution(Now clock, std::string journalFile)
    : now(std::move(clock)), journal(std::move(journalFile)), context(g_main_context_new()) {
    g_main_context_push_thread_default(context);
}

Evolution::~Evolution() {
    places.clear();
    registry.reset();
    turn();
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
}

void Evolution::interrupt() {
    g_cancellable_cancel(stop.get());
}

/// What the server told meanwhile: calendars that came and went.
void Evolution::turn() {
    while (g_main_context_iteration(context, FALSE) != FALSE) {
    }
}

bool Evolution::openRegistry(Failure& failure) {
    if (!registry) registry = own(e_source_registry_new_sync(stop.get(), failure.place()));
    return registry != nullptr;
}

Opened Evolution::open() {
    g_cancellable_reset(stop.get());
    turn();
    Failure failure;
    if (!hasItsSettings())
        return {Refusal::noServer,
                std::string(noServer) + "the description of their settings is missing"};
    if (!openRegistry(failure)) return {Refusal::noServer, noServer + failure.text()};
    if (!hasServer(registry.get())) {
        registry.reset();
        return {Refusal::noServer,
                std::string(noServer) + "the session's bus cannot start the calendar server"};
    }
    if (enabledCalendars(registry.get()).empty())
        return {Refusal::noCalendar, "the desktop has no calendar that is switched on"};
    settleCuts();
    return {};
}

/// One whose calendar cannot be reached waits for another start.
void Evolution::settleCuts() {
    const auto cuts = journal.cuts();
    if (cuts.empty()) return;
    for (const auto& source : enabledCalendars(registry.get())) {
        Place place;
        for (const Cut& cut : cuts)
            if (cut.place == e_source_get_uid(source.get()) && !openPlace(source.get(), place) &&
                settle(place, cut))
                journal.strike(cut);
    }
}

/// A calendar whose server has ended is opened anew by the next request, which has the bus start
/// the server again.
std::string Evolution::failed(Place& place, const Failure& failure) {
    if (failure.isLoss()) place.client.reset();
    return place.name + ": " + failure.text();
}

std::optional<std::string> Evolution::openPlace(ESource* source, Place& place) {
    place.name = textOr(e_source_get_display_name(source), "");
    if (place.client) return std::nullopt;
    Failure failure;
    EClient* const client =
        e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, doNotWaitForTheAccount,
                                  stop.get(), failure.place());
    if (client == nullptr) return "the calendar " + failed(place, failure);
    place.client = own(E_CAL_CLIENT(client));
    return std::nullopt;
}

Zones Evolution::zonesOf(const Place& place) const {
    return {e_cal_client_tzlookup_cb, place.client.get(), local};
}

bool Evolution::fetchAll(Place& place, const std::string& uid, Series& series, Failure& failure) {
    ObjectList objects;
    if (e_cal_client_get_objects_for_uid_sync(place.client.get(), uid.c_str(), objects.place(),
                                              stop.get(), failure.place()) == FALSE)
        return false;
    objects.each<ECalComponent>([&series](ECalComponent* object) {
        auto event = share(e_cal_component_get_icalcomponent(object));
        if (isDetached(event.get()))
            series.detached.push_back(std::move(event));
        else
            series.master = std::move(event);
    });
    return true;
}

template <class Visit>
bool Evolution::ask(Place& place, const std::string& question, Failure& failure, Visit&& visit) {
    ObjectList objects;
    if (e_cal_client_get_object_list_sync(place.client.get(), question.c_str(), objects.place(),
                                          stop.get(), failure.place()) == FALSE)
        return false;
    objects.each<ICalComponent>(visit);
    return true;
}

/// Asked when recurring events are, the server walks each rule from its beginning: one that recurs
/// every second keeps it busy for minutes. So it is only asked which ones there are.
std::optional<std::string> Evolution::query(Place& place, std::vector<std::string>& remarks) {
    place.series.clear();
    const std::string span = "(occur-in-time-range? (make-time \"" + utcText(from) +
                             "\") (make-time \"" + utcText(to + 1) + "\"))";
    std::set<std::string> manifold;
    std::map<std::size_t, Look> looks;
    Failure failure;
    const auto single = [&](ICalComponent* event) {
        if (isRecurring(event) || isDetached(event))
            manifold.insert(uidOf(event));
        else
            place.series[uidOf(event)].master = share(event);
    };
    const auto recurring = [&](ICalComponent* event) {
        const auto text = std::hash<std::string>{}(textOf(event));
        const Look& look = looks[text] = lookAt(place, event, place.looks[text]);
        if (look.next <= to) manifold.insert(uidOf(event));
        if (const char* const why = nameOf(look.oddity))
            remarks.push_back(nameIn(place, event) + " is left as it is: " + why);
    };
    if (!ask(place, "(and (not (has-recurrences?)) " + span + ")", failure, single) ||
        !ask(place, "(has-recurrences?)", failure, recurring))
        return failed(place, failure);
    place.looks = std::move(looks);
    // The server's answer lacks occurrences that were changed a short while ago.
    for (const std::string& uid : manifold)
        if (!fetchAll(place, uid, place.series[uid], failure)) return failed(place, failure);
    return std::nullopt;
}

/// Looks a day further than it is asked for, and not again before something may have changed.
Evolution::Look Evolution::lookAt(const Place& place, ICalComponent* event,
                                  const Look& known) const {
    if (known.from != 0 && from >= known.from && to < std::max(known.next, known.to)) return known;
    Series one;
    if (isDetached(event))
        one.detached.push_back(share(event));
    else
        one.master = share(event);
    Look look{.from = from, .to = to + aDay};
    const auto expansion = occurrencesBetween(one, zonesOf(place), look.from, look.to, stop.get());
    look.oddity = expansion.oddity;
    look.next = expansion.occurrences.empty() ? look.to : expansion.occurrences.front().start;
    // What is under way is there as long as it lasts.
    if (!expansion.occurrences.empty() && look.next <= to) look.to = to;
    if (look.oddity == Oddity::stopped) look.from = 0;
    return look;
}

std::string Evolution::nameIn(const Place& place, ICalComponent* event) {
    return place.name + ": \"" + textOr(i_cal_component_get_summary(event), "") + "\"";
}

Found Evolution::find(double seconds) {
    g_cancellable_reset(stop.get());
    turn();
    Found found;
    Failure failure;
    if (!openRegistry(failure)) {
        found.remarks.push_back(noServer + failure.text());
        return found;
    }
    local = localZone();
    from = now();
    to = from + static_cast<std::time_t>(seconds);
    std::map<std::string, Place> present;
    bool anyLost = false;
    for (const auto& source : enabledCalendars(registry.get())) {
        const std::string id = e_source_get_uid(source.get());
        Place& place = present[id] = std::move(places[id]);
        auto error = openPlace(source.get(), place);
        if (!error && e_client_is_readonly(E_CLIENT(place.client.get())) != FALSE) {
            found.remarks.push_back("the calendar " + place.name +
                                    " cannot be changed and is left alone");
            continue;
        }
        if (!error) error = query(place, found.remarks);
        // The server ended since the last time.
        if (error && !place.client && !(error = openPlace(source.get(), place)))
            error = query(place, found.remarks);
        if (error) {
            anyLost = anyLost || !place.client;
            found.remarks.push_back(*error);
            continue;
        }
        found.answer.sources.push_back(id);
        for (const auto& [uid, series] : place.series)
            addEvents(place, id, series, found);
    }
    places = std::move(present);
    if (anyLost) registry.reset();
    std::ranges::stable_sort(found.answer.events, {}, &CalendarEvent::start);
    return found;
}

void Evolution::addEvents(const Place& place, const std::string& id, const Series& series,
                          Found& found) {
    const auto expansion = occurrencesBetween(series, zonesOf(place), from, to, stop.get());
    const auto name = [&] {
        return nameIn(place, series.master ? series.master.get() : series.detached.front().get());
    };
    if (const char* const why = nameOf(expansion.oddity))
        found.remarks.push_back(name() + " is left as it is: " + why);
    bool isKept = false;
    for (const Occurrence& occurrence : expansion.occurrences)
        if (mayBeSaved(occurrence, zonesOf(place)))
            found.answer.events.push_back(eventOf(occurrence, id, from));
        else
            isKept = true;
    if (isKept) found.remarks.push_back(name() + keepsItsAlarms);
}

std::vector<SaveResult> Evolution::save(const std::vector<CalendarEvent>& events) {
    std::vector<SaveResult> results(events.size());
    Batch batch;
    for (std::size_t index = 0; index < events.size(); ++index)
        results[index] = saveOne(events[index], batch, results[index]);
    send(batch);
    return results;
}

SaveResult Evolution::saveOne(const CalendarEvent& event, Batch& batch, SaveResult& later) {
    const auto known = places.find(event.calendar);
    if (known == places.end()) return noSuchEvent;
    Place& place = known->second;
    if (batch.place != &place) send(batch);
    if (!place.client) return lostDuringPass(place.name);
    const auto entry = place.series.find(event.id);
    if (entry == place.series.end()) return noSuchEvent;
    Series& series = entry->second;
    if (isCovered(series, event, from)) return std::nullopt;
    const auto all = occurrencesBetween(series, zonesOf(place), from, to, stop.get()).occurrences;
    const auto found = std::ranges::find(all, event.occurrence, &Occurrence::id);
    if (found == all.end()) return noSuchEvent;
    if (hasAlarms(found->component, event.alarms)) return std::nullopt;
    if (auto error = checkUnchanged(place, event, series)) return error;
    if (isWhole(*found, zonesOf(place))) {
        Component changed = copyOf(found->component);
        setAlarms(changed.get(), event.alarms);
        batch.place = &place;
        batch.items.push_back({std::move(changed), found->detached ? nullptr : &series, &later});
    } else {
        send(batch);
        if (!place.client) return lostDuringPass(place.name);
        if (auto error = saveHalf(place, series, *found, event)) return error;
    }
    if (!found->detached) series.savedFrom = found->start;
    return std::nullopt;
}

SaveResult Evolution::checkUnchanged(Place& place, const CalendarEvent& event,
                                     const Series& series) {
    Failure failure;
    Series fresh;
    if (!fetchAll(place, event.id, fresh, failure)) return failed(place, failure);
    const auto sameText = [](const Component& a, const Component& b) {
        return (!a && !b) || (a && b && textOf(a.get()) == textOf(b.get()));
    };
    if (!sameText(fresh.master, series.master) ||
        (event.recurring && fresh.detached.size() != series.detached.size()))
        return changedMeanwhile;
    return std::nullopt;
}

bool Evolution::modify(Place& place, ICalComponent* event, Failure& failure) {
    const auto what = isDetached(event) ? E_CAL_OBJ_MOD_THIS : E_CAL_OBJ_MOD_ALL;
    return e_cal_client_modify_object_sync(place.client.get(), event, what, quietly, stop.get(),
                                           failure.place()) != FALSE;
}

/// One by one the server takes 3 to 8 ms each, together 0.2 ms. When it refuses them together, it
/// is asked for each, so that one does not keep back the others.
void Evolution::send(Batch& batch) {
    Batch sent;
    std::swap(sent, batch);
    if (sent.items.empty()) return;
    Place& place = *sent.place;
    std::vector<Batch::Item*> left;
    GSList* list = nullptr;
    for (Batch::Item& item : sent.items) {
        left.push_back(&item);
        if (item.series != nullptr) list = g_slist_append(list, item.changed.get());
    }
    Failure failure;
    if (list != nullptr && place.client &&
        e_cal_client_modify_objects_sync(place.client.get(), list, E_CAL_OBJ_MOD_ALL, quietly,
                                         stop.get(), failure.place()) != FALSE)
        std::erase_if(left, [](const Batch::Item* item) { return item->series != nullptr; });
    g_slist_free(list);
    for (Batch::Item* const item : left) {
        if (place.client && modify(place, item->changed.get(), failure)) continue;
        *item->result = failed(place, failure);
        if (item->series != nullptr) item->series->savedFrom = 0;
    }
}

} // namespace platform::calendar
