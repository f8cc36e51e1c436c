#include "scenario/replay/Records.h"

#include "app/Fields.h"
#include "scenario/replay/MenuRecord.h"
#include "scenario/replay/Player.h"

#include <algorithm>
#include <type_traits>

namespace palisor::replay {

namespace {

using platform::memory::Seconds;
using platform::memory::writeJson;
using platform::memory::writeMember;

std::string opened(std::string_view name) {
    std::string record = "{";
    writeMember(record, "show", name);
    return record;
}

/// Writes the fields of the application object as values of JSON.
class FieldWriter {
  public:
    FieldWriter(const Player& played, std::string& text) : player(played), record(text) {}

    template <class T>
    void operator()(std::string_view name, const T& value) {
        if constexpr (std::is_same_v<T, ScreenId>)
            writeMember(record, name, screenIndex(value));
        else if constexpr (std::is_same_v<T, TimerId>)
            writeMember(record, name, player.platform.runLoop.isRunning(value));
        else if constexpr (std::is_same_v<T, std::optional<AppDelegate::WindowList>>)
            writeWindows(name, value);
        else if constexpr (std::is_same_v<std::decay_t<decltype(AppDelegate::proKeys)>, T>)
            writeMember(record, name, dictionaryOf(value));
        else
            writeMember(record, name, value);
    }

  private:
    std::optional<std::size_t> screenIndex(ScreenId id) const {
        const auto screens = player.platform.displays.screens();
        const auto found = std::ranges::find(screens, id, &platform::Screen::id);
        if (found == screens.end()) return std::nullopt;
        return static_cast<std::size_t>(found - screens.begin());
    }

    void writeWindows(std::string_view name, const std::optional<AppDelegate::WindowList>& list) {
        if (!list) {
            writeMember(record, name, nullptr);
            return;
        }
        std::vector<platform::WindowId> ids;
        for (const auto& window : *list)
            ids.push_back(window->id());
        writeMember(record, name, ids);
    }

    template <class Map>
    static platform::Dictionary dictionaryOf(const Map& texts) {
        platform::Dictionary values;
        for (const auto& [key, text] : texts)
            values[key] = platform::Value{text};
        return values;
    }

    const Player& player;
    std::string& record;
};

std::string fields(const Player& player) {
    std::string record = opened("fields");
    player.app.visitFields(FieldWriter(player, record));
    return record + "}";
}

std::string defaults(const Player& player) {
    std::string record = opened("defaults");
    writeMember(record, "persistent", player.platform.settings.persistentValues());
    writeMember(record, "registered", player.platform.settings.registeredValues());
    return record + "}";
}

std::string menu(const Player& player) {
    return opened("menu") + ",\"items\":" + menuRecord(player.platform.statusItem.menu()) + "}";
}

std::string windows(const Player& player) {
    return opened("windows") + ",\"windows\":" + listOf(player.platform.windows.shown()) + "}";
}

std::string timers(const Player& player) {
    std::vector<std::string> objects;
    for (const auto* timer : player.platform.runLoop.timers()) {
        std::string& members = objects.emplace_back();
        writeMember(members, "selector", timer->selector);
        writeMember(members, "interval", timer->seconds);
        writeMember(members, "repeats", timer->repeats);
        writeMember(members, "due", Seconds{timer->due});
    }
    return opened("timers") + ",\"timers\":" + listOf(objects) + "}";
}

std::string membersOf(const platform::CalendarEvent& event) {
    std::vector<std::string> alarms;
    for (const platform::CalendarAlarm& alarm : event.alarms) {
        std::string& members = alarms.emplace_back();
        writeMember(members, "offset", alarm.offset);
        writeMember(members, "sound", alarm.sound);
        writeMember(members, "default", alarm.isDefault);
    }
    std::string members;
    writeMember(members, "id", event.id);
    writeMember(members, "start", event.start);
    members += ",\"alarms\":" + listOf(alarms);
    writeMember(members, "detached", event.detached);
    writeMember(members, "recurring", event.recurring);
    return members;
}

std::string calendar(const Player& player) {
    std::vector<std::string> objects;
    for (const platform::CalendarEvent& event : player.platform.calendar.events())
        objects.push_back(membersOf(event));
    return opened("calendar") + ",\"events\":" + listOf(objects) + "}";
}

struct NamedWriter {
    std::string_view name;
    RecordWriter write;
};

constexpr NamedWriter writers[] = {
    {"fields", fields},   {"defaults", defaults}, {"menu", menu},
    {"windows", windows}, {"timers", timers},     {"calendar", calendar},
};

} // namespace

RecordWriter recordWriter(std::string_view name) {
    const auto found = std::ranges::find(writers, name, &NamedWriter::name);
    if (found == std::end(writers)) throw StepError("unknown record " + inQuotes(name));
    return found->write;
}

} // namespace palisor::replay
