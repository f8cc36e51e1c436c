#include "program/client/Remote.h"

#include "bus/Address.h"
#include "bus/Names.h"

#include <cerrno>
#include <cstdio>
#include <poll.h>

namespace client {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr milliseconds answerTime{2000};
constexpr milliseconds startTime{10000};
constexpr int betweenQuestions = 20; // milliseconds

constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* daemon = "org.freedesktop.DBus";
constexpr const char* daemonPath = "/org/freedesktop/DBus";

bus::Message request(sd_bus* bus, const char* name, const char* path, const char* interface,
                     const char* method) {
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(bus, &made, name, path, interface, method) < 0)
        throw Failure{Exit::noAnswer, "out of memory"};
    return bus::Message(made);
}

std::uint64_t inMicroseconds(milliseconds limit) {
    return static_cast<std::uint64_t>(microseconds(limit).count());
}

bool isUnknown(const bus::Error& error) {
    return error.is(SD_BUS_ERROR_UNKNOWN_METHOD) || error.is(SD_BUS_ERROR_UNKNOWN_INTERFACE) ||
           error.is(SD_BUS_ERROR_UNKNOWN_PROPERTY) || error.is(SD_BUS_ERROR_UNKNOWN_OBJECT);
}

} // namespace

Remote::Remote(std::string name)
    : product(std::move(name)),
      busName("com.tamberlo." + product),
      objectPath(bus::objectPath(busName)) {
    connect();
}

// By hand, since the library's own way waits for a bus that does not answer for half a minute.
void Remote::connect() {
    const std::string address = bus::addressOfSessionBus();
    sd_bus* made = nullptr;
    if (address.empty() || sd_bus_new(&made) < 0)
        throw Failure{Exit::noAnswer, "there is no session bus"};
    connection.reset(made);
    if (sd_bus_set_address(made, address.c_str()) < 0 || sd_bus_set_bus_client(made, 1) < 0 ||
        sd_bus_start(made) < 0)
        throw Failure{Exit::noAnswer, "there is no session bus at " + address};
    const auto deadline = Clock::now() + answerTime;
    while (sd_bus_is_ready(made) <= 0) {
        const int done = sd_bus_process(made, nullptr);
        const auto left = std::chrono::ceil<microseconds>(deadline - Clock::now());
        if (done < 0 || left.count() <= 0)
            throw Failure{Exit::noAnswer, "the session bus does not answer"};
        if (done == 0) (void)sd_bus_wait(made, static_cast<std::uint64_t>(left.count()));
    }
}

bool Remote::isRunning() {
    const auto question = request(bus(), daemon, daemonPath, daemon, "NameHasOwner");
    (void)sd_bus_message_append(question.get(), "s", busName.c_str());
    sd_bus_message* made = nullptr;
    const int answered =
        sd_bus_call(bus(), question.get(), inMicroseconds(answerTime), nullptr, &made);
    const bus::Message reply(made);
    int is = 0;
    if (answered < 0 || sd_bus_message_read(made, "b", &is) < 0)
        throw Failure{Exit::noAnswer, "the session bus does not answer"};
    return is != 0;
}

void Remote::waitUntilGone() {
    const auto deadline = Clock::now() + answerTime;
    while (isRunning() && Clock::now() < deadline)
        (void)::poll(nullptr, 0, betweenQuestions);
}

void Remote::start() {
    const auto question = request(bus(), daemon, daemonPath, daemon, "StartServiceByName");
    (void)sd_bus_message_append(question.get(), "su", busName.c_str(), 0);
    bus::Error error;
    sd_bus_message* made = nullptr;
    const int answered =
        sd_bus_call(bus(), question.get(), inMicroseconds(startTime), error.get(), &made);
    const bus::Message reply(made);
    if (answered >= 0) return;
    if (error.is(SD_BUS_ERROR_SERVICE_UNKNOWN))
        throw Failure{Exit::notRunning, product + " does not run, and the session bus knows no " +
                                            busName + ".service to start it by"};
    throw Failure{Exit::notRunning, product + " could not be started: " + error.text()};
}

bus::Message Remote::call(const char* interface, const char* method, const Fill& fill,
                          std::chrono::seconds patience, milliseconds limit) {
    const auto deadline = Clock::now() + patience;
    for (;;) {
        const auto question =
            request(bus(), busName.c_str(), objectPath.c_str(), interface, method);
        // Who only asks must not start it.
        (void)sd_bus_message_set_auto_start(question.get(), 0);
        if (fill && fill(question.get()) < 0) throw Failure{Exit::refused, "no text in UTF-8"};
        bus::Error error;
        sd_bus_message* made = nullptr;
        const int answered =
            sd_bus_call(bus(), question.get(), inMicroseconds(limit), error.get(), &made);
        if (answered >= 0) return bus::Message(made);
        if (error.is(bus::errors::starting) && Clock::now() < deadline) {
            (void)::poll(nullptr, 0, betweenQuestions);
            continue;
        }
        if (error.is(SD_BUS_ERROR_SERVICE_UNKNOWN) || error.is(SD_BUS_ERROR_NAME_HAS_NO_OWNER))
            throw Failure{Exit::notRunning, product + " does not run"};
        if (answered == -ETIMEDOUT)
            throw Failure{Exit::noAnswer, product + " does not answer; it runs, but is busy, "
                                                    "stopped or hangs"};
        if (isUnknown(error))
            throw Failure{Exit::otherVersion,
                          "the " + product + " that runs is of another version, which does not " +
                              "know this; end it and start it again"};
        throw Failure{Exit::refused, error.text()};
    }
}

bus::Message Remote::call(const char* method, const Fill& fill, std::chrono::seconds patience) {
    return call(bus::productInterface, method, fill, patience, answerTime);
}

void Remote::compareVersions() {
    const auto reply = call(
        properties, "Get",
        [](sd_bus_message* question) {
            return sd_bus_message_append(question, "ss", bus::productInterface, "Version");
        },
        {}, answerTime);
    const char* version = nullptr;
    if (sd_bus_message_read(reply.get(), "v", "s", &version) < 0) return;
    if (std::string_view(version) != PRODUCT_VERSION)
        (void)std::fprintf(stderr,
                           "%s: the program that runs is of version %s, this command of %s; end "
                           "the program and start it again\n",
                           product.c_str(), version, PRODUCT_VERSION);
}

bus::Message Remote::getAll() {
    return call(
        properties, "GetAll",
        [](sd_bus_message* question) {
            return sd_bus_message_append(question, "s", bus::productInterface);
        },
        {}, answerTime);
}

void Remote::setActive(bool on, std::chrono::seconds patience) {
    (void)call(
        properties, "Set",
        [on](sd_bus_message* question) {
            return sd_bus_message_append(question, "ssv", bus::productInterface, "Active", "b",
                                         on ? 1 : 0);
        },
        patience, answerTime);
}

} // namespace client
