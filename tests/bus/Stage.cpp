#include "bus/Stage.h"

#include "bus/Names.h"

namespace desktop {

namespace {

constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* productInterface = "com.tamberlo.Product1";

int ignore(sd_bus_message*, void*, sd_bus_error*) {
    return 0;
}

} // namespace

BusStage::BusStage(const std::string& layoutText) : Product(layoutText) {}

Answer BusStage::command(const std::vector<std::string>& words, const std::string& called) const {
    const auto child = desktop.spawn(programs() + "/" + called, words);
    const auto status = child->wait();
    return {status.value_or(-1), child->output(), child->errors()};
}

sd_bus* BusStage::caller() {
    if (connection) return connection.get();
    sd_bus* made = nullptr;
    if (sd_bus_new(&made) < 0) throw std::runtime_error("no bus");
    connection.reset(made);
    const auto& address = desktop.environment().at("DBUS_SESSION_BUS_ADDRESS");
    if (sd_bus_set_address(made, address.c_str()) < 0 || sd_bus_set_bus_client(made, 1) < 0 ||
        sd_bus_start(made) < 0)
        throw std::runtime_error("no connection to the bus");
    return made;
}

bus::Message BusStage::call(const char* method, const Arguments& arguments, const char* interface) {
    sd_bus_message* made = nullptr;
    const std::string path = bus::objectPath(identifier());
    if (sd_bus_message_new_method_call(caller(), &made, identifier().c_str(), path.c_str(),
                                       interface, method) < 0)
        throw std::runtime_error("no message");
    const bus::Message question(made);
    if (arguments) arguments(made);
    bus::Error failed;
    sd_bus_message* reply = nullptr;
    constexpr std::uint64_t limit = 30'000'000;
    const int answered = sd_bus_call(caller(), made, limit, failed.get(), &reply);
    error = answered < 0 ? failed.name() : "";
    errorText = answered < 0 ? failed.text() : "";
    return bus::Message(reply);
}

bus::Message BusStage::get(const char* property) {
    auto reply = call(
        "Get",
        [&](sd_bus_message* question) {
            sd_bus_message_append(question, "ss", productInterface, property);
        },
        properties);
    char type = 0;
    const char* contents = nullptr;
    if (reply && sd_bus_message_peek_type(reply.get(), &type, &contents) > 0)
        sd_bus_message_enter_container(reply.get(), 'v', contents);
    return reply;
}

bool BusStage::set(const char* property, const Arguments& variant) {
    return call(
               "Set",
               [&](sd_bus_message* question) {
                   sd_bus_message_append(question, "ss", productInterface, property);
                   variant(question);
               },
               properties) != nullptr;
}

bool BusStage::isActive() {
    const auto value = get("Active");
    int is = -1;
    if (!value || sd_bus_message_read(value.get(), "b", &is) < 0)
        throw std::runtime_error("no such property: " + error);
    return is != 0;
}

std::string BusStage::held() {
    const auto value = get("Held");
    const char* monitorName = "?";
    if (value) sd_bus_message_read(value.get(), "s", &monitorName);
    return monitorName;
}

unsigned BusStage::freed() {
    const auto value = get("Freed");
    unsigned seconds = ~0U;
    if (value) sd_bus_message_read(value.get(), "u", &seconds);
    return seconds;
}

void BusStage::listen() {
    const std::string path = bus::objectPath(identifier());
    const std::string rule = "type='signal',path='" + path + "'";
    if (sd_bus_add_match(caller(), nullptr, rule.c_str(), ignore, nullptr) < 0)
        throw std::runtime_error("the bus refuses a match");
}

bool BusStage::hear(const char* signal, const std::function<bool(sd_bus_message*)>& accepts) {
    const auto deadline = support::Clock::now() + support::generous;
    while (support::Clock::now() < deadline) {
        sd_bus_message* made = nullptr;
        const int done = sd_bus_process(caller(), &made);
        const bus::Message message(made);
        if (done < 0) return false;
        if (made && sd_bus_message_is_signal(made, nullptr, signal) > 0) {
            sd_bus_message_rewind(made, 1);
            if (accepts(made)) return true;
        }
        if (done == 0)
            sd_bus_wait(caller(),
                        static_cast<std::uint64_t>(support::millisecondsUntil(deadline)) * 1000);
    }
    return false;
}

bool BusStage::hearChange(const std::string& property) {
    return hear("PropertiesChanged", [&](sd_bus_message* signal) {
        const char* interface = nullptr;
        if (sd_bus_message_read(signal, "s", &interface) < 0 ||
            std::string(interface) != productInterface)
            return false;
        bool found = false;
        sd_bus_message_enter_container(signal, 'a', "{sv}");
        while (sd_bus_message_enter_container(signal, 'e', "sv") > 0) {
            const char* one = nullptr;
            sd_bus_message_read(signal, "s", &one);
            found = found || property == one;
            sd_bus_message_skip(signal, "v");
            sd_bus_message_exit_container(signal);
        }
        return found;
    });
}

void BusStage::startBusWithServices() {
    desktop.setVariable("XDG_DATA_DIRS", SERVICES);
    desktop.startBus();
}

} // namespace desktop
