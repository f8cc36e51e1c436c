#include "doctor/checks/Checks.h"

#include "app/Variants.h"

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

} // namespace checks

Report examine(const Facts& facts) {
    using namespace checks;
    const ProductFacts& product = facts.product;
    const bool isCalendar = product.variant == palisor::variants::calendarAlerts;
    Report report{product.name, product.title, product.version, {}};
    const auto add = [&report](Finding finding) { report.findings.push_back(std::move(finding)); };

    add(session(facts));
    if (isX11Session(facts)) {
        add(extensions(facts));
        add(monitors(facts));
        add(windowManager(facts));
        add(compositor(facts));
        add(colours(facts));
        add(shortcut(facts));
    }
    add(bus(facts));
    if (isX11Session(facts)) add(tray(facts));
    if (facts.bus.state == BusFacts::State::answers) {
        add(notifications(facts));
        add(portal(facts));
    }
    if (isCalendar) add(calendar(facts));
    add(program(facts));
    add(settings(facts));
    for (Finding& finding : autostart(facts))
        add(std::move(finding));
    add(tools(facts));
    add(versions(facts));
    return report;
}

} // namespace doctor
