#include "bus/SingleInstance.h"

#include "bus/Names.h"

#include <string_view>

namespace bus {

namespace {

constexpr const char* applicationInterface = "org.freedesktop.Application";
constexpr const char* otherDisplay = "local.Error.OtherDisplay";
// In what a call to activate says of its surroundings.
constexpr std::string_view displayKey = "display";
constexpr std::string_view silentKey = "silent"; // only asks whether there is one on its display
constexpr std::uint64_t answerMicroseconds = 1'000'000;

struct Surroundings {
    std::string display;
    bool silent = false;
};

/// What a call to activate tells; what is not understood is as if it were not there.
Surroundings surroundingsIn(sd_bus_message& call) {
    Surroundings told;
    if (sd_bus_message_enter_container(&call, 'a', "{sv}") < 0) return told;
    while (sd_bus_message_enter_container(&call, 'e', "sv") > 0) {
        const char* key = nullptr;
        const char* text = nullptr;
        int yes = 0;
        if (sd_bus_message_read(&call, "s", &key) < 0) break;
        if (key == displayKey && sd_bus_message_read(&call, "v", "s", &text) > 0)
            told.display = text;
        else if (key == silentKey && sd_bus_message_read(&call, "v", "b", &yes) > 0)
            told.silent = yes != 0;
        else if (sd_bus_message_skip(&call, "v") < 0)
            break;
        if (sd_bus_message_exit_container(&call) < 0) break;
    }
    return told;
}

} // namespace

/// The object's members. There are no files to open and no actions, so each of them just activates.
struct ApplicationObject {
    static int activate(sd_bus_message* call, void* own, sd_bus_error*) {
        return static_cast<SingleInstance*>(own)->activate(*call);
    }
    static constexpr std::uint64_t open = SD_BUS_VTABLE_UNPRIVILEGED;
    static constexpr sd_bus_vtable table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD_WITH_NAMES("Activate", "a{sv}", SD_BUS_PARAM(platform_data), "", "", activate,
                                 open),
        SD_BUS_METHOD_WITH_NAMES("Open", "asa{sv}", SD_BUS_PARAM(uris) SD_BUS_PARAM(platform_data),
                                 "", "", activate, open),
        SD_BUS_METHOD_WITH_NAMES("ActivateAction", "sava{sv}",
                                 SD_BUS_PARAM(action_name) SD_BUS_PARAM(parameter)
                                     SD_BUS_PARAM(platform_data),
                                 "", "", activate, open),
        SD_BUS_VTABLE_END};
};

SingleInstance::SingleInstance(std::string busName, Link& ownLink, platform::Log& logger,
                               std::string ownDisplay)
    : name(std::move(busName)),
      path(objectPath(name)),
      display(std::move(ownDisplay)),
      link(ownLink),
      log(logger) {
    link.add(*this);
}

SingleInstance::~SingleInstance() {
    link.remove(*this);
}

void SingleInstance::attach(sd_bus& bus) {
    sd_bus_slot* slot = nullptr;
    (void)sd_bus_add_object_vtable(&bus, &slot, path.c_str(), applicationInterface,
                                   ApplicationObject::table, this);
    object.reset(slot);
    request.reset();
}

int SingleInstance::activate(sd_bus_message& call) {
    Surroundings told;
    if (std::string_view(sd_bus_message_get_member(&call)) == "Activate")
        told = surroundingsIn(call);
    if (!told.display.empty() && !display.empty() && told.display != display)
        return sd_bus_reply_method_errorf(&call, otherDisplay, "%s", display.c_str());
    if (activated && !told.silent) link.afterMessage([this] { activated(); });
    return sd_bus_reply_method_return(&call, "");
}

bool SingleInstance::claim(bool activates) {
    isClaimed = true;
    if (link.bus() == nullptr) return true;
    switch (requestName(0)) {
    case Claim::taken:
        if (callOwner(activates)) return false;
        (void)requestName(SD_BUS_NAME_QUEUE); // it gets the name when the other one ends
        return true;
    case Claim::refused:
        log.write("the session bus refuses the name " + name);
        return true;
    default:
        return true;
    }
}

// Without waiting: this is the run loop.
void SingleInstance::up() {
    if (!isClaimed) return;
    sd_bus_slot* slot = nullptr;
    const auto answered = [](sd_bus_message*, void*, sd_bus_error*) { return 0; };
    (void)sd_bus_request_name_async(link.bus(), &slot, name.c_str(), SD_BUS_NAME_QUEUE, answered,
                                    this);
    request.reset(slot);
    log.write("the session bus is back");
}

SingleInstance::Claim SingleInstance::requestName(std::uint64_t flags) {
    const unsigned asked = flags == 0 ? 4 : 0; // of the bus: do not queue
    sd_bus_message* reply = nullptr;
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(link.bus(), &call, "org.freedesktop.DBus",
                                       "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                       "RequestName") < 0)
        return Claim::refused;
    const Message owned(call);
    if (sd_bus_message_append(call, "su", name.c_str(), asked) < 0) return Claim::refused;
    const int answered = sd_bus_call(link.bus(), call, answerMicroseconds, nullptr, &reply);
    const Message answer(reply);
    unsigned result = 0;
    if (answered < 0 || sd_bus_message_read(reply, "u", &result) < 0) return Claim::refused;
    constexpr unsigned exists = 3;
    return result == exists ? Claim::taken : Claim::granted;
}

/// False when the owner of the name is none of this display.
bool SingleInstance::callOwner(bool activates) {
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(link.bus(), &call, name.c_str(), path.c_str(),
                                       applicationInterface, "Activate") < 0)
        return true;
    const Message owned(call);
    (void)sd_bus_message_open_container(call, 'a', "{sv}");
    if (!display.empty())
        (void)sd_bus_message_append(call, "{sv}", displayKey.data(), "s", display.c_str());
    if (!activates) (void)sd_bus_message_append(call, "{sv}", silentKey.data(), "b", 1);
    (void)sd_bus_message_close_container(call);
    Error error;
    const Message reply = [&] {
        sd_bus_message* answer = nullptr;
        (void)sd_bus_call(link.bus(), call, answerMicroseconds, error.get(), &answer);
        return Message(answer);
    }();
    return !error.is(otherDisplay);
}

} // namespace bus
