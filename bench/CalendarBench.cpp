#include "app/AppDelegate.h"
#include "calendar/Ics.h"
#include "calendar/Session.h"
#include "platform/calendar/folder/Folder.h"
#include "platform/linux/system/ModuleCalendar.h"
#include "platform/memory/MemoryPlatform.h"
#include "platform/qt/loop/QtRunLoop.h"
#include "testing/TempFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

// How long a pass of the calendar product over 2,000 events of the coming hour takes, how long the
// main loop is held at most meanwhile, and what series that began long ago cost.

namespace {

constexpr int events = 2000;

/// Tells when a pass has looked at its last event.
class PassLog final : public platform::Log {
  public:
    void write(std::string_view text) override {
        if (text.starts_with("Edited ID: ")) ++edited;
        if (text.starts_with("err: "))
            std::printf("%.*s\n", static_cast<int>(text.size()), text.data());
    }
    int edited = 0;
};

std::string uid(int number) {
    return "event-" + std::to_string(number);
}

std::string eventText(int number) {
    using namespace calendartests;
    return vevent(uid(number), "DTSTART:" + stamp(std::time(nullptr) + 600 + number) + "\n",
                  {{"-PT15M"}, {"-PT5M"}, {"-PT1M"}});
}

/// The longest time between two turns of the main loop.
class Holds {
  public:
    Holds() {
        beat.setTimerType(Qt::PreciseTimer);
        QObject::connect(&beat, &QTimer::timeout,
                         [this] { longest = std::max(longest, clock.restart()); });
        clock.start();
        beat.start(0);
    }
    qint64 longest = 0; ///< milliseconds

  private:
    QTimer beat;
    QElapsedTimer clock;
};

void measure(const char* what, const std::string& folder) {
    PassLog log;
    platform::qt::QtRunLoop loop;
    platform::memory::MemoryPlatform memory;
    memory.bundle.set("IDApp", platform::Value{std::int64_t{9}});
    platform::linux::ModuleCalendar calendar({.module = CALENDAR_MODULE, .folder = folder}, loop,
                                             log, {});
    const platform::Platform rest = memory.services();
    palisor::AppDelegate app(platform::Platform{log,
                                                loop,
                                                rest.application,
                                                rest.bundle,
                                                rest.settings,
                                                rest.files,
                                                rest.system,
                                                rest.displays,
                                                rest.pointer,
                                                rest.cursor,
                                                rest.input,
                                                rest.keyboard,
                                                rest.hotKeys,
                                                rest.windows,
                                                rest.focus,
                                                rest.workspace,
                                                rest.statusItem,
                                                rest.alerts,
                                                rest.notifications,
                                                rest.sounds,
                                                rest.loginItems,
                                                rest.power,
                                                rest.textCodec,
                                                rest.infoWindows,
                                                rest.http,
                                                rest.json,
                                                rest.images,
                                                rest.web,
                                                calendar});
    for (const char* pass : {"first", "second"}) {
        log.edited = 0;
        QElapsedTimer time;
        time.start();
        Holds holds;
        if (std::strcmp(pass, "first") == 0)
            app.applicationDidFinishLaunching();
        else
            app.ReplaceDefaultEvents();
        const auto look = loop.schedule(0.01, true, "look", [&] {
            if (log.edited >= events || time.elapsed() > 120'000) loop.stop();
        });
        loop.run();
        loop.invalidate(look);
        std::printf("%-8s %-6s pass: %d events in %.2f s, main loop held for %lld ms at most\n",
                    what, pass, log.edited, static_cast<double>(time.elapsed()) / 1000,
                    static_cast<long long>(holds.longest));
    }
}

void measureOldSeries() {
    constexpr int series = 300;
    testing_support::TempFolder folder;
    for (int number = 0; number < series; ++number)
        folder.write(
            uid(number) + ".ics",
            calendartests::vcalendar(calendartests::vevent(
                uid(number), "DTSTART:" + calendartests::stamp(946684800 + number * 271) +
                                 "\nRRULE:FREQ=" + (number % 2 ? "WEEKLY" : "DAILY") + "\n")));
    platform::calendar::Folder calendar(folder.path(), [] { return std::time(nullptr); });
    for (const char* pass : {"first", "second"}) {
        QElapsedTimer time;
        time.start();
        const auto found = calendar.find(3600);
        std::printf("%-8s %-6s look: %d series since 2000, %zu events of the hour in %.1f ms\n",
                    "folder", pass, series, found.answer.events.size(),
                    static_cast<double>(time.nsecsElapsed()) / 1e6);
    }
}

} // namespace

int main(int argc, char** argv) {
    const calendartests::Session session;
    const QCoreApplication toolkit(argc, argv);
    {
        testing_support::TempFolder folder;
        for (int number = 0; number < events; ++number)
            folder.write(uid(number) + ".ics", calendartests::vcalendar(eventText(number)));
        measure("folder", folder.path());
    }
    measureOldSeries();
    std::string all;
    for (int number = 0; number < events; ++number)
        all += eventText(number);
    calendartests::Client client;
    client.ask("new bench");
    client.add("bench", calendartests::vcalendar(all));
    measure("server", "");
    return 0;
}
