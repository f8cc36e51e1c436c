#include "bus/Callers.h"

#include "bus/Names.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unistd.h>

namespace bus {

namespace {

// A name is never given twice, so that those of the past would gather.
constexpr std::size_t mostCallers = 64;

constexpr const char* refusal = "Only the user of this session may call.";

} // namespace

bool Callers::attach(sd_bus& connection) {
    bus = &connection;
    sd_bus_slot* slot = nullptr;
    const bool added = sd_bus_add_filter(bus, &slot, heard, this) >= 0;
    filter.reset(slot);
    return added;
}

void Callers::forget() {
    callers.clear();
    filter.reset();
    bus = nullptr;
}

int Callers::heard(sd_bus_message* message, void* own, sd_bus_error*) {
    return static_cast<Callers*>(own)->decide(*message);
}

/// Above 0 where the message stays here.
int Callers::decide(sd_bus_message& message) {
    std::uint8_t type = 0;
    const char* const sender = sd_bus_message_get_sender(&message);
    if (sd_bus_message_get_type(&message, &type) < 0 || type != SD_BUS_MESSAGE_METHOD_CALL ||
        sender == nullptr)
        return 0;
    auto found = callers.find(std::string_view(sender));
    if (found == callers.end()) {
        if (callers.size() >= mostCallers)
            std::erase_if(callers, [](const auto& entry) { return entry.second.kept.empty(); });
        found = callers.try_emplace(sender).first;
        found->second.owner = this;
        found->second.name = sender;
        if (!ask(found->second)) {
            callers.erase(found);
            (void)sd_bus_reply_method_errorf(&message, errors::notTheUser, "%s", refusal);
            return 1; // also where no answer is expected, and none was sent
        }
    }
    Caller& caller = found->second;
    if (caller.isUser && caller.kept.empty()) return 0;
    // Those that were kept come back first.
    if (caller.isUser && caller.comeBack < caller.kept.size() &&
        caller.kept[caller.comeBack].get() == &message) {
        if (++caller.comeBack == caller.kept.size()) {
            caller.kept.clear();
            caller.comeBack = 0;
        }
        return 0;
    }
    caller.kept.push_back(keep(&message));
    if (caller.isUser) (void)sd_bus_enqueue_for_read(bus, &message);
    return 1;
}

bool Callers::ask(Caller& caller) {
    sd_bus_slot* slot = nullptr;
    const int sent = sd_bus_call_method_async(
        bus, &slot, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "GetConnectionUnixUser", answered, &caller, "s", caller.name.c_str());
    caller.question.reset(slot);
    return sent >= 0;
}

int Callers::answered(sd_bus_message* reply, void* own, sd_bus_error*) {
    Caller& caller = *static_cast<Caller*>(own);
    Callers& callers = *caller.owner;
    std::uint32_t user = 0;
    const bool known = sd_bus_message_is_method_error(reply, nullptr) == 0 &&
                       sd_bus_message_read(reply, "u", &user) >= 0;
    if (known && user == ::geteuid())
        callers.sendBack(caller);
    else
        callers.refuse(caller);
    return 0;
}

void Callers::sendBack(Caller& caller) {
    caller.isUser = true;
    for (const Message& message : caller.kept)
        (void)sd_bus_enqueue_for_read(bus, message.get());
}

// Should it call again, it is asked about again.
void Callers::refuse(Caller& caller) {
    for (const Message& message : caller.kept)
        (void)sd_bus_reply_method_errorf(message.get(), errors::notTheUser, "%s", refusal);
    callers.erase(callers.find(caller.name));
}

} // namespace bus
