#include "doctor/checks/Checks.h"

#include "app/Variants.h"

#include <algorithm>

namespace doctor {

namespace checks {

std::string doctorCommand(const ProductFacts& product, const std::string& option) {
    return "palisor-doctor --product " + product.name + " " + option;
}

// Whether it is another kind of session is told by the program's own connection, which looks at
// that when it has all that it needs.
bool isX11Session(const Facts& facts) {
    if (!facts.serverAnswers || !facts.server.isReached) return false;
    if (facts.server.refusal.empty()) return true;
    for (const auto& extension : facts.server.extensions)
        if (!extension.needed.empty() && !extension.suffices) return true;
    return false;
}

bool isWaylandSession(const Facts& facts) {
    return facts.compositorAnswers && facts.wayland.isJoined;
}

// Another display's program may have the name on the bus.
const ProgramTells* toldByProgram(const Facts& facts) {
    const bool isHere = facts.running.process && facts.bus.program == facts.running.process;
    return isHere && facts.bus.told ? &*facts.bus.told : nullptr;
}

const platform::Capability* toldCapability(const Facts& facts, std::string_view id) {
    const ProgramTells* const told = toldByProgram(facts);
    if (told == nullptr) return nullptr;
    const auto found = std::ranges::find(told->capabilities, id, &platform::Capability::id);
    return found == told->capabilities.end() ? nullptr : &*found;
}

} // namespace checks

Report examine(const Facts& facts) {
    using namespace checks;
    const ProductFacts& product = facts.product;
    const bool isCalendar = product.variant == palisor::variants::calendarAlerts;
    Report report{product.name, product.title, product.version, {}};
    const auto add = [&report](Finding finding) { report.findings.push_back(std::move(finding)); };

    const bool isX11 = !isWaylandSession(facts) && isX11Session(facts);
    add(session(facts));
    if (isWaylandSession(facts)) add(monitors(facts));
    if (isX11) {
        add(extensions(facts));
        add(monitors(facts));
        add(windowManager(facts));
        add(compositor(facts));
        add(colours(facts));
        add(shortcut(facts));
    }
    add(bus(facts));
    if (isX11) add(tray(facts));
    if (facts.bus.state == BusFacts::State::answers) {
        add(notifications(facts));
        add(portal(facts));
    }
    if (isCalendar) add(calendar(facts));
    add(program(facts));
    for (Finding& finding : losses(facts))
        add(std::move(finding));
    add(settings(facts));
    for (Finding& finding : autostart(facts))
        add(std::move(finding));
    add(tools(facts));
    add(versions(facts));
    return report;
}

} // namespace doctor
