#include "program/client/Watch.h"

#include "bus/Names.h"
#include "platform/json/Writer.h"
#include "program/client/Seen.h"

#include <cstdio>

namespace client {

namespace {

using platform::json::Member;

struct Watching {
    bool asJson;
    Seen seen;
    bool isOver = false;

    void print(const std::string& text) const {
        (void)std::fputs(text.c_str(), stdout);
        (void)std::fflush(stdout);
    }
};

int changed(sd_bus_message* signal, void* own, sd_bus_error*) {
    auto& watching = *static_cast<Watching*>(own);
    const char* interface = nullptr;
    if (sd_bus_message_read(signal, "s", &interface) < 0 ||
        std::string_view(interface) != bus::productInterface)
        return 0;
    const Seen before = watching.seen;
    for (const std::string& name : watching.seen.take(signal)) {
        const std::string member = watching.seen.member(name);
        if (member == before.member(name)) continue; // it was in the whole state already
        watching.print(watching.asJson ? '{' + member + "}\n" : watching.seen.line(name));
    }
    return 0;
}

int crossed(sd_bus_message* signal, void* own, sd_bus_error*) {
    auto& watching = *static_cast<Watching*>(own);
    const char* from = nullptr;
    const char* to = nullptr;
    if (sd_bus_message_read(signal, "ss", &from, &to) < 0) return 0;
    const auto both = platform::json::object(Member{"from", std::string_view(from)},
                                             Member{"to", std::string_view(to)});
    watching.print(watching.asJson ? platform::json::object(Member{"crossed", both}).text + "\n"
                                   : std::string("crossed ") + from + " " + to + "\n");
    return 0;
}

int ownerChanged(sd_bus_message* signal, void* own, sd_bus_error*) {
    const char* name = nullptr;
    const char* before = nullptr;
    const char* now = nullptr;
    if (sd_bus_message_read(signal, "sss", &name, &before, &now) >= 0 && *now == '\0')
        static_cast<Watching*>(own)->isOver = true;
    return 0;
}

} // namespace

// It listens before it asks, so that no change is missed in between; what changes before the answer
// is there is printed after it, as what it is by then.
void watch(Remote& remote, bool asJson) {
    Watching watching{.asJson = asJson, .seen = {}};
    sd_bus* const bus = remote.bus();
    const char* const name = remote.name().c_str();
    const char* const path = remote.path().c_str();
    const std::string ownRule =
        "type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='" +
        remote.name() + "'";
    const auto ignored = [](sd_bus_message*, void*, sd_bus_error*) { return 0; };
    const bool listens =
        sd_bus_match_signal_async(bus, nullptr, name, path, "org.freedesktop.DBus.Properties",
                                  "PropertiesChanged", changed, ignored, &watching) >= 0 &&
        sd_bus_match_signal_async(bus, nullptr, name, path, bus::productInterface, "Crossed",
                                  crossed, ignored, &watching) >= 0 &&
        sd_bus_add_match_async(bus, nullptr, ownRule.c_str(), ownerChanged, ignored, &watching) >=
            0;
    if (!listens) throw Failure{Exit::noAnswer, "the session bus refuses to tell of changes"};
    (void)watching.seen.take(remote.getAll().get());
    watching.print(asJson ? watching.seen.json() + "\n" : watching.seen.text());
    while (!watching.isOver) {
        const int done = sd_bus_process(bus, nullptr);
        if (done < 0) throw Failure{Exit::noAnswer, "the session bus has gone"};
        if (done == 0) (void)sd_bus_wait(bus, UINT64_MAX);
    }
}

} // namespace client
