#include "doctor/BusFacts.h"

#include "bus/Names.h"
#include "program/client/Seen.h"
#include "program/session/ShellExtension.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string_view>
#include <systemd/sd-bus.h>
#include <utility>

namespace doctor {

namespace {

using Clock = std::chrono::steady_clock;
using Handler = std::function<void(sd_bus_message*)>;

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* itemWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* notifications = "org.freedesktop.Notifications";
constexpr const char* portal = "org.freedesktop.portal.Desktop";
constexpr std::string_view calendar = "org.gnome.evolution.dataserver.Sources"; ///< and a number

struct Unref {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, Unref>;
using Message = std::unique_ptr<sd_bus_message, Unref>;

/// Questions that are all under way at the same time.
class Questions {
  public:
    explicit Questions(sd_bus* connection) : bus(connection) {}

    Message call(const char* name, const char* path, const char* interface,
                 const char* member) const {
        sd_bus_message* message = nullptr;
        if (sd_bus_message_new_method_call(bus, &message, name, path, interface, member) < 0)
            return nullptr;
        sd_bus_message_set_auto_start(message, 0);
        return Message(message);
    }

    /// `answered` gets the reply, also that of a failure.
    void ask(const Message& message, Handler answered) {
        if (!message) return;
        Pending& one = pending.emplace_back(Pending{this, std::move(answered)});
        if (sd_bus_call_async(bus, nullptr, message.get(), taken, &one, UINT64_MAX) >= 0) ++left;
    }

    void run(Clock::time_point deadline) {
        using std::chrono::microseconds;
        while (left > 0) {
            const int handled = sd_bus_process(bus, nullptr);
            if (handled < 0) return;
            if (handled > 0) continue;
            const auto time = std::chrono::ceil<microseconds>(deadline - Clock::now());
            if (time <= microseconds::zero()) return;
            if (sd_bus_wait(bus, static_cast<std::uint64_t>(time.count())) < 0) return;
        }
    }

  private:
    struct Pending {
        Questions* questions;
        Handler answered;
    };

    static int taken(sd_bus_message* reply, void* data, sd_bus_error*) {
        auto* const one = static_cast<Pending*>(data);
        --one->questions->left;
        one->answered(reply);
        return 1;
    }

