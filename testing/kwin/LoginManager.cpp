#include "testing/kwin/LoginManager.h"

#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <unistd.h>

namespace support {

namespace {

constexpr const char *service = "org.freedesktop.login1", *session = "/session",
                     *sessionFace = "org.freedesktop.login1.Session";

} // namespace

LoginManager::LoginManager(const std::string& busAddress) : wake(eventfd(0, EFD_CLOEXEC)) {
    if (sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, busAddress.c_str()) < 0 ||
        sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0 ||
        sd_bus_add_filter(bus, nullptr, answer, this) < 0 ||
        sd_bus_request_name(bus, service, 0) < 0) {
        sd_bus_flush_close_unref(bus);
        ::close(wake);
        throw std::runtime_error("there can be no login manager");
    }
    thread = std::thread([this] { serve(); });
}

LoginManager::~LoginManager() {
    ask(Request::end);
    thread.join();
    sd_bus_flush_close_unref(bus);
    ::close(wake);
}

void LoginManager::ask(Request asked) {
    request = asked;
    eventfd_write(wake, 1);
}

void LoginManager::serve() {
    for (;;) {
        while (sd_bus_process(bus, nullptr) > 0) {
        }
        pollfd both[] = {{sd_bus_get_fd(bus), POLLIN, 0}, {wake, POLLIN, 0}};
        poll(both, 2, -1);
        if (both[0].revents & POLLHUP) return;
        if (!both[1].revents) continue;
        eventfd_t count = 0;
        eventfd_read(wake, &count);
        const Request asked = request.exchange(Request::none);
        if (asked == Request::end) return;
        if (asked != Request::none)
            sd_bus_emit_signal(bus, session, sessionFace,
                               asked == Request::lock ? "Lock" : "Unlock", "");
    }
}

// What else is asked (to be told before a sleep) is answered with the bus's own error.
int LoginManager::answer(sd_bus_message* message, void* own, sd_bus_error*) {
    auto& self = *static_cast<LoginManager*>(own);
    if (sd_bus_message_is_method_call(message, "org.freedesktop.login1.Manager", "GetSession") > 0)
        return sd_bus_reply_method_return(message, "o", session);
    if (sd_bus_message_is_method_call(message, sessionFace, "SetLockedHint") > 0) {
        int now = 0;
        if (sd_bus_message_read(message, "b", &now) < 0) return 0;
        self.locked = now != 0;
        return sd_bus_reply_method_return(message, "");
    }
    if (sd_bus_message_is_method_call(message, "org.freedesktop.DBus.Properties", "Get") > 0) {
        self.used = true;
        return sd_bus_reply_method_return(message, "v", "b", self.locked ? 1 : 0);
    }
    return 0;
}

} // namespace support
