#include "bus/ProductObject.h"

#include "app/AppDelegate.h"
#include "bus/Names.h"
#include "bus/ProductMembers.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace bus {

namespace control = palisor::control;

ProductObject::ProductObject(Program own, Link& ownLink)
    : program(std::move(own)), path(objectPath(program.name)), link(ownLink) {
    link.add(*this);
}

ProductObject::~ProductObject() {
    watch(nullptr);
    link.remove(*this);
}

void ProductObject::watch(palisor::AppDelegate* delegate) {
    if (watched) control::watch(*watched, nullptr);
    watched = delegate;
    if (!watched) return;
    control::watch(*watched, this);
    told = state();
    toldCapabilities = program.capabilities();
}

void ProductObject::attach(sd_bus& bus) {
    sd_bus_slot* slot = nullptr;
    (void)sd_bus_add_object_vtable(&bus, &slot, path.c_str(), productInterface,
                                   ProductMembers::table, this);
    object.reset(slot);
    const auto checked = [](sd_bus_message* call, void* own, sd_bus_error*) {
        return static_cast<ProductObject*>(own)->checkArguments(*call);
    };
    slot = nullptr;
    (void)sd_bus_add_filter(&bus, &slot, checked, this);
    check.reset(slot);
}

// The library would refuse them in words of its own.
int ProductObject::checkArguments(sd_bus_message& call) const {
    if (sd_bus_message_is_method_call(&call, productInterface, nullptr) <= 0 ||
        path != sd_bus_message_get_path(&call))
        return 0;
    const std::string_view member = sd_bus_message_get_member(&call);
    const auto* method = std::ranges::find_if(ProductMembers::table, [&](const auto& entry) {
        return entry.type == _SD_BUS_VTABLE_METHOD && member == entry.x.method.member;
    });
    if (method == std::end(ProductMembers::table)) return 0;
    const char* const expected = method->x.method.signature;
    if (sd_bus_message_has_signature(&call, expected) > 0) return 0;
    return sd_bus_reply_method_errorf(
        &call, errors::wrongType, "%s takes arguments of the types \"%s\", and these are \"%s\".",
        method->x.method.member, expected, sd_bus_message_get_signature(&call, 1));
}

control::State ProductObject::state() const {
    return watched ? control::state(*watched) : control::State();
}

// Both may come in the path of a pointer's event.
void ProductObject::changed() {
    link.callSoon();
}

void ProductObject::crossed(std::string_view from, std::string_view to) {
    crossings.emplace_back(from, to);
    link.callSoon();
}

void ProductObject::turn() {
    if (!link.bus()) {
        crossings.clear();
        return;
    }
    for (const auto& [from, to] : std::exchange(crossings, {}))
        (void)sd_bus_emit_signal(link.bus(), path.c_str(), productInterface, "Crossed", "ss",
                                 from.c_str(), to.c_str());
    announce();
}

void ProductObject::announce() {
    const control::State now = state();
    const platform::Capabilities allowed =
        watched ? program.capabilities() : platform::Capabilities();
    std::vector<const char*> names;
    if (now.active != told.active) names.push_back("Active");
    if (now.held != told.held) names.push_back("Held");
    // A further second that has passed is no news; whoever has one asks.
    if (now.freed > told.freed || (now.freed == 0) != (told.freed == 0)) names.push_back("Freed");
    if (now.monitors != told.monitors) names.push_back("Monitors");
    if (now.shortcut != told.shortcut) names.push_back("Shortcut");
    if (allowed != toldCapabilities) names.push_back("Capabilities");
    told = now;
    toldCapabilities = allowed;
    if (names.empty()) return;
    names.push_back(nullptr);
    (void)sd_bus_emit_properties_changed_strv(link.bus(), path.c_str(), productInterface,
                                              const_cast<char**>(names.data()));
}

int ProductObject::whenStarted(
    sd_bus_message& call, const std::function<int(sd_bus_message&, palisor::AppDelegate&)>& work) {
    link.afterMessage(
        [this, message = std::shared_ptr<sd_bus_message>(sd_bus_message_ref(&call), Release()),
         work] {
            palisor::AppDelegate* const delegate = program.delegate();
            if (delegate)
                (void)work(*message, *delegate);
            else
                (void)sd_bus_reply_method_errorf(message.get(), errors::starting, "%s",
                                                 startingText);
            link.settle();
        });
    return 1;
}

} // namespace bus