    sd_bus* bus;
    std::deque<Pending> pending; ///< where they are does not change
    int left = 0;
};

bool isFailure(sd_bus_message* reply) {
    return sd_bus_message_is_method_error(reply, nullptr) != 0;
}

using Names = std::function<void(const char*)>;

void askForNames(Questions& questions, const char* member, Names each) {
    questions.ask(questions.call(busName, busPath, busName, member),
                  [each = std::move(each)](sd_bus_message* reply) {
                      if (isFailure(reply) || sd_bus_message_enter_container(reply, 'a', "s") < 0)
                          return;
                      const char* name = nullptr;
                      while (sd_bus_message_read(reply, "s", &name) > 0)
                          each(name);
                  });
}

void askForProperty(Questions& questions, const char* name, const char* path, const char* interface,
                    const char* property, Handler found) {
    auto message = questions.call(name, path, "org.freedesktop.DBus.Properties", "Get");
    if (!message || sd_bus_message_append(message.get(), "ss", interface, property) < 0) return;
    questions.ask(message, [found = std::move(found)](sd_bus_message* reply) {
        if (!isFailure(reply)) found(reply);
    });
}

void note(BusFacts& facts, std::string_view name, bool ServiceFacts::*which) {
    if (name == itemWatcher) facts.itemWatcher.*which = true;
    if (name == notifications) facts.notifications.*which = true;
    if (name == portal) facts.portal.*which = true;
    if (name.starts_with(calendar)) facts.calendar.*which = true;
}

ProgramTells toldIn(sd_bus_message* properties) {
    client::Seen seen;
    (void)seen.take(properties);
    ProgramTells told{.shortcut = seen.shortcut};
    for (client::SeenCapability& one : seen.capabilities)
        told.capabilities.push_back({std::move(one.id), one.available, std::move(one.reason)});
    return told;
}

// Its main loop answers, so that a program that hangs does not. Whether it knows the question does
// not matter: what the bus answers in its stead has no sender with a number.
void askProgram(Questions& questions, const std::string& identifier, BusFacts& facts) {
    auto whose = questions.call(busName, busPath, busName, "GetConnectionUnixProcessID");
    if (whose) sd_bus_message_append(whose.get(), "s", identifier.c_str());
    questions.ask(whose, [&facts](sd_bus_message* reply) {
        std::uint32_t process = 0;
        if (!isFailure(reply) && sd_bus_message_read(reply, "u", &process) > 0)
            facts.program = static_cast<pid_t>(process);
    });
    auto all = questions.call(identifier.c_str(), bus::objectPath(identifier).c_str(),
                              "org.freedesktop.DBus.Properties", "GetAll");
    if (all) sd_bus_message_append(all.get(), "s", bus::productInterface);
    questions.ask(all, [&facts](sd_bus_message* reply) {
        const char* const sender = sd_bus_message_get_sender(reply);
        facts.programAnswers = sender != nullptr && sender[0] == ':';
        if (!isFailure(reply)) facts.told = toldIn(reply);
    });
}

void askShell(Questions& questions, BusFacts& facts) {
    auto info = questions.call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Extensions",
                               "GetExtensionInfo");
    if (info) sd_bus_message_append(info.get(), "s", shellExtension);
    questions.ask(info, [&facts](sd_bus_message* reply) {
        if (isFailure(reply) || sd_bus_message_enter_container(reply, 'a', "{sv}") < 0) return;
        facts.shellExtension =
            isExtensionInstalled() ? ShellExtension::notSeenYet : ShellExtension::notInstalled;
        while (sd_bus_message_enter_container(reply, 'e', "sv") > 0) {
            const char* key = nullptr;
            double number = 0;
            (void)sd_bus_message_read(reply, "s", &key);
            if (key && std::string_view(key) == "state" &&
                sd_bus_message_read(reply, "v", "d", &number) > 0) {
                const int state = static_cast<int>(number);
                facts.shellExtension = state == 1   ? ShellExtension::on
                                       : state == 3 ? ShellExtension::failed
                                       : state == 4 ? ShellExtension::otherRelease
                                                    : ShellExtension::off;
            } else {
                (void)sd_bus_message_skip(reply, "v");
            }
            (void)sd_bus_message_exit_container(reply);
        }
    });
}

} // namespace

BusFacts askBus(const std::string& identifier, Clock::time_point deadline) {
    BusFacts facts;
    sd_bus* opened = nullptr;
    if (sd_bus_open_user(&opened) < 0) return facts;
    const Bus bus(opened);
    facts.state = BusFacts::State::silent;
    Questions questions(opened);
    askForNames(questions, "ListNames", [&facts](const char* name) {
        facts.state = BusFacts::State::answers;
        note(facts, name, &ServiceFacts::isThere);
    });
    askForNames(questions, "ListActivatableNames",
                [&facts](const char* name) { note(facts, name, &ServiceFacts::canStart); });
    askForProperty(questions, itemWatcher, "/StatusNotifierWatcher", itemWatcher,
                   "IsStatusNotifierHostRegistered", [&facts](sd_bus_message* reply) {
                       int is = 0;
                       facts.hasItemHost = sd_bus_message_read(reply, "v", "b", &is) > 0 && is != 0;
                   });
    askForProperty(questions, portal, "/org/freedesktop/portal/desktop",
                   "org.freedesktop.portal.Settings", "version",
                   [&facts](sd_bus_message*) { facts.portalHasSettings = true; });
    askProgram(questions, identifier, facts);
    askShell(questions, facts);
    questions.run(deadline);
    return facts;
}

} // namespace doctor
